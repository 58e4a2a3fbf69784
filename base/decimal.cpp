#include "decimal.h"

#include "error.h"

namespace velcoran::base {

namespace {

constexpr int kMaxParsedDigits = 76;  // what 255 bits always hold

// Digits are read and written in pieces that a machine word holds.
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
        Mantissa power = 1;
        for (int i = 0; i < exponent; ++i) power *= 10;
        return power;
    });
}

Mantissa scaledUp(const Mantissa& mantissa, int places) {
    if (places == 0) return mantissa;
    return checked([&] { return Mantissa(mantissa * widePowerOfTen(places)); });
}

struct ParsedNumber {
    bool isNegative = false;
    QByteArray digits;
    int scale = 0;
};

/// Digits with at most one point, from a position on; moves the position behind them.
bool readDigits(QStringView text, qsizetype& position, ParsedNumber& number) {
    bool hasPoint = false;
    for (; position < text.size(); ++position) {
        const char16_t character = text[position].unicode();
        if (character == u'.' && !hasPoint) {
            hasPoint = true;
        } else if (character >= u'0' && character <= u'9') {
            number.digits.append(static_cast<char>(character));
            if (hasPoint) ++number.scale;
        } else {
            break;
        }
    }
    return !number.digits.isEmpty();
}

/// The number that digits write.
Mantissa mantissaOf(const QByteArray& digits) {
    Mantissa mantissa = 0;
    for (qsizetype start = 0; start < digits.size(); start += kPieceDigits) {
        std::int64_t piece = 0;
        std::int64_t power = 1;
        for (const char digit : QByteArrayView(digits).sliced(start, std::min(kPieceDigits, digits.size() - start))) {
            piece = piece * 10 + (digit - '0');
            power *= 10;
        }
        mantissa = mantissa * power + piece;
    }
    return mantissa;
}

}  // namespace

Decimal Decimal::fromInt128(Int128 mantissa, int scale) { return {Mantissa(mantissa), scale}; }

std::optional<Decimal> Decimal::parse(QStringView text) {
    text = text.trimmed();
    qsizetype position = 0;
    ParsedNumber number;
    if (position < text.size() && (text[position] == u'-' || text[position] == u'+')) {
        number.isNegative = text[position] == u'-';
        ++position;
    }
    if (!readDigits(text, position, number)) return std::nullopt;
    int exponent = 0;
    if (position < text.size()) {
        if (text[position] != u'e' && text[position] != u'E') return std::nullopt;
        bool isNumber = false;
        exponent = text.mid(position + 1).toInt(&isNumber);
        if (!isNumber || exponent > kMaxParsedDigits || exponent < -kMaxParsedDigits) return std::nullopt;
    }
    int scale = number.scale - exponent;
    while (scale < 0) {
        number.digits.append('0');
        ++scale;
    }
    while (number.digits.size() > 1 && number.digits.front() == '0') number.digits.remove(0, 1);
    if (number.digits.size() > kMaxParsedDigits) return std::nullopt;
    Mantissa mantissa = mantissaOf(number.digits);
    if (number.isNegative) mantissa = -mantissa;
    return Decimal(std::move(mantissa), scale);
}

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
