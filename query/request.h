#pragma once

#include "filters/filter_state.h"

#include <QString>

namespace velcoran::query {

/// The filters of one run as pieces of its statement. Values stand in them as held: untrimmed, quotes not doubled.
struct Request {
    QString sWhere;     ///< " WHERE ..." with the document kind first; every further condition starts with " AND"
    QString sHaving;    ///< the period of the grouped variants; empty for a total report, which has it in sWhere
    QString sDepozite;  ///< " (1, 4)"; empty when no warehouse is ticked
    QString sProdus;    ///< condition over the product tables, the category first; never empty
};

/// @param state  after tidyCodes; the dates are valid
/// @throws Error kInvalidProcedureCall for a ticked warehouse without " - " behind its code
[[nodiscard]] Request buildRequest(const filters::FilterState& state);

}  // namespace velcoran::query
