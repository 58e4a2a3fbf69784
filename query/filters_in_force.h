#pragma once

#include "filters/filter_state.h"

#include <QStringList>

namespace velcoran::query {

/// What narrows a run besides its period, one line a filter, in the order of the window and in the words of its labels:
/// "Grupa de Produse: ALIM". Empty when nothing does.
/// @param state  after tidyCodes
[[nodiscard]] QStringList filtersInForce(const filters::FilterState& state);

}  // namespace velcoran::query
