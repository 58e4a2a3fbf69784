#include "real_text.h"

#include "int128.h"

#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

namespace velcoran::base {

namespace {

/// Digits with the point behind the first of them, and the power of ten to that.
struct Scientific {
    std::string digits;
    int exponent = 0;
};

Scientific rounded(double value) {
    char buffer[40];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value), std::chars_format::scientific, kRealDigits - 1)
            .ptr;
    const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
    const std::size_t exponentAt = text.find('e');
    Scientific result;
    for (const char character : text.substr(0, exponentAt))
        if (character != '.') result.digits.push_back(character);
    while (result.digits.size() > 1 && result.digits.back() == '0') result.digits.pop_back();
    const char* const sign = buffer + exponentAt + 1;
    std::from_chars(*sign == '+' ? sign + 1 : sign, end, result.exponent);
    return result;
}

std::string plain(const Scientific& number) {
    std::string digits = number.digits;
    if (number.exponent < 0) return "0." + std::string(static_cast<std::size_t>(-number.exponent - 1), '0') + digits;
    const auto whole = static_cast<std::size_t>(number.exponent) + 1;
    if (digits.size() <= whole) return digits.append(whole - digits.size(), '0');
    return digits.insert(whole, 1, '.');
}

std::string withExponent(const Scientific& number) {
    std::string digits = number.digits;
    if (digits.size() > 1) digits.insert(1, 1, '.');
    return digits + (number.exponent < 0 ? "e" : "e+") + std::to_string(number.exponent);
}

}  // namespace

QString realText(double value) {
    if (std::isnan(value)) return QStringLiteral("nan");
    const QString sign = value < 0 ? QStringLiteral("-") : QString();
    if (std::isinf(value)) return sign + QStringLiteral("inf");
    const Scientific number = rounded(value);
    const int places = static_cast<int>(number.digits.size()) - 1 - number.exponent;
    const bool isPlain = number.exponent < kMaxDigits && places <= kMaxDigits;
    return sign + QString::fromStdString(isPlain ? plain(number) : withExponent(number));
}

}  // namespace velcoran::base
