#pragma once

#include "base/short_decimal.h"

#include <velcoran/connection.h>

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace velcoran::provider {

/// Collects the values of one column of one block and decides the block's type by what comes: whole numbers alone are
/// Int64, numbers with decimal places Decimal64 of one scale or Decimal128 where a mantissa needs it. Any text among
/// them, and a number that needs more than 38 digits, alone or at the block's scale, make the block Text: each number
/// is written without zeros at its end then, whatever its neighbours are.
class ColumnBuilder {
public:
    /// @param expected  type of a block that holds nulls alone, and DateTime for integers that are moments
    /// @param scale     decimal places that numbers have in every block; without it the values decide
    explicit ColumnBuilder(ColumnType expected, std::optional<int> scale = {}) : m_expected(expected), m_given(scale) {}

    /// Starts a block. @param capacity  most rows that will come
    void start(std::uint32_t capacity);
    void appendNull();
    void appendInteger(std::int64_t value) {
        if (m_kind != Kind::Integers) return appendOtherInteger(value);
        integers()[m_rows++] = value;
    }
    /// A binary number that stands for a decimal of 15 digits.
    void appendReal(double value) {
        std::int64_t mantissa = 0;
        if (m_kind != Kind::Decimals || m_scale > base::kMaxRealPower || !base::isAtScale(value, m_scale, mantissa))
            return appendOtherReal(value);
        integers()[m_rows++] = mantissa;
    }
    /// A binary number that stays one, in a column that holds nothing else.
    void appendDouble(double value) {
        if (m_kind != Kind::Doubles) leaveNulls(Kind::Doubles);
        doubles()[m_rows++] = value;
    }
    /// A number that was written as a text; one that is none is kept as it stands.
    void appendNumber(std::string_view text);
    void appendText(std::u16string_view text);
    void appendUtf8(std::string_view text);

    /// Bytes of the values so far.
    [[nodiscard]] std::size_t byteCount() const;
    /// The block from a row on; valid until the next start.
    [[nodiscard]] ColumnBlock block(std::uint32_t firstRow = 0);

private:
    enum class Kind : std::uint8_t { Nulls, Integers, Decimals, Wide, Doubles, Texts };

    [[nodiscard]] std::int64_t* integers() { return reinterpret_cast<std::int64_t*>(m_values.get()); }
    [[nodiscard]] double* doubles() { return reinterpret_cast<double*>(m_values.get()); }
    void appendOtherInteger(std::int64_t value);
    void appendOtherReal(double value);
    void appendOddNumber(std::string_view text);
    void appendDecimal(const base::ShortDecimal& number);
    void startDecimals(const base::ShortDecimal& first);
    void leaveNulls(Kind kind);
    [[nodiscard]] Kind kindOfNulls() const;
    void becomeWide();
    void becomeTexts();
    void endText(std::size_t units);
    [[nodiscard]] bool rescale(int scale);
    [[nodiscard]] bool isNarrowTimes(int places);
    void reserveUnits(std::size_t more);

    ColumnType m_expected;
    std::optional<int> m_given;
    Kind m_kind = Kind::Nulls;
    bool m_hasNull = false;
    int m_scale = 0;
    int m_usualScale = 2;  ///< of the last block of decimals: amounts keep their scale, and the first try hits
    std::uint32_t m_rows = 0;
    std::uint32_t m_capacity = 0;
    // Made when a block needs them, for as many rows as the block may have.
    std::unique_ptr<std::uint8_t[]> m_nulls;
    std::unique_ptr<std::byte[]> m_values;  ///< 8 bytes each
    std::unique_ptr<std::uint32_t[]> m_offsets;
    std::vector<base::Int128> m_wide;
    std::unique_ptr<char16_t[]> m_units;
    std::size_t m_unitCount = 0;
    std::size_t m_unitCapacity = 0;
};

}  // namespace velcoran::provider
