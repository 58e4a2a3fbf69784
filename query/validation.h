#pragma once

#include "filters/filter_state.h"

#include <QList>
#include <QString>

#include <optional>

namespace velcoran::query {

/// The text that names every lookup field whose text was changed after it was picked, lines separated by CR LF.
/// @return nothing when the report may run. A field of blanks alone counts as changed, an empty one never does
[[nodiscard]] std::optional<QString> modifiedFiltersMessage(const filters::FilterState& state);

/// The codes to empty before a run, in order: those whose fields are exactly empty.
[[nodiscard]] QList<filters::CodeVariable> tidyCodes(const filters::FilterState& state);

}  // namespace velcoran::query
