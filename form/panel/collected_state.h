#pragma once

#include "filters/filter_state.h"

namespace velcoran::form {

class ControlTree;
struct Members;

/// What the filter controls and the members hold at this moment.
[[nodiscard]] filters::FilterState collectState(const Members& members, const ControlTree& controls);

}  // namespace velcoran::form
