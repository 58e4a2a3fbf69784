#include "numbers.h"

#include <QDate>

#include <algorithm>
#include <array>
#include <limits>

namespace velcoran::report {

namespace {

constexpr int kExactDigits = 15;
constexpr std::int64_t kExactLimit = 1'000'000'000'000'000;
constexpr int kMaxShortScale = 18;

constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                              1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};

/// Digits from the right, with the separator behind those of the scale.
QByteArray shortText(std::uint64_t magnitude, int scale, bool isNegative, int minimumPlaces, char separator) {
    for (; scale > minimumPlaces && magnitude % 10 == 0; --scale) magnitude /= 10;
    std::array<char, 48> buffer{};
    std::size_t at = buffer.size();
    for (int place = scale; place < minimumPlaces; ++place) buffer[--at] = '0';
    if (scale == 0 && minimumPlaces > 0) buffer[--at] = separator;
    for (int digit = 0; magnitude != 0 || digit <= scale; ++digit) {
        if (digit == scale && scale > 0) buffer[--at] = separator;
        buffer[--at] = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    }
    if (isNegative) buffer[--at] = '-';
    return {buffer.data() + at, static_cast<qsizetype>(buffer.size() - at)};
}

int numberAt(QStringView text, qsizetype at, qsizetype count) {
    int number = 0;
    for (qsizetype i = at; i < at + count; ++i) {
        const char16_t digit = text[i].unicode();
        if (digit < u'0' || digit > u'9') return -1;
        number = number * 10 + (digit - u'0');
    }
    return number;
}

}  // namespace

QByteArray exactText(const base::Decimal& amount, int minimumPlaces, char decimalSeparator) {
    return amount.toShortestText(minimumPlaces).toLatin1().replace('.', decimalSeparator);
}

QByteArray exactText(const Amount& amount, int minimumPlaces, char decimalSeparator) {
    constexpr Int128 kLimit = std::numeric_limits<std::int64_t>::max();
    const Int128 magnitude = amount.mantissa < 0 ? -amount.mantissa : amount.mantissa;
    if (magnitude > kLimit || magnitude < 0 || amount.scale > kMaxShortScale) {
        return exactText(amount.toDecimal(), minimumPlaces, decimalSeparator);
    }
    return shortText(static_cast<std::uint64_t>(magnitude), amount.scale, amount.mantissa < 0, minimumPlaces,
                     decimalSeparator);
}

std::optional<double> spreadsheetNumber(const Amount& amount) {
    const Int128 magnitude = amount.mantissa < 0 ? -amount.mantissa : amount.mantissa;
    if (magnitude < 0 || magnitude >= kExactLimit || amount.scale > kMaxShortScale) {
        return spreadsheetNumber(amount.toDecimal());
    }
    // Both are exact, so the quotient is the nearest number.
    return static_cast<double>(static_cast<std::int64_t>(amount.mantissa)) / kPowers[amount.scale];
}

std::optional<double> spreadsheetNumber(const base::Decimal& amount) {
    QString digits = amount.digits();
    while (digits.size() > 1 && digits.endsWith(u'0')) digits.chop(1);
    if (digits.size() > kExactDigits) return std::nullopt;
    return amount.toShortestText().toDouble();
}

std::optional<double> spreadsheetDay(QStringView text) {
    if (text.size() != 10 || text[2] != u'/' || text[5] != u'/') return std::nullopt;
    const QDate day(numberAt(text, 6, 4), numberAt(text, 3, 2), numberAt(text, 0, 2));
    if (!day.isValid() || day < QDate(1900, 3, 1)) return std::nullopt;
    return static_cast<double>(QDate(1899, 12, 30).daysTo(day));
}

}  // namespace velcoran::report
