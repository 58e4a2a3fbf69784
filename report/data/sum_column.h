#pragma once

#include "amount_column.h"

#include <unordered_map>

namespace velcoran::report {

/// Sums of one column, one for each line of totals: 128 bits while they grow, 8 bytes each afterwards where that
/// suffices for all, 256 bits for the few that need them.
class SumColumn {
public:
    /// @param scale  of all sums, not less than that of any amount
    SumColumn(std::uint32_t count, int scale) : m_scale(scale), m_long(count, 0) {}
    SumColumn() = default;

    void add(std::uint32_t index, Int128 mantissa) {
        Int128 sum = 0;
        if (__builtin_add_overflow(m_long[index], mantissa, &sum)) {
            spill(index);
            sum = mantissa;
        }
        m_long[index] = sum;
    }
    /// @throws Error kOverflow beyond 256 bits
    void add(std::uint32_t index, const ShortDecimal& amount);
    /// No more amounts come: takes as little memory as the sums allow.
    void finish();

    [[nodiscard]] base::Decimal value(std::uint32_t index) const;
    /// The sum where 128 bits hold it.
    [[nodiscard]] std::optional<ShortDecimal> amount(std::uint32_t index) const;
    [[nodiscard]] std::size_t memoryUsed() const;

private:
    void spill(std::uint32_t index);
    [[nodiscard]] Int128 low(std::uint32_t index) const { return m_short.empty() ? m_long[index] : m_short[index]; }

    int m_scale = 0;
    std::vector<Int128> m_long;
    std::vector<std::int64_t> m_short;                        ///< instead of m_long when finished and every sum fits
    std::unordered_map<std::uint32_t, base::Decimal> m_huge;  ///< what went beyond 128 bits; added to the others
};

}  // namespace velcoran::report
