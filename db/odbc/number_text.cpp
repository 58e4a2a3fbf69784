#include "number_text.h"

#include <algorithm>
#include <charconv>

namespace velcoran::odbc {

namespace {

__extension__ typedef unsigned __int128 Unsigned;

constexpr int kShortDigits = 18;

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
    /// The number, with as many of the held back zeros as 38 digits allow.
    [[nodiscard]] std::optional<NumberText> finish(int exponent) {
        if (!m_hasDigits || m_isTooLong) return std::nullopt;
        int scale = m_scale - exponent;
        while (m_zeros > 0 && m_value != 0 && (m_digits >= kMaxDigits || scale > kMaxDigits) && scale > 0) {
            --m_zeros;
            --scale;
        }
        if (m_value == 0) return NumberText{0, std::clamp(scale, 0, kMaxDigits)};
        flushZeros();
        while (scale < 0 && !m_isTooLong) {
            push(0);
            ++scale;
        }
        if (m_isTooLong || scale > kMaxDigits) return std::nullopt;
        return NumberText{static_cast<base::Int128>(m_value), scale};
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

}  // namespace

bool parseShortNumber(std::string_view text, std::int64_t& mantissa, int& scale) {
    const char* at = text.data();
    const char* const end = at + text.size();
    const bool isNegative = at != end && *at == '-';
    if (isNegative) ++at;
    if (at == end || end - at > kShortDigits) return false;
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

std::optional<NumberText> parseNumber(std::string_view text) {
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
    std::optional<NumberText> number = digits.finish(*exponent);
    if (number && isNegative) number->mantissa = -number->mantissa;
    return number;
}

}  // namespace velcoran::odbc
