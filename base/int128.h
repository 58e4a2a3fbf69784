#pragma once

#include <optional>

namespace velcoran::base {

/// 16 bytes, two's complement: the mantissa of a decimal of up to 38 digits.
__extension__ typedef __int128 Int128;

/// Most digits of a mantissa, and most decimal places: what 128 bits hold whatever the digits are, and what database
/// servers give their decimals.
constexpr int kMaxDigits = 38;

/// 10^exponent. @param exponent  0 to kMaxDigits
[[nodiscard]] Int128 powerOfTen(int exponent);

/// mantissa * 10^places, places 0 and up; nothing when more than kMaxDigits digits come out.
[[nodiscard]] std::optional<Int128> timesPowerOfTen(Int128 mantissa, int places);

}  // namespace velcoran::base
