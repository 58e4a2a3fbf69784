#include "numbers.h"

#include <QDate>

namespace velcoran::report {

namespace {

constexpr Int128 kExactLimit = base::powerOfTen(base::kRealDigits);

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

QByteArray exactText(const ShortDecimal& amount, int minimumPlaces, char decimalSeparator) {
    return QByteArray::fromStdString(amount.toText(minimumPlaces)).replace('.', decimalSeparator);
}

std::optional<double> spreadsheetNumber(const ShortDecimal& amount) {
    if (amount.mantissa >= kExactLimit || amount.mantissa <= -kExactLimit) {
        return spreadsheetNumber(base::Decimal(amount));
    }
    return amount.toReal();
}

std::optional<double> spreadsheetNumber(const base::Decimal& amount) {
    QString digits = amount.digits();
    while (digits.size() > 1 && digits.endsWith(u'0')) digits.chop(1);
    if (digits.size() > base::kRealDigits) return std::nullopt;
    return amount.toShortestText().toDouble();
}

std::optional<double> spreadsheetDay(QStringView text) {
    if (text.size() != 10 || text[2] != u'/' || text[5] != u'/') return std::nullopt;
    const QDate day(numberAt(text, 6, 4), numberAt(text, 3, 2), numberAt(text, 0, 2));
    if (!day.isValid() || day < QDate(1900, 3, 1)) return std::nullopt;
    return static_cast<double>(QDate(1899, 12, 30).daysTo(day));
}

}  // namespace velcoran::report
