#pragma once

#include <QVariantMap>

namespace velcoran::report {
class Document;
}

namespace velcoran::viewer {

/// A shown report as plain values: definition, option, title, texts, period, rows, pages, groups and totals. Amounts
/// are decimal texts with a point, all digits, at least two decimals.
/// @param definition  its name
[[nodiscard]] QVariantMap reportValues(const report::Document& document, const QString& definition);

}  // namespace velcoran::viewer
