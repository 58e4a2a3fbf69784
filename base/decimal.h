#pragma once

#include "int128.h"

#include <QString>
#include <QStringView>

#include <boost/multiprecision/cpp_int.hpp>

#include <optional>

namespace velcoran::base {

/// An exact decimal number: mantissa / 10^scale. Sums, differences and products are exact in checked 256 bits; what
/// does not fit is Error 6, never a wrong number.
class Decimal {
public:
    using Mantissa = boost::multiprecision::checked_int256_t;

    Decimal() = default;
    /// @param scale  decimal places, 0 and up
    Decimal(Mantissa mantissa, int scale) : m_mantissa(std::move(mantissa)), m_scale(scale) {}
    static Decimal fromInt64(std::int64_t mantissa, int scale = 0) { return {Mantissa(mantissa), scale}; }
    static Decimal fromInt128(Int128 mantissa, int scale);
    /// Reads an optional sign, digits with at most one point, and an optional exponent; blanks around are dropped.
    /// @return nothing for any other text, or for more digits than 76
    static std::optional<Decimal> parse(QStringView text);

    [[nodiscard]] const Mantissa& mantissa() const { return m_mantissa; }
    [[nodiscard]] int scale() const { return m_scale; }
    [[nodiscard]] bool isZero() const { return m_mantissa == 0; }
    [[nodiscard]] bool isNegative() const { return m_mantissa < 0; }

    /// Rounded half away from zero to a number of decimal places; padded with zeros when it has fewer.
    [[nodiscard]] Decimal rounded(int places) const;
    /// The value with a point, "-1234.50"; all digits of the scale, padded to at least minimumPlaces.
    [[nodiscard]] QString toText(int minimumPlaces = 0) const;
    /// The value without trailing zeros, but with at least minimumPlaces decimal places.
    [[nodiscard]] QString toShortestText(int minimumPlaces = 0) const;
    /// Digits without sign and point, leading zeros dropped; "0" for zero.
    [[nodiscard]] QString digits() const;

    Decimal& operator+=(const Decimal& other);
    friend Decimal operator+(Decimal one, const Decimal& other) { return one += other; }
    friend Decimal operator*(const Decimal& one, const Decimal& other);
    /// Equal in value: 1.50 equals 1.5.
    friend bool operator==(const Decimal& one, const Decimal& other);

private:
    Mantissa m_mantissa = 0;
    int m_scale = 0;
};

}  // namespace velcoran::base
