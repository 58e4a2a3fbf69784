#pragma once

#include "base/decimal.h"

#include <velcoran/connection.h>

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

struct sqlite3_value;

namespace velcoran::sqlite {

/// Collects the values of one column of one block and decides the block's type from their storage classes: integers
/// alone are Int64; integers and reals are decimals of one scale, each real rounded to 15 significant digits. Any text
/// among them, and a number that needs more than 38 digits, alone or at the block's scale, make the block Text: each
/// number is written without zeros at its end then, whatever its neighbours are.
class ColumnBuilder {
public:
    /// @param expected  type of a block that holds nulls alone
    explicit ColumnBuilder(ColumnType expected) : m_expected(expected) {}

    /// Starts a block. @param capacity  most rows that will come
    void start(std::uint32_t capacity);
    /// Adds the value of the next row. @return bytes of text that it took
    std::size_t append(sqlite3_value* value);
    /// The block so far; valid until the next start.
    [[nodiscard]] ColumnBlock finish();

private:
    enum class Kind { Nulls, Integers, Decimals, Wide, Texts };

    void appendNull();
    void appendInteger(std::int64_t value);
    void appendReal(double value);
    void appendUncommonReal(double value);
    void appendDecimal(base::Int128 mantissa, int scale);
    std::size_t appendText(std::string_view utf8);
    void becomeWide();
    void becomeTexts();
    [[nodiscard]] bool rescale(int scale);
    [[nodiscard]] bool isNarrowTimes(int places) const;
    [[nodiscard]] std::string textAt(std::uint32_t row) const;
    [[nodiscard]] bool isNull(std::uint32_t row) const { return m_hasNull && m_nulls[row] != 0; }
    void reserveUnits(std::size_t more);

    ColumnType m_expected;
    Kind m_kind = Kind::Nulls;
    int m_scale = 0;
    int m_usualScale = 2;  ///< of the last block with reals: amounts keep their scale, and the first try hits
    std::uint32_t m_rows = 0;
    std::uint32_t m_capacity = 0;
    bool m_hasNull = false;
    std::unique_ptr<std::int64_t[]> m_integers;
    std::unique_ptr<std::uint32_t[]> m_offsets;
    std::unique_ptr<std::uint8_t[]> m_nulls;
    std::vector<base::Int128> m_wide;
    std::unique_ptr<char16_t[]> m_units;
    std::size_t m_unitCount = 0;
    std::size_t m_unitCapacity = 0;
};

}  // namespace velcoran::sqlite
