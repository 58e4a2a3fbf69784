#include "short_decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace velcoran::sqlite {

namespace {

/// Takes zeros off the end of a mantissa while there are decimal places.
ShortDecimal trimmed(base::Int128 mantissa, int scale) {
    while (scale > 0 && mantissa % 10 == 0) {
        mantissa /= 10;
        --scale;
    }
    return {mantissa, mantissa == 0 ? 0 : scale};
}

/// By way of the scientific notation, whose last digit is rounded from the exact binary value.
std::optional<ShortDecimal> slowlyRounded(double value) {
    char text[40];
    constexpr int kDigitsAfterFirst = 14;
    const auto written =
        std::to_chars(text, text + sizeof text, std::fabs(value), std::chars_format::scientific, kDigitsAfterFirst);
    const std::string_view view(text, static_cast<std::size_t>(written.ptr - text));
    const std::size_t exponentAt = view.find('e');
    base::Int128 mantissa = 0;
    for (const char digit : view.substr(0, exponentAt))
        if (digit != '.') mantissa = mantissa * 10 + (digit - '0');
    const int exponent = std::atoi(std::string(view.substr(exponentAt + 1)).c_str());
    int scale = kDigitsAfterFirst - exponent;
    // Zeros at the end go first, so that a small number of few digits keeps within the largest scale.
    while (scale > 0 && mantissa % 10 == 0 && mantissa != 0) {
        mantissa /= 10;
        --scale;
    }
    if (scale > base::kMaxDigits) return std::nullopt;
    if (scale < 0) {
        const auto whole = base::timesPowerOfTen(mantissa, -scale);
        if (!whole) return std::nullopt;
        mantissa = *whole;
        scale = 0;
    }
    return ShortDecimal{value < 0 ? -mantissa : mantissa, mantissa == 0 ? 0 : scale};
}

}  // namespace

std::optional<ShortDecimal> roundedTo15Digits(double value) {
    if (!std::isfinite(value)) return std::nullopt;
    std::int64_t mantissa = 0;
    for (const int scale : {0, 2, 4, 6, 8})
        if (isAtScale(value, scale, mantissa)) return trimmed(mantissa, scale);
    return slowlyRounded(value);
}

std::string decimalText(base::Int128 mantissa, int scale) {
    const ShortDecimal shortest = trimmed(mantissa, scale);
    const bool isNegative = shortest.mantissa < 0;
    std::string digits;
    // Digit by digit without turning the sign: the least value has no positive counterpart.
    for (base::Int128 rest = shortest.mantissa; rest != 0; rest /= 10) {
        const int digit = static_cast<int>(rest % 10);
        digits.push_back(static_cast<char>('0' + std::abs(digit)));
    }
    while (digits.size() <= static_cast<std::size_t>(shortest.scale)) digits.push_back('0');
    if (shortest.scale > 0) digits.insert(static_cast<std::size_t>(shortest.scale), 1, '.');
    if (isNegative) digits.push_back('-');
    std::reverse(digits.begin(), digits.end());
    return digits;
}

double nearestReal(base::Int128 mantissa, int scale) {
    const std::string text = decimalText(mantissa, scale);
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

}  // namespace velcoran::sqlite
