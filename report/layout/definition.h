#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>

namespace velcoran::report {

/// The part that an object plays for those who read a report without its pages.
enum class ObjectRole : std::uint8_t { None, Title, Period, GroupLabel };

class Definition;
struct PageSetup;

/// Reads and checks a definition (docs/report-definitions.md).
/// @throws Error kInvalidProcedureCall, with line and column where the syntax is wrong, with the object's path
///         ("sections[3].objects.Text6: ...") where its content is
[[nodiscard]] std::shared_ptr<const Definition> readDefinition(const QByteArray& json);

/// The definition of a name, from the component's own resources; read once a call.
/// @throws Error kNoSuchObject when there is none of the name
[[nodiscard]] std::shared_ptr<const Definition> definitionNamed(const QString& name);

/// The sheet that a definition was designed for.
[[nodiscard]] const PageSetup& designedSetup(const Definition& definition);

}  // namespace velcoran::report
