#include "short_decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace velcoran::base {

namespace {

__extension__ typedef unsigned __int128 Unsigned;

constexpr int kFewDigits = 18;
/// Binary numbers hold every whole number up to here.
constexpr std::int64_t kMaxExactReal = std::int64_t{1} << 53U;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\0')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\0')) text.remove_suffix(1);
    return text;
}

/// Takes the sign off. @return true for a minus
bool takeSign(std::string_view& text) {
    if (text.empty() || (text.front() != '-' && text.front() != '+')) return false;
    const bool isNegative = text.front() == '-';
    text.remove_prefix(1);
    return isNegative;
}

/// Digits of a mantissa as they come: zeros in front are free, zeros at the end are held back until a digit follows.
class DigitCollector {
public:
    void add(char digit, bool isFraction) {
        m_hasDigits = true;
        if (isFraction) ++m_scale;
        if (digit == '0') {
            ++m_zeros;
            return;
        }
        flushZeros();
        push(digit - '0');
    }
    /// The number, with as many of the held back zeros as kMaxDigits digits allow.
    [[nodiscard]] std::optional<ShortDecimal> finish(int exponent) {
        if (!m_hasDigits || m_isTooLong) return std::nullopt;
        int scale = m_scale - exponent;
        if (m_value == 0) return ShortDecimal{0, std::clamp(scale, 0, kMaxDigits)};
        const int most = std::min(m_zeros, scale);
        const int dropped =
            std::clamp(std::max(m_digits + m_zeros - kMaxDigits, scale - kMaxDigits), 0, std::max(most, 0));
        m_zeros -= dropped;
        scale -= dropped;
        flushZeros();
        for (; scale < 0 && !m_isTooLong; ++scale) push(0);
        if (m_isTooLong || scale > kMaxDigits) return std::nullopt;
        return ShortDecimal{static_cast<Int128>(m_value), scale};
    }

private:
    void flushZeros() {
        if (m_value == 0) m_zeros = 0;
        for (; m_zeros > 0 && !m_isTooLong; --m_zeros) push(0);
    }
    void push(int digit) {
        if (++m_digits > kMaxDigits) {
            m_isTooLong = true;
            return;
        }
        m_value = m_value * 10 + static_cast<unsigned>(digit);
    }

    Unsigned m_value = 0;
    int m_digits = 0;
    int m_zeros = 0;
    int m_scale = 0;
    bool m_hasDigits = false;
    bool m_isTooLong = false;
};

/// Reads "e+20" at the end. @return nothing when something else stands there
std::optional<int> parseExponent(std::string_view text) {
    if (text.empty()) return 0;
    if (text.front() != 'e' && text.front() != 'E') return std::nullopt;
    text.remove_prefix(1);
    const bool isNegative = takeSign(text);
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    constexpr int kFarAway = 1000;
    if (error != std::errc() || end != text.data() + text.size() || value < 0 || value > kFarAway) return std::nullopt;
    return isNegative ? -value : value;
}

/// The kRealDigits digits of a finite number without its sign: digits / 10^scale, no zeros at the end.
struct RealDigits {
    std::int64_t digits = 0;
    int scale = 0;
};

/// By way of the scientific notation, whose last digit is rounded from the exact binary value.
RealDigits digitsOf(double value) {
    char text[40];
    const char* const end = std::to_chars(std::begin(text), std::end(text), std::fabs(value),
                                          std::chars_format::scientific, kRealDigits - 1)
                                .ptr;
    RealDigits result;
    const char* at = text;
    for (; *at != 'e'; ++at)
        if (*at != '.') result.digits = result.digits * 10 + (*at - '0');
    if (result.digits == 0) return {};
    int exponent = 0;
    std::from_chars(at[1] == '+' ? at + 2 : at + 1, end, exponent);
    result.scale = kRealDigits - 1 - exponent;
    for (; result.digits % 10 == 0; --result.scale) result.digits /= 10;
    return result;
}

/// Writes from the right. @return the first character
template <class Magnitude>
char* write(char* end, Magnitude magnitude, int scale, int minimumPlaces) {
    for (; scale > minimumPlaces && magnitude % 10 == 0; --scale) magnitude /= 10;
    for (int place = scale; place < minimumPlaces; ++place) *--end = '0';
    for (int digit = 0; magnitude != 0 || digit <= scale; ++digit) {
        if (digit == scale && std::max(scale, minimumPlaces) > 0) *--end = '.';
        *--end = static_cast<char>('0' + static_cast<int>(magnitude % 10));
        magnitude /= 10;
    }
    return end;
}

/// @return the quotient, rounded half away from zero
template <class Integer>
Integer roundedQuotient(Integer dividend, Integer divisor) {
    const Integer rest = dividend % divisor;
    const Integer magnitude = rest < 0 ? -rest : rest;
    if (magnitude < divisor - magnitude) return dividend / divisor;
    return dividend / divisor + (dividend < 0 ? -1 : 1);
}

}  // namespace

std::optional<ShortDecimal> ShortDecimal::parse(std::string_view text) {
    text = trimmed(text);
    const bool isNegative = takeSign(text);
    DigitCollector digits;
    bool isFraction = false;
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        if (isDigit(text[at])) {
            digits.add(text[at], isFraction);
        } else if (text[at] == '.' && !isFraction) {
            isFraction = true;
        } else {
            break;
        }
    }
    const std::optional<int> exponent = parseExponent(text.substr(at));
    if (!exponent) return std::nullopt;
    std::optional<ShortDecimal> number = digits.finish(*exponent);
    if (number && isNegative) number->mantissa = -number->mantissa;
    return number;
}

bool parseFewDigits(std::string_view text, std::int64_t& mantissa, int& scale) {
    const char* at = text.data();
    const char* const end = at + text.size();
    const bool isNegative = at != end && *at == '-';
    if (isNegative) ++at;
    if (at == end || end - at > kFewDigits) return false;
    const char* point = nullptr;
    std::int64_t value = 0;
    for (; at != end; ++at) {
        if (isDigit(*at)) {
            value = value * 10 + (*at - '0');
        } else if (*at == '.' && point == nullptr && end - at > 1) {
            point = at;
        } else {
            return false;
        }
    }
    mantissa = isNegative ? -value : value;
    scale = point == nullptr ? 0 : static_cast<int>(end - point - 1);
    return true;
}

std::optional<ShortDecimal> ShortDecimal::ofReal(double value) {
    if (!std::isfinite(value)) return std::nullopt;
    std::int64_t mantissa = 0;
    for (int scale : {0, 2, 4, 6, 8}) {
        if (!isAtScale(value, scale, mantissa)) continue;
        for (; scale > 0 && mantissa % 10 == 0; --scale) mantissa /= 10;
        return ShortDecimal{mantissa, scale};
    }
    const RealDigits digits = digitsOf(value);
    if (digits.scale > kMaxDigits) return std::nullopt;
    const auto whole = timesPowerOfTen(value < 0 ? -digits.digits : digits.digits, std::max(0, -digits.scale));
    if (!whole) return std::nullopt;
    return ShortDecimal{*whole, std::max(0, digits.scale)};
}

std::optional<ShortDecimal> ShortDecimal::rounded(int places) const {
    if (places >= scale) {
        const auto padded = timesPowerOfTen(mantissa, places - scale);
        return padded ? std::optional(ShortDecimal{*padded, places}) : std::nullopt;
    }
    const Int128 divisor = powerOfTen(scale - places);
    if (!fits64(mantissa) || !fits64(divisor)) return ShortDecimal{roundedQuotient(mantissa, divisor), places};
    return ShortDecimal{roundedQuotient(static_cast<std::int64_t>(mantissa), static_cast<std::int64_t>(divisor)),
                        places};
}

std::string ShortDecimal::toText(int minimumPlaces) const {
    // Sign, point, the digits of the widest mantissa, and zeros behind them.
    char text[2 + kMaxDigits + 1 + kMaxDigits];
    char* const end = std::end(text);
    const Unsigned magnitude = mantissa < 0 ? -static_cast<Unsigned>(mantissa) : static_cast<Unsigned>(mantissa);
    const auto low = static_cast<std::uint64_t>(magnitude);
    char* at = low == magnitude ? write(end, low, scale, minimumPlaces) : write(end, magnitude, scale, minimumPlaces);
    if (mantissa < 0) *--at = '-';
    return {at, end};
}

double ShortDecimal::toReal() const {
    if (scale <= kMaxRealPower && mantissa <= kMaxExactReal && mantissa >= -kMaxExactReal)
        return static_cast<double>(static_cast<std::int64_t>(mantissa)) / kRealPowers[scale];  // of two exact numbers
    const std::string text = toText();
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::string realText(double value) {
    if (std::isnan(value)) return "nan";
    const std::string sign = value < 0 ? "-" : "";
    if (std::isinf(value)) return sign + "inf";
    if (const auto decimal = ShortDecimal::ofReal(value)) return decimal->toText();
    const RealDigits real = digitsOf(value);
    std::string digits = std::to_string(real.digits);
    const int exponent = static_cast<int>(digits.size()) - 1 - real.scale;
    if (digits.size() > 1) digits.insert(1, 1, '.');
    return sign + digits + (exponent < 0 ? "e" : "e+") + std::to_string(exponent);
}

}  // namespace velcoran::base
