#include "decimal.h"

#include "error.h"

namespace velcoran::base {

namespace {

// Digits are written in pieces that a machine word holds.
constexpr qsizetype kPieceDigits = 18;
constexpr std::int64_t kPiecePower = 1'000'000'000'000'000'000;

using Mantissa = Decimal::Mantissa;

/// Runs an operation of the checked integers and turns its overflow into the run-time's.
template <class Operation>
auto checked(Operation operation) {
    try {
        return operation();
    } catch (const std::overflow_error&) {
        throw Error(kOverflow, QStringLiteral("Rezultatul are prea multe cifre."), QStringLiteral("Decimal"));
    } catch (const std::range_error&) {
        throw Error(kOverflow, QStringLiteral("Rezultatul are prea multe cifre."), QStringLiteral("Decimal"));
    }
}

Mantissa widePowerOfTen(int exponent) {
    return checked([exponent] {
        Mantissa power = powerOfTen(exponent % kMaxDigits);
        for (int i = exponent / kMaxDigits; i > 0; --i) power *= powerOfTen(kMaxDigits);
        return power;
    });
}

Mantissa scaledUp(const Mantissa& mantissa, int places) {
    if (places == 0) return mantissa;
    return checked([&] { return Mantissa(mantissa * widePowerOfTen(places)); });
}

}  // namespace

Decimal Decimal::rounded(int places) const {
    if (places >= m_scale) return {scaledUp(m_mantissa, places - m_scale), places};
    const Mantissa divisor = widePowerOfTen(m_scale - places);
    Mantissa quotient = m_mantissa / divisor;
    const Mantissa rest = abs(Mantissa(m_mantissa % divisor));
    if (rest >= divisor - rest) quotient += isNegative() ? -1 : 1;
    return {quotient, places};
}

QString Decimal::digits() const {
    Mantissa rest = abs(m_mantissa);
    QString text;
    do {
        const auto piece = static_cast<qulonglong>(rest % kPiecePower);
        rest /= kPiecePower;
        const QString digits = QString::number(piece);
        text.prepend(rest == 0 ? digits : digits.rightJustified(kPieceDigits, u'0'));
    } while (rest != 0);
    return text;
}

QString Decimal::toText(int minimumPlaces) const {
    if (m_scale < minimumPlaces) return rounded(minimumPlaces).toText();
    QString text = digits();
    if (m_scale > 0) {
        text = text.rightJustified(m_scale + 1, u'0');
        text.insert(text.size() - m_scale, u'.');
    }
    return isNegative() ? u'-' + text : text;
}

QString Decimal::toShortestText(int minimumPlaces) const {
    Decimal shortest = *this;
    while (shortest.m_scale > minimumPlaces && shortest.m_mantissa % 10 == 0) {
        shortest.m_mantissa /= 10;
        --shortest.m_scale;
    }
    return shortest.toText(minimumPlaces);
}

Decimal& Decimal::operator+=(const Decimal& other) {
    const int scale = std::max(m_scale, other.m_scale);
    m_mantissa = checked([&] {
        return Mantissa(scaledUp(m_mantissa, scale - m_scale) + scaledUp(other.m_mantissa, scale - other.m_scale));
    });
    m_scale = scale;
    return *this;
}

Decimal operator*(const Decimal& one, const Decimal& other) {
    return {checked([&] { return Mantissa(one.m_mantissa * other.m_mantissa); }), one.m_scale + other.m_scale};
}

bool operator==(const Decimal& one, const Decimal& other) {
    const int scale = std::max(one.m_scale, other.m_scale);
    return scaledUp(one.m_mantissa, scale - one.m_scale) == scaledUp(other.m_mantissa, scale - other.m_scale);
}

}  // namespace velcoran::base
