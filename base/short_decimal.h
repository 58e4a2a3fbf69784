#pragma once

#include "int128.h"

#include <optional>
#include <string>
#include <string_view>

namespace velcoran::base {

/// Significant digits that a binary floating point number carries for certain.
constexpr int kRealDigits = 15;

/// Powers of ten that a binary floating point number holds exactly.
constexpr int kMaxRealPower = 22;
constexpr double kRealPowers[kMaxRealPower + 1] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// An exact number that 128 bits hold: mantissa / 10^scale, at most kMaxDigits digits, scale 0 to kMaxDigits.
struct ShortDecimal {
    Int128 mantissa = 0;
    int scale = 0;

    /// Reads a number as people and drivers write it: blanks around, a sign, digits with at most one point, an
    /// exponent. The scale is that of the text ("1.50" has 2), less where zeros at the end would need more than
    /// kMaxDigits digits.
    /// @return nothing for other texts and for what kMaxDigits digits do not hold
    [[nodiscard]] static std::optional<ShortDecimal> parse(std::string_view text);
    /// A binary number rounded to kRealDigits significant digits, the scale as small as can be; nothing for what is
    /// not finite and for what needs more than kMaxDigits digits before or after the point.
    [[nodiscard]] static std::optional<ShortDecimal> ofReal(double value);

    /// Rounded half away from zero to a number of decimal places, padded with zeros when it has fewer; nothing when
    /// that needs more than kMaxDigits digits.
    [[nodiscard]] std::optional<ShortDecimal> rounded(int places) const;
    /// With a point, "-0.5"; no zeros at the end, but at least minimumPlaces (0 to kMaxDigits) decimal places.
    [[nodiscard]] std::string toText(int minimumPlaces = 0) const;
    /// The binary number nearest to it.
    [[nodiscard]] double toReal() const;
};

/// Reads what most numbers are, at most 18 digits with a point: a fraction of the time of ShortDecimal::parse.
[[nodiscard]] bool parseFewDigits(std::string_view text, std::int64_t& mantissa, int& scale);

/// The mantissa of a binary number at a given scale (0 to kMaxRealPower), when the number rounded to kRealDigits digits
/// has at most that many decimal places and the digits fit. A decimal of kRealDigits digits or fewer is told exactly by
/// the binary number nearest to it, so the division back decides.
[[nodiscard]] inline bool isAtScale(double value, int scale, std::int64_t& mantissa) {
    const double scaled = value * kRealPowers[scale];
    if (!(scaled < 1e15 && scaled > -1e15)) return false;
    mantissa = static_cast<std::int64_t>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
    return static_cast<double>(mantissa) / kRealPowers[scale] == value;
}

/// The text of a binary number, rounded to kRealDigits significant digits, without zeros at the end: in plain digits
/// ("100000", "0.1") where a ShortDecimal holds them, else with an exponent ("1.5e+40"); "inf", "-inf", "nan".
[[nodiscard]] std::string realText(double value);

}  // namespace velcoran::base
