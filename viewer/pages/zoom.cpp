#include "zoom.h"

#include <algorithm>

namespace velcoran::viewer {

namespace {

constexpr int kSteps[] = {25, 50, 75, 100, 125, 150, 200, 300, 400};

}  // namespace

std::span<const int> zoomSteps() { return kSteps; }

int nextZoomStep(int percent, bool isIn) {
    if (isIn) {
        const auto* above = std::ranges::upper_bound(kSteps, percent);
        return above == std::end(kSteps) ? percent : *above;
    }
    const auto* here = std::ranges::lower_bound(kSteps, percent);
    return here == std::begin(kSteps) ? percent : *(here - 1);
}

}  // namespace velcoran::viewer
