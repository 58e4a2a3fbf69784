#include "amount_text.h"

#include <algorithm>
#include <string_view>

namespace velcoran::report {

namespace {

constexpr int kAmountPlaces = 2;
constexpr int kRateMinimum = 4;

/// A number with a comma for its point, and points between its thousands.
QString grouped(std::string_view number) {
    const std::size_t wholeEnd = std::min(number.find('.'), number.size());
    const std::size_t wholeStart = number.starts_with('-') ? 1 : 0;
    const std::size_t points = (wholeEnd - wholeStart - 1) / 3;
    QString text(static_cast<qsizetype>(number.size() + points), Qt::Uninitialized);
    QChar* to = text.data();
    for (std::size_t at = 0; at < number.size(); ++at) {
        if (at > wholeStart && at < wholeEnd && (wholeEnd - at) % 3 == 0) *to++ = u'.';
        *to++ = at == wholeEnd ? QLatin1Char(',') : QLatin1Char(number[at]);
    }
    return text;
}

QString numberText(const base::Decimal& amount, int places) {
    return grouped(amount.rounded(places).toText().toStdString());
}

QString numberText(const ShortDecimal& amount, int places) {
    const std::optional<ShortDecimal> rounded = amount.rounded(places);
    return rounded ? grouped(base::DecimalText(*rounded, places).view()) : numberText(base::Decimal(amount), places);
}

}  // namespace

QString amountText(const base::Decimal& amount) { return numberText(amount, kAmountPlaces); }
QString amountText(const ShortDecimal& amount) { return numberText(amount, kAmountPlaces); }

QString wholeAmountText(const base::Decimal& amount) {
    return grouped(amount.toShortestText(kAmountPlaces).toStdString());
}

QString rateText(const ShortDecimal& rate) {
    QString text = numberText(rate, kRatePlaces);
    for (int places = kRatePlaces; places > kRateMinimum && text.endsWith(u'0'); --places) text.chop(1);
    return text;
}

QString countText(qint64 count) { return grouped(std::to_string(count)); }

}  // namespace velcoran::report
