#pragma once

#include "definition.h"
#include "page.h"
#include "report/data/report_content.h"

#include <vector>

namespace velcoran::report {

enum class SectionKind : std::uint8_t {
    ReportHeader,
    PageHeader,
    GroupHeader,
    Details,
    GroupFooter,
    ReportFooter,
    PageFooter,
    NoData,
};

enum class ObjectKind : std::uint8_t { Text, Field, Unbound, Line, Box };

/// How the value of an unbound field is written.
enum class ValueFormat : std::uint8_t { Text, Amount, Rate };

/// In which reports an object shows.
enum class Shown : std::uint8_t { Always, Detailed, Totals, Never };

/// What the name between braces in the text of a field stands for.
enum class Variable : std::uint8_t {
    Page,
    Pages,
    PrintTime,
    GroupKey,
    GroupRows,
    Continued,
    Currency,
    Rows,
    Sum,  ///< of a column
    ReportRows,
    LeiTotal,
    WithoutRate,
};

/// A piece of a field's text: words, or a variable.
struct TemplatePart {
    QString words;
    std::optional<Variable> variable;
    ColumnRole column = ColumnRole::ValoareNeta;  ///< of a sum
};

struct DefinitionObject {
    QString name;
    ObjectKind kind = ObjectKind::Text;
    ObjectRole role = ObjectRole::None;
    base::TwipsRect place;              ///< in the section
    QString text;                       ///< of a text object, as designed
    std::vector<TemplatePart> parts;    ///< of a field
    std::optional<ColumnRole> column;   ///< of an unbound field that a column of its name feeds
    std::optional<Variable> condition;  ///< shown only where this is not zero
    ValueFormat format = ValueFormat::Text;
    Alignment alignment = Alignment::Left;
    Shown shown = Shown::Always;
    float fontSize = 8;  ///< points
    bool isBold = false;
    bool isGrowing = false;
    base::Colour colour;
    base::Twips thickness;
};

struct DefinitionSection {
    SectionKind kind = SectionKind::Details;
    base::Twips height;
    bool isPerCurrency = false;  ///< once for each currency of its totals
    std::vector<DefinitionObject> objects;
};

class Definition {
public:
    QString name;
    Grouping grouping = Grouping::Partner;
    PageSetup setup;
    std::vector<DefinitionSection> sections;

    /// The object of a name; null when there is none.
    [[nodiscard]] const DefinitionObject* object(const QString& objectName) const;
    /// The object that plays a part; null when there is none.
    [[nodiscard]] const DefinitionObject* object(ObjectRole role) const;
    /// The only section of a kind; null when there is none.
    [[nodiscard]] const DefinitionSection* section(SectionKind kind) const;
    /// Width between the margins of the designed sheet.
    [[nodiscard]] base::Twips printableWidth() const { return setup.width - setup.left - setup.right; }
};

/// Distance of the lines of a text.
[[nodiscard]] base::Twips lineHeightOf(float fontSize);

}  // namespace velcoran::report
