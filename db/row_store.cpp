#include "row_store.h"

#include "base/error.h"
#include "base/short_decimal.h"

#include <QDateTime>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

namespace velcoran::db {

using namespace Qt::StringLiterals;

namespace {

template <class Value>
Value valueAt(const std::byte* values, std::uint32_t row) {
    Value value;
    std::memcpy(&value, values + sizeof(Value) * row, sizeof(Value));
    return value;
}

template <class Value>
std::unique_ptr<Value[]> copyArray(const Value* source, std::size_t count) {
    auto copy = std::make_unique_for_overwrite<Value[]>(count);
    if (count != 0) std::memcpy(copy.get(), source, count * sizeof(Value));
    return copy;
}

std::size_t valueSize(ColumnType type) {
    switch (type) {
        case ColumnType::Text:
            return sizeof(char16_t);
        case ColumnType::Decimal128:
            return sizeof(base::Int128);
        case ColumnType::Int64:
        case ColumnType::Decimal64:
        case ColumnType::Double:
        case ColumnType::DateTime:
            return sizeof(std::int64_t);
    }
    return 0;
}

QString fromAscii(const std::string& text) { return QString::fromLatin1(text); }

QString dateTimeText(std::int64_t microseconds) {
    constexpr std::int64_t kMicrosecondsAMillisecond = 1000;
    std::int64_t milliseconds = microseconds / kMicrosecondsAMillisecond;
    if (microseconds % kMicrosecondsAMillisecond < 0) --milliseconds;
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC).toString(u"yyyy-MM-dd hh:mm:ss"_s);
}

}  // namespace

QStringView RowStore::Values::view(std::uint32_t row) const {
    const auto* characters = reinterpret_cast<const char16_t*>(values.get());
    return {characters + offsets[row], static_cast<qsizetype>(offsets[row + 1] - offsets[row])};
}

QString RowStore::Values::text(std::uint32_t row) const {
    switch (type) {
        case ColumnType::Int64:
            return QString::number(valueAt<std::int64_t>(values.get(), row));
        case ColumnType::Decimal64:
            return fromAscii(base::ShortDecimal{valueAt<std::int64_t>(values.get(), row), scale}.toText());
        case ColumnType::Decimal128:
            return fromAscii(base::ShortDecimal{valueAt<base::Int128>(values.get(), row), scale}.toText());
        case ColumnType::Double:
            return fromAscii(base::realText(valueAt<double>(values.get(), row)));
        case ColumnType::DateTime:
            return dateTimeText(valueAt<std::int64_t>(values.get(), row));
        case ColumnType::Text:
            break;
    }
    return view(row).toString();
}

bool RowStore::Values::passes(std::uint32_t row, const RowFilter& filter) const {
    if (type == ColumnType::Text) {
        const auto* characters = reinterpret_cast<const char16_t*>(values.get()) + offsets[row];
        return filter.mayMatch(characters, offsets[row + 1] - offsets[row]) && filter.matches(view(row));
    }
    if (type != ColumnType::Int64) return filter.matches(text(row));
    char digits[24];
    const char* const end = std::to_chars(digits, digits + sizeof digits, valueAt<std::int64_t>(values.get(), row)).ptr;
    char16_t units[sizeof digits];
    const auto* const unitsEnd = std::copy(static_cast<const char*>(digits), end, units);
    return filter.matches({units, unitsEnd - units});
}

RowStore::Values RowStore::copyOf(const ColumnBlock& column, std::uint32_t rowCount) {
    Values copy;
    copy.type = column.type;
    copy.scale = column.scale;
    if (column.nulls != nullptr) copy.nulls = copyArray(column.nulls, rowCount);
    std::size_t count = rowCount;
    if (column.type == ColumnType::Text) {
        copy.offsets = copyArray(column.offsets, rowCount + std::size_t{1});
        // The stored characters begin at the block's first value, wherever that lies in the provider's buffer.
        const std::uint32_t first = column.offsets[0];
        for (std::size_t i = 0; i <= rowCount; ++i) copy.offsets[i] -= first;
        copy.values = copyArray(reinterpret_cast<const std::byte*>(static_cast<const char16_t*>(column.values) + first),
                                copy.offsets[rowCount] * sizeof(char16_t));
        return copy;
    }
    copy.values = copyArray(static_cast<const std::byte*>(column.values), count * valueSize(column.type));
    return copy;
}

void RowStore::append(const RowBlock& block) {
    if (block.rowCount > std::numeric_limits<std::uint32_t>::max() - m_rowCount)
        throw base::Error(base::kOverflow, u"Interogarea are prea multe rânduri."_s);
    Segment segment;
    segment.firstRow = m_rowCount;
    segment.rowCount = block.rowCount;
    segment.columns.reserve(block.columnCount);
    for (std::uint32_t i = 0; i < block.columnCount; ++i)
        segment.columns.push_back(copyOf(block.columns[i], block.rowCount));
    m_segments.push_back(std::move(segment));
    m_rowCount += block.rowCount;
}

const RowStore::Segment& RowStore::segmentOf(std::uint32_t row) const {
    const auto after = std::upper_bound(m_segments.begin(), m_segments.end(), row,
                                        [](std::uint32_t sought, const Segment& one) { return sought < one.firstRow; });
    return *(after - 1);
}

std::optional<QString> RowStore::text(std::uint32_t row, int column) const {
    const Segment& segment = segmentOf(row);
    const Values& values = segment.columns.at(static_cast<std::size_t>(column));
    const std::uint32_t place = row - segment.firstRow;
    if (values.isNull(place)) return std::nullopt;
    return values.text(place);
}

std::vector<std::uint32_t> RowStore::select(const RowFilter& filter, int column) const {
    std::vector<std::uint32_t> selected;
    for (const Segment& segment : m_segments) {
        const Values& values = segment.columns.at(static_cast<std::size_t>(column));
        for (std::uint32_t row = 0; row < segment.rowCount; ++row)
            if (!values.isNull(row) && values.passes(row, filter)) selected.push_back(segment.firstRow + row);
    }
    return selected;
}

}  // namespace velcoran::db
