#include "amount_text.h"

#include <array>
#include <limits>

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

QString numberText(const Amount& amount, int places) {
    constexpr Int128 kLimit = std::numeric_limits<std::int64_t>::max() / 1000;
    if (amount.mantissa > kLimit || amount.mantissa < -kLimit || amount.scale > 18) {
        return decimalText(amount.toDecimal(), places);
    }
    auto magnitude = static_cast<std::uint64_t>(amount.mantissa < 0 ? -amount.mantissa : amount.mantissa);
    for (int scale = amount.scale; scale < places; ++scale) {
        if (magnitude > std::numeric_limits<std::uint64_t>::max() / 10) return decimalText(amount.toDecimal(), places);
        magnitude *= 10;
    }
    if (amount.scale > places) {
        const auto divisor = static_cast<std::uint64_t>(powerOfTen(amount.scale - places));
        const std::uint64_t rest = magnitude % divisor;
        magnitude = magnitude / divisor + (rest >= divisor - rest ? 1 : 0);
    }
    return shortText(magnitude, places, amount.mantissa < 0 && magnitude != 0);
}

}  // namespace

QString amountText(const base::Decimal& amount) { return decimalText(amount, kAmountPlaces); }
QString amountText(const Amount& amount) { return numberText(amount, kAmountPlaces); }

QString wholeAmountText(const base::Decimal& amount) {
    const QString plain = amount.toShortestText(kAmountPlaces);
    return decimalText(amount, static_cast<int>(plain.size() - 1 - plain.indexOf(u'.')));
}

QString rateText(const Amount& rate) {
    QString text = numberText(rate, kRatePlaces);
    for (int places = kRatePlaces; places > kRateMinimum && text.endsWith(u'0'); --places) text.chop(1);
    return text;
}

QString countText(qint64 count) { return grouped(QString::number(count), 0, false); }

}  // namespace velcoran::report
