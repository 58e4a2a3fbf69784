#pragma once

#include "base/units.h"

#include <optional>

namespace velcoran::form {

inline constexpr base::Colour kWindowColour{0xC0C0C0};
/// Back colours of the filter controls with and without the focus.
inline constexpr base::Colour kFocusColour = base::kFocusGrey;
inline constexpr base::Colour kRestColour{0x000000};

/// Colours and font of a control. A colour that is not set is the system's.
struct Look {
    std::optional<base::Colour> back = std::nullopt;
    std::optional<base::Colour> fore = std::nullopt;
    std::optional<base::Colour> border = std::nullopt;
    double points = 8.25;
    bool isBold = false;
};

}  // namespace velcoran::form
