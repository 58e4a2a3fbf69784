#pragma once

#include "base/decimal.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velcoran::sqlite {

/// Powers of ten that a double holds exactly and a 64-bit integer too.
constexpr int kMaxFastScale = 15;
constexpr double kRealPowers[kMaxFastScale + 1] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// A decimal of at most 15 digits, or an integer: mantissa / 10^scale, scale 0 to 38 and as small as can be.
struct ShortDecimal {
    base::Int128 mantissa = 0;
    int scale = 0;
};

/// The mantissa at a given scale (0 to kMaxFastScale), when the value rounded to 15 significant digits has at most that
/// many decimal places and the digits fit. A decimal of 15 digits or fewer is told exactly by the double nearest to it,
/// so the division back decides.
inline bool isAtScale(double value, int scale, std::int64_t& mantissa) {
    const double scaled = value * kRealPowers[scale];
    if (!(scaled < 1e15 && scaled > -1e15)) return false;
    mantissa = static_cast<std::int64_t>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
    return static_cast<double>(mantissa) / kRealPowers[scale] == value;
}

/// The value rounded to 15 significant digits; nothing for an infinity and for what needs more than 38 digits before or
/// after the point.
[[nodiscard]] std::optional<ShortDecimal> roundedTo15Digits(double value);

/// Shortest text of mantissa / 10^scale: no zeros at the end, "-0.5".
[[nodiscard]] std::string decimalText(base::Int128 mantissa, int scale);
/// The double nearest to mantissa / 10^scale.
[[nodiscard]] double nearestReal(base::Int128 mantissa, int scale);

}  // namespace velcoran::sqlite
