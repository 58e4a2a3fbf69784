#include "column_builder.h"

#include "base/real_text.h"
#include "number_text.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

namespace velcoran::odbc {

namespace {

constexpr std::int64_t kPowers64[] = {
    1,          10,          100,           1'000,          10'000,          100'000,          1'000'000,
    10'000'000, 100'000'000, 1'000'000'000, 10'000'000'000, 100'000'000'000, 1'000'000'000'000};
constexpr int kMaxFastShift = static_cast<int>(std::size(kPowers64)) - 1;

template <class Value>
Value read(const std::byte* memory) {
    Value value;
    std::memcpy(&value, memory, sizeof value);
    return value;
}

/// The double with the digits that the shorter number shows: 0.1 stays 0.1.
double widened(float value) {
    if (!std::isfinite(value)) return value;
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    double widest = 0;
    std::from_chars(digits, end, widest);
    return widest;
}

std::int64_t microseconds(const SQL_TIMESTAMP_STRUCT& value) {
    using namespace std::chrono;
    const sys_days day = year(value.year) / month(value.month) / value.day;
    constexpr std::uint32_t kNanosecondsEach = 1000;
    return duration_cast<std::chrono::microseconds>(day.time_since_epoch() + hours(value.hour) + minutes(value.minute) +
                                                    seconds(value.second))
               .count() +
           value.fraction / kNanosecondsEach;
}

/// "yyyy-mm-dd"
std::array<char, 10> dateText(const SQL_DATE_STRUCT& value) {
    std::array<char, 10> text{};
    int rest = value.year < 0 ? 0 : value.year;
    for (int i = 3; i >= 0; --i, rest /= 10) text[static_cast<std::size_t>(i)] = static_cast<char>('0' + rest % 10);
    text[4] = text[7] = '-';
    text[5] = static_cast<char>('0' + value.month / 10 % 10);
    text[6] = static_cast<char>('0' + value.month % 10);
    text[8] = static_cast<char>('0' + value.day / 10 % 10);
    text[9] = static_cast<char>('0' + value.day % 10);
    return text;
}

}  // namespace

ColumnBuilder::ColumnBuilder(const ColumnPlan& plan)
    : m_kind(plan.kind), m_expected(plan.expected), m_plannedScale(plan.scale) {
    start();
}

ColumnBuilder::Store ColumnBuilder::firstStore() const {
    switch (m_kind) {
        case ValueKind::Integer:
        case ValueKind::Number:
        case ValueKind::DateTime:
            return Store::Integers;
        case ValueKind::Real:
            return Store::Reals;
        case ValueKind::Date:
        case ValueKind::Text:
            break;
    }
    return Store::Texts;
}

void ColumnBuilder::start() {
    m_store = firstStore();
    m_scale = m_plannedScale;
    m_hasNull = false;
    m_nulls.clear();
    m_integers.clear();
    m_wide.clear();
    m_reals.clear();
    m_units.clear();
    m_offsets.assign(1, 0);
}

void ColumnBuilder::noteRow(bool isNull) {
    m_nulls.push_back(isNull ? 1 : 0);
    m_hasNull = m_hasNull || isNull;
}

void ColumnBuilder::pushDefault() {
    switch (m_store) {
        case Store::Integers:
            m_integers.push_back(0);
            break;
        case Store::Wide:
            m_wide.push_back(0);
            break;
        case Store::Reals:
            m_reals.push_back(0);
            break;
        case Store::Texts:
            m_offsets.push_back(static_cast<std::uint32_t>(m_units.size()));
            break;
    }
}

void ColumnBuilder::appendNull() {
    noteRow(true);
    pushDefault();
}

template <class Add>
void ColumnBuilder::appendEach(const BoundValues& bound, std::uint32_t rowCount, Add add) {
    const std::byte* value = bound.values;
    for (std::uint32_t row = 0; row < rowCount; ++row, value += bound.stride) {
        const SQLLEN length = bound.lengths[row];
        if (length == SQL_NULL_DATA) {
            appendNull();
        } else {
            noteRow(false);
            add(value, length);
        }
    }
}

void ColumnBuilder::append(const BoundValues& bound, std::uint32_t rowCount) {
    switch (m_kind) {
        case ValueKind::Integer:
            appendEach(bound, rowCount,
                       [this](const std::byte* value, SQLLEN) { m_integers.push_back(read<std::int64_t>(value)); });
            break;
        case ValueKind::Real:
            appendEach(bound, rowCount, [this, &bound](const std::byte* value, SQLLEN) {
                m_reals.push_back(bound.stride == sizeof(float) ? widened(read<float>(value)) : read<double>(value));
            });
            break;
        case ValueKind::DateTime:
            appendEach(bound, rowCount, [this](const std::byte* value, SQLLEN) {
                m_integers.push_back(microseconds(read<SQL_TIMESTAMP_STRUCT>(value)));
            });
            break;
        case ValueKind::Date:
            appendEach(bound, rowCount, [this](const std::byte* value, SQLLEN) {
                const auto text = dateText(read<SQL_DATE_STRUCT>(value));
                pushUtf8({text.data(), text.size()});
            });
            break;
        case ValueKind::Number:
            appendEach(bound, rowCount, [this](const std::byte* value, SQLLEN length) {
                pushNumber({reinterpret_cast<const char*>(value), static_cast<std::size_t>(length)});
            });
            break;
        case ValueKind::Text:
            appendEach(bound, rowCount, [this](const std::byte* value, SQLLEN length) {
                m_units.append(reinterpret_cast<const char16_t*>(value),
                               static_cast<std::size_t>(length) / sizeof(char16_t));
                m_offsets.push_back(static_cast<std::uint32_t>(m_units.size()));
            });
            break;
    }
}

void ColumnBuilder::appendText(std::u16string_view text) {
    noteRow(false);
    m_units.append(text);
    m_offsets.push_back(static_cast<std::uint32_t>(m_units.size()));
}

void ColumnBuilder::appendNumber(std::string_view text) {
    noteRow(false);
    pushNumber(text);
}

void ColumnBuilder::pushNumber(std::string_view text) {
    std::int64_t mantissa = 0;
    int scale = 0;
    if (parseShortNumber(text, mantissa, scale)) return pushMantissa(mantissa, scale);
    const auto number = parseNumber(text);
    if (number) return pushWide(number->mantissa, number->scale);
    becomeTexts();
    pushOddNumber(text);
}

/// A number of more than 38 digits, or none.
void ColumnBuilder::pushOddNumber(std::string_view text) {
    double value = 0;
    const bool hasExponent = text.find_first_of("eE") != std::string_view::npos;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isReal = hasExponent && error == std::errc() && end == text.data() + text.size();
    isReal ? pushText(base::realText(value)) : pushUtf8(text);
}

void ColumnBuilder::pushMantissa(std::int64_t mantissa, int scale) {
    const int shift = m_scale - scale;
    std::int64_t shifted = 0;
    if (m_store == Store::Integers && shift >= 0 && shift <= kMaxFastShift &&
        !__builtin_mul_overflow(mantissa, kPowers64[shift], &shifted)) {
        m_integers.push_back(shifted);
    } else {
        pushWide(mantissa, scale);
    }
}

void ColumnBuilder::pushWide(base::Int128 mantissa, int scale) {
    if (m_store != Store::Texts && scale > m_scale && !raiseScale(scale)) becomeTexts();
    std::optional<base::Int128> shifted;
    if (m_store != Store::Texts) shifted = base::timesPowerOfTen(mantissa, m_scale - scale);
    if (!shifted) {
        becomeTexts();
        return pushText(base::Decimal::fromInt128(mantissa, scale).toShortestText());
    }
    const bool fits64 =
        *shifted >= std::numeric_limits<std::int64_t>::min() && *shifted <= std::numeric_limits<std::int64_t>::max();
    if (m_store == Store::Integers && fits64) {
        m_integers.push_back(static_cast<std::int64_t>(*shifted));
    } else {
        becomeWide();
        m_wide.push_back(*shifted);
    }
}

/// Brings the block to a larger scale. @return false when a value would need more than 38 digits
bool ColumnBuilder::raiseScale(int scale) {
    const int places = scale - m_scale;
    std::vector<base::Int128> raised;
    raised.reserve(m_nulls.capacity());
    const auto raise = [&](base::Int128 mantissa) {
        const auto shifted = base::timesPowerOfTen(mantissa, places);
        if (shifted) raised.push_back(*shifted);
        return shifted.has_value();
    };
    if (m_store == Store::Integers) {
        for (const std::int64_t mantissa : m_integers)
            if (!raise(mantissa)) return false;
    } else {
        for (const base::Int128 mantissa : m_wide)
            if (!raise(mantissa)) return false;
    }
    m_scale = scale;
    m_integers.clear();
    m_wide.clear();
    m_store = Store::Integers;
    for (const base::Int128 mantissa : raised) {
        if (m_store == Store::Integers && (mantissa < std::numeric_limits<std::int64_t>::min() ||
                                           mantissa > std::numeric_limits<std::int64_t>::max()))
            becomeWide();
        if (m_store == Store::Wide) {
            m_wide.push_back(mantissa);
        } else {
            m_integers.push_back(static_cast<std::int64_t>(mantissa));
        }
    }
    return true;
}

void ColumnBuilder::becomeWide() {
    if (m_store == Store::Wide) return;
    m_wide.assign(m_integers.begin(), m_integers.end());
    m_integers.clear();
    m_store = Store::Wide;
}

void ColumnBuilder::becomeTexts() {
    if (m_store == Store::Texts) return;
    const std::size_t count = m_store == Store::Wide ? m_wide.size() : m_integers.size();
    const Store former = std::exchange(m_store, Store::Texts);
    for (std::size_t row = 0; row < count; ++row) {
        if (m_nulls[row] != 0) {
            pushDefault();
        } else {
            const base::Int128 mantissa = former == Store::Wide ? m_wide[row] : m_integers[row];
            pushText(base::Decimal::fromInt128(mantissa, m_scale).toShortestText());
        }
    }
    m_integers.clear();
    m_wide.clear();
}

void ColumnBuilder::pushUtf8(std::string_view text) {
    pushText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void ColumnBuilder::pushText(const QString& units) {
    m_units.append(reinterpret_cast<const char16_t*>(units.utf16()), static_cast<std::size_t>(units.size()));
    m_offsets.push_back(static_cast<std::uint32_t>(m_units.size()));
}

std::size_t ColumnBuilder::byteCount() const {
    return m_integers.size() * sizeof(std::int64_t) + m_wide.size() * sizeof(base::Int128) +
           m_reals.size() * sizeof(double) + m_units.size() * sizeof(char16_t);
}

ColumnBlock ColumnBuilder::block(std::uint32_t firstRow) const {
    const std::uint8_t* const nulls = m_hasNull ? m_nulls.data() + firstRow : nullptr;
    switch (m_store) {
        case Store::Wide: {
            const auto type = ColumnType::Decimal128;
            return {type, m_scale, nulls, m_wide.data() + firstRow, nullptr};
        }
        case Store::Reals:
            return {ColumnType::Double, 0, nulls, m_reals.data() + firstRow, nullptr};
        case Store::Texts:
            return {ColumnType::Text, 0, nulls, m_units.data(), m_offsets.data() + firstRow};
        case Store::Integers:
            break;
    }
    const bool isWhole = m_kind == ValueKind::Number && m_expected == ColumnType::Int64 && m_scale == 0;
    ColumnType type = ColumnType::Int64;
    if (m_kind == ValueKind::DateTime) type = ColumnType::DateTime;
    if (m_kind == ValueKind::Number && !isWhole) type = ColumnType::Decimal64;
    return {type, type == ColumnType::Decimal64 ? m_scale : 0, nulls, m_integers.data() + firstRow, nullptr};
}

}  // namespace velcoran::odbc
