#pragma once

#include <span>

namespace velcoran::viewer {

/// How large pages are shown.
struct Zoom {
    enum class Kind { Percent, PageWidth, WholePage };

    Kind kind = Kind::PageWidth;
    int percent = 100;  ///< of the printed size; counts for Kind::Percent alone

    friend bool operator==(const Zoom&, const Zoom&) = default;
};

constexpr int kMinPercent = 10;
constexpr int kMaxPercent = 400;

/// The percentages of the zoom list, rising.
[[nodiscard]] std::span<const int> zoomSteps();
/// The next step of the list above (isIn) or below a percentage; the percentage itself at the end of the list.
[[nodiscard]] int nextZoomStep(int percent, bool isIn);

}  // namespace velcoran::viewer
