#pragma once

#include "short_decimal.h"

#include <QString>

#include <boost/multiprecision/cpp_int.hpp>

namespace velcoran::base {

/// An exact decimal number: mantissa / 10^scale. Sums and products are exact in checked 256 bits; what does not fit is
/// Error 6, never a wrong number.
class Decimal {
public:
    using Mantissa = boost::multiprecision::checked_int256_t;

    Decimal() = default;
    /// @param scale  decimal places, 0 and up
    Decimal(Mantissa mantissa, int scale) : m_mantissa(std::move(mantissa)), m_scale(scale) {}
    Decimal(const ShortDecimal& number) : Decimal(Mantissa(number.mantissa), number.scale) {}

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
