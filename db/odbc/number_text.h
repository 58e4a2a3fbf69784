#pragma once

#include "base/decimal.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace velcoran::odbc {

using base::kMaxDigits;

/// mantissa / 10^scale, as a driver wrote it.
struct NumberText {
    base::Int128 mantissa = 0;
    int scale = 0;
};

/// Reads a number as drivers write it: blanks around, a sign, digits with at most one point, an exponent. The scale is
/// that of the text ("1.50" has 2), less where more than 38 digits would be needed for zeros at the end.
/// @return nothing for other texts and for numbers of more than 38 digits
[[nodiscard]] std::optional<NumberText> parseNumber(std::string_view text);

/// The same for the usual case, at most 18 digits and a point: a fraction of the time.
[[nodiscard]] bool parseShortNumber(std::string_view text, std::int64_t& mantissa, int& scale);

}  // namespace velcoran::odbc
