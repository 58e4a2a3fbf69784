#include "column_builder.h"

#include "base/real_text.h"
#include "short_decimal.h"
#include "utf16.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>

namespace velcoran::sqlite {

namespace {

bool fits64(base::Int128 value) {
    return value >= std::numeric_limits<std::int64_t>::min() && value <= std::numeric_limits<std::int64_t>::max();
}

/// Beyond this scale a block is an exception, and the next one starts afresh.
constexpr int kLargestUsualScale = 6;
constexpr int kFirstScale = 2;

constexpr int kMax64Digits = std::numeric_limits<std::int64_t>::digits10;

}  // namespace

void ColumnBuilder::start(std::uint32_t capacity) {
    if (capacity > m_capacity) {
        m_integers = std::make_unique_for_overwrite<std::int64_t[]>(capacity);
        m_offsets = std::make_unique_for_overwrite<std::uint32_t[]>(std::size_t{capacity} + 1);
        m_nulls = std::make_unique_for_overwrite<std::uint8_t[]>(capacity);
        m_capacity = capacity;
    }
    if (m_kind == Kind::Decimals) m_usualScale = m_scale <= kLargestUsualScale ? m_scale : kFirstScale;
    m_kind = Kind::Nulls;
    m_scale = 0;
    m_rows = 0;
    m_hasNull = false;
    m_wide.clear();
    m_unitCount = 0;
    m_offsets[0] = 0;
}

std::size_t ColumnBuilder::append(sqlite3_value* value) {
    std::size_t bytes = 0;
    switch (sqlite3_value_type(value)) {
        case SQLITE_INTEGER:
            appendInteger(sqlite3_value_int64(value));
            break;
        case SQLITE_FLOAT:
            appendReal(sqlite3_value_double(value));
            break;
        case SQLITE_NULL:
            appendNull();
            break;
        default: {
            const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
            bytes = appendText({text, text == nullptr ? 0U : static_cast<std::size_t>(sqlite3_value_bytes(value))});
            break;
        }
    }
    ++m_rows;
    return bytes;
}

void ColumnBuilder::appendNull() {
    if (!m_hasNull) {
        std::memset(m_nulls.get(), 0, m_capacity);
        m_hasNull = true;
    }
    m_nulls[m_rows] = 1;
    switch (m_kind) {
        case Kind::Nulls:
        case Kind::Integers:
        case Kind::Decimals:
            m_integers[m_rows] = 0;
            break;
        case Kind::Wide:
            m_wide.push_back(0);
            break;
        case Kind::Texts:
            m_offsets[m_rows + 1] = static_cast<std::uint32_t>(m_unitCount);
            break;
    }
}

void ColumnBuilder::appendInteger(std::int64_t value) {
    switch (m_kind) {
        case Kind::Nulls:
            m_kind = Kind::Integers;
            [[fallthrough]];
        case Kind::Integers:
            m_integers[m_rows] = value;
            break;
        case Kind::Decimals:
        case Kind::Wide:
            appendDecimal(value, 0);
            break;
        case Kind::Texts:
            appendText(decimalText(value, 0));
            break;
    }
}

void ColumnBuilder::appendReal(double value) {
    std::int64_t mantissa = 0;
    if (m_kind == Kind::Decimals && m_scale <= kMaxFastScale && isAtScale(value, m_scale, mantissa)) {
        m_integers[m_rows] = mantissa;
    } else {
        appendUncommonReal(value);
    }
}

void ColumnBuilder::appendUncommonReal(double value) {
    const auto rounded = m_kind == Kind::Texts ? std::nullopt : roundedTo15Digits(value);
    if (!rounded) {
        appendText(base::realText(value).toStdString());
        return;
    }
    if (m_kind == Kind::Nulls || m_kind == Kind::Integers) {
        m_kind = Kind::Decimals;
        // A number too large for the usual places goes without them.
        const bool fits =
            base::timesPowerOfTen(rounded->mantissa, std::max(0, m_usualScale - rounded->scale)).has_value();
        if (fits && !rescale(m_usualScale)) becomeTexts();
    }
    appendDecimal(rounded->mantissa, rounded->scale);
}

/// Adds a number to a block of decimals, which takes a larger scale or wider mantissas where it must.
void ColumnBuilder::appendDecimal(base::Int128 mantissa, int scale) {
    if (m_kind != Kind::Texts && scale > m_scale && !rescale(scale)) becomeTexts();
    std::optional<base::Int128> scaled;
    if (m_kind != Kind::Texts) scaled = base::timesPowerOfTen(mantissa, m_scale - scale);
    if (!scaled) {
        appendText(decimalText(mantissa, scale));
        return;
    }
    if (m_kind == Kind::Decimals && !fits64(*scaled)) becomeWide();
    if (m_kind == Kind::Decimals) {
        m_integers[m_rows] = static_cast<std::int64_t>(*scaled);
    } else {
        m_wide.push_back(*scaled);
    }
}

std::size_t ColumnBuilder::appendText(std::string_view utf8) {
    if (m_kind != Kind::Texts) becomeTexts();
    if (m_unitCapacity - m_unitCount < utf8.size()) reserveUnits(utf8.size());
    m_unitCount += toUtf16(utf8.data(), utf8.size(), m_units.get() + m_unitCount);
    m_offsets[m_rows + 1] = static_cast<std::uint32_t>(m_unitCount);
    return utf8.size() * sizeof(char16_t);
}

void ColumnBuilder::reserveUnits(std::size_t more) {
    constexpr std::size_t kFirstUnits = 4096;
    const std::size_t capacity = std::max({kFirstUnits, m_unitCapacity * 2, m_unitCount + more});
    auto units = std::make_unique_for_overwrite<char16_t[]>(capacity);
    if (m_unitCount != 0) std::memcpy(units.get(), m_units.get(), m_unitCount * sizeof(char16_t));
    m_units = std::move(units);
    m_unitCapacity = capacity;
}

/// Gives the rows so far a larger scale. @return false when a mantissa would need more than 38 digits; the values are
/// what they were then
bool ColumnBuilder::rescale(int scale) {
    const int places = scale - m_scale;
    if (m_kind == Kind::Decimals && m_rows != 0 && !isNarrowTimes(places)) becomeWide();
    if (m_kind == Kind::Decimals) {
        const std::int64_t power = m_rows == 0 ? 1 : static_cast<std::int64_t>(base::powerOfTen(places));
        for (std::uint32_t row = 0; row < m_rows; ++row) m_integers[row] *= power;
    } else {
        std::vector<base::Int128> scaled(m_wide);
        for (base::Int128& mantissa : scaled) {
            const auto raised = base::timesPowerOfTen(mantissa, places);
            if (!raised) return false;
            mantissa = *raised;
        }
        m_wide = std::move(scaled);
    }
    m_scale = scale;
    return true;
}

/// True when the 64-bit rows so far fit 64 bits with more places too.
bool ColumnBuilder::isNarrowTimes(int places) const {
    if (places > kMax64Digits) return false;
    const auto factor = static_cast<std::int64_t>(base::powerOfTen(places));
    return std::none_of(m_integers.get(), m_integers.get() + m_rows, [factor](std::int64_t value) {
        std::int64_t product = 0;
        return __builtin_mul_overflow(value, factor, &product);
    });
}

void ColumnBuilder::becomeWide() {
    m_wide.assign(m_integers.get(), m_integers.get() + m_rows);
    m_kind = Kind::Wide;
}

void ColumnBuilder::becomeTexts() {
    std::vector<std::string> texts;
    if (m_kind != Kind::Nulls)
        for (std::uint32_t row = 0; row < m_rows; ++row) texts.push_back(isNull(row) ? std::string() : textAt(row));
    m_kind = Kind::Texts;
    const std::uint32_t rows = m_rows;
    std::fill_n(m_offsets.get(), rows + std::size_t{1}, 0);
    for (m_rows = 0; m_rows < texts.size(); ++m_rows) appendText(texts[m_rows]);
    m_rows = rows;
}

std::string ColumnBuilder::textAt(std::uint32_t row) const {
    return decimalText(m_kind == Kind::Wide ? m_wide[row] : m_integers[row], m_scale);
}

ColumnBlock ColumnBuilder::finish() {
    if (m_kind == Kind::Nulls && m_expected == ColumnType::Text) becomeTexts();
    ColumnBlock block{ColumnType::Int64, 0, m_hasNull ? m_nulls.get() : nullptr, m_integers.get(), nullptr};
    switch (m_kind) {
        case Kind::Nulls:
        case Kind::Integers:
            break;
        case Kind::Decimals:
            block.type = ColumnType::Decimal64;
            block.scale = m_scale;
            break;
        case Kind::Wide:
            block.type = ColumnType::Decimal128;
            block.scale = m_scale;
            block.values = m_wide.data();
            break;
        case Kind::Texts:
            if (m_unitCapacity == 0) reserveUnits(1);
            block.type = ColumnType::Text;
            block.values = m_units.get();
            block.offsets = m_offsets.get();
            break;
    }
    return block;
}

}  // namespace velcoran::sqlite
