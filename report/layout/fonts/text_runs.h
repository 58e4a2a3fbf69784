#pragma once

#include <QStringView>

#include <functional>
#include <vector>

namespace velcoran::report {

/// A piece of a text in one font and one direction.
struct TextRun {
    qsizetype start = 0;
    qsizetype length = 0;
    std::uint16_t font = 0;
    bool isRightToLeft = false;
};

/// Splits a line that reads from left to right into runs, in the order in which they stand on it. Words of scripts that
/// read from right to left stand in their own order, numbers among them keep theirs: the published bidirectional
/// algorithm.
[[nodiscard]] std::vector<TextRun> splitRuns(QStringView text, const std::function<std::uint16_t(char32_t)>& fontOf);

}  // namespace velcoran::report
