#pragma once

#include "base/units.h"

#include <QString>

#include <optional>

namespace velcoran::db {
class Connection;
class ICallRunner;
class RowSet;
}  // namespace velcoran::db

namespace velcoran::lookup {

/// Replaces a row set by the rows of a lookup. Whatever fails counts as no rows: a text that breaks the statement and a
/// search without a match look the same to the user.
/// @return the record count; 0 when the statement failed
/// @throws Cancelled when the user stopped the statement or closed the window
[[nodiscard]] qsizetype openLookup(db::RowSet& rsLookup, const db::Connection& priza, const QString& sql,
                                   db::ICallRunner& runner);

/// Widths of the grid's columns.
struct ColumnWidths {
    base::Twips fixed;  ///< column 0, hidden by being this narrow
    base::Twips first;
    base::Twips second;
    std::optional<base::Twips> third;  ///< set where there is such a column
    friend bool operator==(const ColumnWidths&, const ColumnWidths&) = default;
};

/// The widths for the frame's caption of the moment.
[[nodiscard]] ColumnWidths columnWidths(QStringView caption);

}  // namespace velcoran::lookup
