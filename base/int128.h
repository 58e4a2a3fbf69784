#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>

namespace velcoran::base {

/// 16 bytes, two's complement: the mantissa of a decimal of up to 38 digits.
__extension__ typedef __int128 Int128;

/// Most digits of a mantissa, and most decimal places: what 128 bits hold whatever the digits are, and what database
/// servers give their decimals.
constexpr int kMaxDigits = 38;

namespace detail {

constexpr std::array<Int128, kMaxDigits + 1> makePowers() {
    std::array<Int128, kMaxDigits + 1> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}
inline constexpr std::array<Int128, kMaxDigits + 1> kPowers = makePowers();

}  // namespace detail

/// 10^exponent. @param exponent  0 to kMaxDigits
[[nodiscard]] constexpr Int128 powerOfTen(int exponent) { return detail::kPowers[static_cast<std::size_t>(exponent)]; }

/// True for what 64 bits hold.
[[nodiscard]] constexpr bool fits64(Int128 value) {
    return value >= std::numeric_limits<std::int64_t>::min() && value <= std::numeric_limits<std::int64_t>::max();
}

/// mantissa * 10^places, places 0 and up; nothing when more than kMaxDigits digits come out.
[[nodiscard]] constexpr std::optional<Int128> timesPowerOfTen(Int128 mantissa, int places) {
    if (mantissa == 0) return mantissa;
    if (places > kMaxDigits) return std::nullopt;
    const Int128 limit = powerOfTen(kMaxDigits - places);
    if (mantissa >= limit || mantissa <= -limit) return std::nullopt;
    return mantissa * powerOfTen(places);
}

}  // namespace velcoran::base
