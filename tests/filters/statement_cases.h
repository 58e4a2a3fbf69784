#pragma once

#include "filters/filter_state.h"

#include <QString>

#include <optional>
#include <vector>

namespace velcoran::tests {

/// A statement typed by hand, with the state that must give it.
struct StatementCase {
    QString name;
    filters::FilterState state;
    std::optional<filters::LookupField> lookup;  ///< the field in which Enter is pressed
    QString text;
};

/// Reads a file under tests/data/statements:
///
///     = name of a case
///     member=value            as it stands; between bars where blanks end it: txtCatClient=|  |
///     depozite=1 - A|4 - B    the ticked entries
///     | a piece of the text|  blanks inside the bars count, pieces follow each other with nothing between
///     @name                   a piece defined before
///     define name             the following pieces are a definition
///
/// Every case starts from the same state: no filter, 1 to 15 March 2026. A fault in the file fails the test.
[[nodiscard]] std::vector<StatementCase> readStatementCases(const QString& file);

}  // namespace velcoran::tests
