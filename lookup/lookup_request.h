#pragma once

#include "filters/filter_state.h"

#include <QString>

namespace velcoran::lookup {

/// What Enter in a lookup field runs and under which words the picker opens.
struct LookupRequest {
    QString Sql;
    QString Caption;  ///< follows the report kind for the three partner fields
    QString Tag;      ///< fixed per field
};

/// Builds the request of a field from what the window holds at the moment. Never fails: a text that breaks the
/// statement (a single quote) is for the database to refuse.
[[nodiscard]] LookupRequest buildLookup(filters::LookupField field, const filters::FilterState& state);

}  // namespace velcoran::lookup
