#pragma once

#include "filters/filter_state.h"

#include <QString>
#include <QStringView>

namespace velcoran::lookup {

/// Search pattern of a text: "%" behind it, unless it places its own wildcards with "/".
[[nodiscard]] QString openPattern(const QString& text);
/// Search pattern of a text with "%" for each "/" and nothing behind it: without a "/" the match is exact.
[[nodiscard]] QString closedPattern(const QString& text);

/// The statements of the nine lookups.
[[nodiscard]] QString producerStatement(const filters::FilterState& state);
[[nodiscard]] QString productTypeStatement(const filters::FilterState& state);
[[nodiscard]] QString productGroupStatement(const filters::FilterState& state);
[[nodiscard]] QString productSubgroupStatement(const filters::FilterState& state);
[[nodiscard]] QString productStatement(const filters::FilterState& state);
[[nodiscard]] QString partnerTypeStatement(const filters::FilterState& state);
[[nodiscard]] QString partnerCategoryStatement(const filters::FilterState& state);
[[nodiscard]] QString partnerStatement(const filters::FilterState& state);
[[nodiscard]] QString agentStatement(const filters::FilterState& state);

}  // namespace velcoran::lookup
