#pragma once

#include "base/decimal.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace velcoran::report {

using base::Int128;
using base::ShortDecimal;

/// A column of exact amounts. Rows lie in blocks of one scale each, 8 bytes a value where the block allows it, else 16.
class AmountColumn {
public:
    struct Block {
        std::uint32_t firstRow = 0;
        std::uint32_t rowCount = 0;
        int scale = 0;
        bool isWide = false;
        std::vector<std::int64_t> narrow;
        std::vector<Int128> wide;          ///< instead of narrow where a mantissa needs it
        std::vector<std::uint64_t> nulls;  ///< a bit a row; empty without nulls

        [[nodiscard]] bool isNull(std::uint32_t index) const {
            return !nulls.empty() && ((nulls[index >> 6U] >> (index & 63U)) & 1U) != 0;
        }
        [[nodiscard]] Int128 mantissa(std::uint32_t index) const { return isWide ? wide[index] : narrow[index]; }
    };

    /// Appends rows of one scale. @param nulls  one byte a row, 1 for null; may be null
    void append(const Int128* mantissas, const std::uint8_t* nulls, std::uint32_t count, int scale);

    [[nodiscard]] const std::vector<Block>& blocks() const { return m_blocks; }
    [[nodiscard]] std::uint32_t rowCount() const { return m_rowCount; }
    /// Largest scale of all blocks.
    [[nodiscard]] int scale() const { return m_scale; }
    /// Value of a row; nothing for null.
    [[nodiscard]] std::optional<ShortDecimal> at(std::uint32_t row) const;
    [[nodiscard]] std::size_t memoryUsed() const;

private:
    [[nodiscard]] Block& blockFor(int scale);
    [[nodiscard]] const Block* blockOf(std::uint32_t row) const;

    std::vector<Block> m_blocks;
    std::uint32_t m_rowCount = 0;
    int m_scale = 0;
};

/// Exact sum in 128 bits that goes over to 256 where they do not suffice.
class AmountSum {
public:
    /// Adds a mantissa of the sum's own scale.
    void add(Int128 mantissa, int scale) {
        Int128 sum = 0;
        if (!__builtin_add_overflow(m_low, mantissa, &sum)) {
            m_low = sum;
            return;
        }
        spill(scale);
        m_low = mantissa;
    }
    /// Adds an amount of any scale up to the sum's.
    /// @throws Error kOverflow beyond 256 bits
    void add(const ShortDecimal& amount, int scale);
    void add(const base::Decimal& amount);
    [[nodiscard]] base::Decimal value(int scale) const;

private:
    void spill(int scale);

    Int128 m_low = 0;
    std::unique_ptr<base::Decimal> m_wide;
};

}  // namespace velcoran::report
