#pragma once

#include "filters/filter_state.h"

namespace velcoran::db {
class Connection;
}

namespace velcoran::host {

struct ExportRequest;

/// What the window's controls would hold when a person had chosen what a request asks for: the lists are those of the
/// window's set-up, each code is looked up by the statement of its field, narrowed by what was chosen before it.
/// @throws Error kInvalidProcedureCall, naming option and value, for a day outside the working year, for an entry that
/// a
///               list has not and for a code that matches no row or several;
///         Error of the provider, naming option and value, for a lookup that fails
[[nodiscard]] filters::FilterState chosenFilters(const ExportRequest& request, const db::Connection& connection);

}  // namespace velcoran::host
