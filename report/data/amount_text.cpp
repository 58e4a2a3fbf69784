#include "amount_text.h"

#include <array>

namespace velcoran::report {

namespace {

constexpr int kAmountPlaces = 2;
constexpr int kRateMinimum = 4;

/// Digits with a comma in front of the last places and points between thousands.
QString grouped(const QString& digits, int places, bool isNegative) {
    QString text = digits.rightJustified(places + 1, u'0');
    qsizetype at = text.size();
    if (places > 0) {
        at -= places;
        text.insert(at, u',');
    }
    for (at -= 3; at > 0; at -= 3) text.insert(at, u'.');
    return isNegative ? u'-' + text : text;
}

QString decimalText(const base::Decimal& amount, int places) {
    const base::Decimal rounded = amount.rounded(places);
    return grouped(rounded.digits(), places, rounded.isNegative());
}

/// The same without long arithmetic, for what fits 64 bits: nearly every amount of every page.
QString shortText(std::uint64_t magnitude, int places, bool isNegative) {
    std::array<char16_t, 40> buffer{};
    std::size_t at = buffer.size();
    for (int digit = 0; magnitude != 0 || digit <= places; ++digit) {
        if (digit == places && places > 0) buffer[--at] = u',';
        if (digit > places && (digit - places) % 3 == 0) buffer[--at] = u'.';
        buffer[--at] = static_cast<char16_t>(u'0' + magnitude % 10);
        magnitude /= 10;
    }
    if (isNegative) buffer[--at] = u'-';
    return QString(reinterpret_cast<const QChar*>(buffer.data() + at), static_cast<qsizetype>(buffer.size() - at));
}

QString numberText(const ShortDecimal& amount, int places) {
    const std::optional<ShortDecimal> rounded = amount.rounded(places);
    if (!rounded || !base::fits64(rounded->mantissa)) return decimalText(amount, places);
    const bool isNegative = rounded->mantissa < 0;
    return shortText(static_cast<std::uint64_t>(isNegative ? -rounded->mantissa : rounded->mantissa), places,
                     isNegative);
}

}  // namespace

QString amountText(const base::Decimal& amount) { return decimalText(amount, kAmountPlaces); }
QString amountText(const ShortDecimal& amount) { return numberText(amount, kAmountPlaces); }

QString wholeAmountText(const base::Decimal& amount) {
    const QString plain = amount.toShortestText(kAmountPlaces);
    return decimalText(amount, static_cast<int>(plain.size() - 1 - plain.indexOf(u'.')));
}

QString rateText(const ShortDecimal& rate) {
    QString text = numberText(rate, kRatePlaces);
    for (int places = kRatePlaces; places > kRateMinimum && text.endsWith(u'0'); --places) text.chop(1);
    return text;
}

QString countText(qint64 count) { return grouped(QString::number(count), 0, false); }

}  // namespace velcoran::report
