#include "block_check.h"

#include "base/int128.h"

namespace velcoran::db {

using namespace Qt::StringLiterals;

namespace {

/// The longest text of a server, in units: no block, which ends after some megabytes, has more of them. A position
/// beyond that is none.
constexpr std::uint32_t kMaxTextUnits = 0x3FFFFFFF;

[[noreturn]] void fail(const QString& what) {
    throw base::Error(base::kTypeMismatch, u"Furnizorul de date a dat date greșite: %1."_s.arg(what));
}

bool isDecimal(ColumnType type) { return type == ColumnType::Decimal64 || type == ColumnType::Decimal128; }

bool isKnown(ColumnType type) {
    switch (type) {
        case ColumnType::Int64:
        case ColumnType::Decimal64:
        case ColumnType::Decimal128:
        case ColumnType::Double:
        case ColumnType::Text:
        case ColumnType::DateTime:
            return true;
    }
    return false;
}

bool areAscending(const std::uint32_t* offsets, std::uint32_t rowCount) {
    bool isAscending = true;
    for (std::uint32_t row = 0; row < rowCount; ++row) isAscending &= offsets[row] <= offsets[row + 1];
    return isAscending;
}

/// What is wrong with a column; empty for nothing.
QString problemOf(const ColumnBlock& column, std::uint32_t rowCount) {
    if (!isKnown(column.type)) return u"tipul %1 nu este cunoscut"_s.arg(static_cast<std::int32_t>(column.type));
    if (isDecimal(column.type) && (column.scale < 0 || column.scale > base::kMaxDigits))
        return u"numărul de zecimale este %1"_s.arg(column.scale);
    if (column.type != ColumnType::Text) return column.values == nullptr ? u"valorile lipsesc"_s : QString();
    if (column.offsets == nullptr) return u"pozițiile textelor lipsesc"_s;
    if (!areAscending(column.offsets, rowCount)) return u"pozițiile textelor nu sunt în ordine"_s;
    const std::uint32_t units = column.offsets[rowCount] - column.offsets[0];
    if (units > kMaxTextUnits) return u"pozițiile textelor sunt prea mari"_s;
    return units != 0 && column.values == nullptr ? u"textele lipsesc"_s : QString();
}

}  // namespace

void checkBlock(const RowBlock& block, std::uint32_t maxRows, const QList<Column>& columns) {
    if (block.rowCount > maxRows)
        fail(u"numărul de rânduri este %1, deși s-au cerut cel mult %2"_s.arg(block.rowCount).arg(maxRows));
    if (block.columnCount != static_cast<std::uint32_t>(columns.size()))
        fail(u"numărul de coloane este %1, deși interogarea are %2"_s.arg(block.columnCount).arg(columns.size()));
    if (block.columns == nullptr && block.columnCount != 0) fail(u"coloanele lipsesc"_s);
    for (std::uint32_t i = 0; i < block.columnCount; ++i) {
        const QString problem = problemOf(block.columns[i], block.rowCount);
        if (!problem.isEmpty()) fail(u"coloana %1: %2"_s.arg(columns[i].name, problem));
    }
}

void throwRowsAfterEnd() { fail(u"rânduri după sfârșit"_s); }

QList<Column> checkedColumns(const ColumnDescription* descriptions, std::uint32_t count) {
    if (descriptions == nullptr && count != 0) fail(u"descrierea coloanelor lipsește"_s);
    QList<Column> columns;
    columns.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const ColumnDescription& description = descriptions[i];
        if (description.name == nullptr && description.nameLength != 0) fail(u"coloana %1 nu are nume"_s.arg(i + 1));
        columns.append({QString::fromUtf16(description.name, description.nameLength), description.type,
                        static_cast<int>(description.scale)});
    }
    return columns;
}

}  // namespace velcoran::db
