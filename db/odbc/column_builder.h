#pragma once

#include "base/decimal.h"
#include "column_plan.h"

#include <velcoran/connection.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velcoran::odbc {

/// Values of a bound column as the driver left them, one after the other.
struct BoundValues {
    const std::byte* values = nullptr;
    const SQLLEN* lengths = nullptr;  ///< in bytes, SQL_NULL_DATA for null
    std::uint32_t stride = 0;         ///< bytes from one value to the next
};

/// Collects the values of one column of one block. Numbers that come as text become decimals of one scale: that of the
/// column's description, more where a value has more places; 64 bits wide, 128 where a value needs it. A number that is
/// none, or that needs more than 38 digits, alone or at the block's scale, makes the block Text: each number is written
/// without zeros at its end then, whatever its neighbours are.
class ColumnBuilder {
public:
    explicit ColumnBuilder(const ColumnPlan& plan);

    /// Starts a block.
    void start();
    /// Adds rows of a bound column. No value is longer than its buffer.
    void append(const BoundValues& bound, std::uint32_t rowCount);
    void appendNull();
    /// Adds a text that was read in pieces.
    void appendText(std::u16string_view text);
    /// Adds a number that was read in pieces.
    void appendNumber(std::string_view text);

    /// Bytes of the values so far.
    [[nodiscard]] std::size_t byteCount() const;
    /// The block, or rows of it; valid until the next start.
    [[nodiscard]] ColumnBlock block(std::uint32_t firstRow) const;

private:
    enum class Store : std::uint8_t { Integers, Wide, Reals, Texts };

    template <class Add>
    void appendEach(const BoundValues& bound, std::uint32_t rowCount, Add add);
    void noteRow(bool isNull);
    void pushDefault();
    void pushMantissa(std::int64_t mantissa, int scale);
    void pushWide(base::Int128 mantissa, int scale);
    [[nodiscard]] bool raiseScale(int scale);
    void becomeWide();
    void becomeTexts();
    void pushNumber(std::string_view text);
    void pushOddNumber(std::string_view text);
    void pushUtf8(std::string_view text);
    void pushText(const QString& units);
    [[nodiscard]] Store firstStore() const;

    ValueKind m_kind;
    ColumnType m_expected;
    int m_plannedScale;
    int m_scale = 0;
    Store m_store = Store::Integers;
    bool m_hasNull = false;
    std::vector<std::uint8_t> m_nulls;
    std::vector<std::int64_t> m_integers;
    std::vector<base::Int128> m_wide;
    std::vector<double> m_reals;
    std::u16string m_units;
    std::vector<std::uint32_t> m_offsets;
};

}  // namespace velcoran::odbc
