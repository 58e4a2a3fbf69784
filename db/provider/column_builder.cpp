#include "column_builder.h"

#include "utf16.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <utility>

namespace velcoran::provider {

namespace {

/// Beyond this scale a block is an exception, and the next one starts afresh.
constexpr int kLargestUsualScale = 6;
constexpr int kFirstScale = 2;

constexpr int kMax64Digits = std::numeric_limits<std::int64_t>::digits10;
constexpr std::size_t kValueBytes = 8;

}  // namespace

void ColumnBuilder::start(std::uint32_t capacity) {
    if (capacity > m_capacity) {
        m_nulls.reset();
        m_values.reset();
        m_offsets.reset();
        m_capacity = capacity;
    }
    if (m_kind == Kind::Decimals) m_usualScale = m_scale <= kLargestUsualScale ? m_scale : kFirstScale;
    m_kind = Kind::Nulls;
    m_hasNull = false;
    m_scale = 0;
    m_rows = 0;
    m_wide.clear();
    m_unitCount = 0;
}

void ColumnBuilder::appendNull() {
    if (!m_hasNull) {
        if (!m_nulls) m_nulls = std::make_unique_for_overwrite<std::uint8_t[]>(m_capacity);
        std::memset(m_nulls.get(), 0, m_capacity);
        m_hasNull = true;
    }
    m_nulls[m_rows] = 1;
    switch (m_kind) {
        case Kind::Nulls:
            break;
        case Kind::Integers:
        case Kind::Decimals:
            integers()[m_rows] = 0;
            break;
        case Kind::Wide:
            m_wide.push_back(0);
            break;
        case Kind::Doubles:
            doubles()[m_rows] = 0;
            break;
        case Kind::Texts:
            m_offsets[m_rows + 1] = static_cast<std::uint32_t>(m_unitCount);
            break;
    }
    ++m_rows;
}

/// Gives a block that has nothing but nulls so far its kind.
void ColumnBuilder::leaveNulls(Kind kind) {
    m_kind = kind;
    if (kind == Kind::Texts) {
        if (!m_offsets) m_offsets = std::make_unique_for_overwrite<std::uint32_t[]>(std::size_t{m_capacity} + 1);
        std::fill_n(m_offsets.get(), std::size_t{m_rows} + 1, 0);
        if (m_unitCapacity == 0) reserveUnits(1);
    } else {
        if (!m_values) m_values = std::make_unique_for_overwrite<std::byte[]>(m_capacity * kValueBytes);
        std::memset(m_values.get(), 0, m_rows * kValueBytes);
    }
}

void ColumnBuilder::appendOtherInteger(std::int64_t value) {
    if (m_kind != Kind::Nulls || m_given) return appendDecimal({value, 0});
    leaveNulls(Kind::Integers);
    appendInteger(value);
}

void ColumnBuilder::appendOtherReal(double value) {
    const auto number = m_kind == Kind::Texts ? std::nullopt : base::ShortDecimal::ofReal(value);
    number ? appendDecimal(*number) : appendUtf8(base::realText(value));
}

void ColumnBuilder::appendNumber(std::string_view text) {
    std::int64_t mantissa = 0;
    int scale = 0;
    if (!base::parseFewDigits(text, mantissa, scale)) return appendOddNumber(text);
    const int places = m_scale - scale;
    std::int64_t scaled = 0;
    if (m_kind == Kind::Decimals && places >= 0 && places <= kMax64Digits &&
        !__builtin_mul_overflow(mantissa, static_cast<std::int64_t>(base::powerOfTen(places)), &scaled)) {
        integers()[m_rows++] = scaled;
    } else {
        scale == 0 ? appendInteger(mantissa) : appendDecimal({mantissa, scale});
    }
}

/// A number of many digits or with an exponent, or none.
void ColumnBuilder::appendOddNumber(std::string_view text) {
    if (const auto number = base::ShortDecimal::parse(text)) {
        const bool isWhole = number->scale == 0 && base::fits64(number->mantissa);
        return isWhole ? appendInteger(static_cast<std::int64_t>(number->mantissa)) : appendDecimal(*number);
    }
    double value = 0;
    const bool hasExponent = text.find_first_of("eE") != std::string_view::npos;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isReal = hasExponent && error == std::errc() && end == text.data() + text.size();
    isReal ? appendUtf8(base::realText(value)) : appendUtf8(text);
}

/// Adds a number to a block of decimals, which takes a larger scale or wider mantissas where it must.
void ColumnBuilder::appendDecimal(const base::ShortDecimal& number) {
    if (m_kind == Kind::Nulls || (m_kind == Kind::Integers && number.scale > 0)) startDecimals(number);
    if (m_kind != Kind::Texts && number.scale > m_scale && !rescale(number.scale)) becomeTexts();
    std::optional<base::Int128> scaled;
    if (m_kind != Kind::Texts) scaled = base::timesPowerOfTen(number.mantissa, m_scale - number.scale);
    if (!scaled) return appendUtf8(number.toText());
    if (m_kind != Kind::Wide && !base::fits64(*scaled)) becomeWide();
    if (m_kind == Kind::Wide) {
        m_wide.push_back(*scaled);
    } else {
        integers()[m_rows] = static_cast<std::int64_t>(*scaled);
    }
    ++m_rows;
}

/// Nulls and whole numbers become decimals of the usual scale; a number too large for the usual places goes without.
void ColumnBuilder::startDecimals(const base::ShortDecimal& first) {
    if (m_kind == Kind::Nulls) leaveNulls(Kind::Decimals);
    m_kind = Kind::Decimals;
    const int scale = m_given.value_or(m_usualScale);
    if (!base::timesPowerOfTen(first.mantissa, std::max(0, scale - first.scale)) || !rescale(scale)) m_scale = 0;
}

void ColumnBuilder::appendText(std::u16string_view text) {
    if (m_kind != Kind::Texts) becomeTexts();
    if (m_unitCapacity - m_unitCount < text.size()) reserveUnits(text.size());
    if (!text.empty()) std::memcpy(m_units.get() + m_unitCount, text.data(), text.size() * sizeof(char16_t));
    endText(text.size());
}

void ColumnBuilder::appendUtf8(std::string_view text) {
    if (m_kind != Kind::Texts) becomeTexts();
    if (m_unitCapacity - m_unitCount < text.size()) reserveUnits(text.size());
    endText(toUtf16(text.data(), text.size(), m_units.get() + m_unitCount));
}

void ColumnBuilder::endText(std::size_t units) {
    m_unitCount += units;
    m_offsets[++m_rows] = static_cast<std::uint32_t>(m_unitCount);
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
        std::for_each_n(integers(), m_rows, [power](std::int64_t& mantissa) { mantissa *= power; });
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
bool ColumnBuilder::isNarrowTimes(int places) {
    if (places > kMax64Digits) return false;
    const auto factor = static_cast<std::int64_t>(base::powerOfTen(places));
    return std::none_of(integers(), integers() + m_rows, [factor](std::int64_t value) {
        std::int64_t product = 0;
        return __builtin_mul_overflow(value, factor, &product);
    });
}

void ColumnBuilder::becomeWide() {
    m_wide.reserve(m_capacity);
    m_wide.assign(integers(), integers() + m_rows);
    m_kind = Kind::Wide;
}

void ColumnBuilder::becomeTexts() {
    const Kind former = m_kind;
    const std::uint32_t rows = std::exchange(m_rows, 0);
    leaveNulls(Kind::Texts);
    for (std::uint32_t row = 0; row < rows; ++row) {
        if (former == Kind::Nulls || (m_hasNull && m_nulls[row] != 0)) {
            endText(0);
        } else {
            appendUtf8(base::ShortDecimal{former == Kind::Wide ? m_wide[row] : integers()[row], m_scale}.toText());
        }
    }
}

std::size_t ColumnBuilder::byteCount() const {
    const std::size_t each = m_kind == Kind::Wide ? sizeof(base::Int128) : m_kind == Kind::Texts ? 0 : kValueBytes;
    return m_rows * each + m_unitCount * sizeof(char16_t);
}

/// The kind of a block that holds nulls alone.
ColumnBuilder::Kind ColumnBuilder::kindOfNulls() const {
    if (m_given) return Kind::Decimals;
    if (m_expected == ColumnType::Text) return Kind::Texts;
    return m_expected == ColumnType::Double ? Kind::Doubles : Kind::Integers;
}

ColumnBlock ColumnBuilder::block(std::uint32_t firstRow) {
    if (m_kind == Kind::Nulls) {
        if (m_given) m_scale = *m_given;
        leaveNulls(kindOfNulls());
    }
    const std::uint8_t* const nulls = m_hasNull ? m_nulls.get() + firstRow : nullptr;
    switch (m_kind) {
        case Kind::Decimals:
            return {ColumnType::Decimal64, m_scale, nulls, integers() + firstRow, nullptr};
        case Kind::Wide:
            return {ColumnType::Decimal128, m_scale, nulls, m_wide.data() + firstRow, nullptr};
        case Kind::Doubles:
            return {ColumnType::Double, 0, nulls, doubles() + firstRow, nullptr};
        case Kind::Texts:
            return {ColumnType::Text, 0, nulls, m_units.get(), m_offsets.get() + firstRow};
        case Kind::Nulls:
        case Kind::Integers:
            break;
    }
    const bool isMoment = m_expected == ColumnType::DateTime;
    return {isMoment ? ColumnType::DateTime : ColumnType::Int64, 0, nulls, integers() + firstRow, nullptr};
}

}  // namespace velcoran::provider
