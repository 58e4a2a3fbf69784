#include "column_plan.h"

#include "base/int128.h"

#include <algorithm>
#include <iterator>

namespace velcoran::odbc {

namespace {

/// Drivers' own types with the meaning of a time of day and of a date-time with a zone; fetched as text.
constexpr SQLSMALLINT kTimeWithFraction = -154;
constexpr SQLSMALLINT kDateTimeWithZone = -155;

/// Types of the former standard, which some drivers still report.
constexpr SQLSMALLINT kOldDate = 9;
constexpr SQLSMALLINT kOldTime = 10;
constexpr SQLSMALLINT kOldTimestamp = 11;

/// Sign, 38 digits, point, zero in front, terminator; the rest for exponents.
constexpr std::uint32_t kNumberBytes = 48;

/// How a type's described size becomes units of a text buffer.
enum class Length : std::uint8_t { None, Fixed, Characters, Bytes };

struct TypeRow {
    SQLSMALLINT sqlType;
    ValueKind kind;
    Length length;
    std::uint32_t units;  ///< of a Fixed text
};

constexpr std::uint32_t kGuidUnits = 40;
constexpr std::uint32_t kTimeUnits = 48;

constexpr TypeRow kTypes[] = {
    {SQL_BIT, ValueKind::Integer, Length::None, 0},
    {SQL_TINYINT, ValueKind::Integer, Length::None, 0},
    {SQL_SMALLINT, ValueKind::Integer, Length::None, 0},
    {SQL_INTEGER, ValueKind::Integer, Length::None, 0},
    {SQL_BIGINT, ValueKind::Integer, Length::None, 0},
    {SQL_DECIMAL, ValueKind::Number, Length::None, 0},
    {SQL_NUMERIC, ValueKind::Number, Length::None, 0},
    {SQL_REAL, ValueKind::Real, Length::None, 0},
    {SQL_FLOAT, ValueKind::Real, Length::None, 0},
    {SQL_DOUBLE, ValueKind::Real, Length::None, 0},
    {SQL_TYPE_TIMESTAMP, ValueKind::DateTime, Length::None, 0},
    {kOldTimestamp, ValueKind::DateTime, Length::None, 0},
    {SQL_TYPE_DATE, ValueKind::Date, Length::None, 0},
    {kOldDate, ValueKind::Date, Length::None, 0},
    {SQL_TYPE_TIME, ValueKind::Text, Length::Fixed, kTimeUnits},
    {kOldTime, ValueKind::Text, Length::Fixed, kTimeUnits},
    {kTimeWithFraction, ValueKind::Text, Length::Fixed, kTimeUnits},
    {kDateTimeWithZone, ValueKind::Text, Length::Fixed, kTimeUnits},
    {SQL_GUID, ValueKind::Text, Length::Fixed, kGuidUnits},
    {SQL_CHAR, ValueKind::Text, Length::Characters, 0},
    {SQL_VARCHAR, ValueKind::Text, Length::Characters, 0},
    {SQL_LONGVARCHAR, ValueKind::Text, Length::Characters, 0},
    {SQL_WCHAR, ValueKind::Text, Length::Characters, 0},
    {SQL_WVARCHAR, ValueKind::Text, Length::Characters, 0},
    {SQL_WLONGVARCHAR, ValueKind::Text, Length::Characters, 0},
    {SQL_BINARY, ValueKind::Text, Length::Bytes, 0},
    {SQL_VARBINARY, ValueKind::Text, Length::Bytes, 0},
    {SQL_LONGVARBINARY, ValueKind::Text, Length::Bytes, 0},
};

/// Types that a driver has of its own are texts of unknown length.
constexpr TypeRow kOtherType = {0, ValueKind::Text, Length::Bytes, 0};

const TypeRow& rowOf(SQLSMALLINT sqlType) {
    const auto* const row = std::find_if(std::begin(kTypes), std::end(kTypes),
                                         [sqlType](const TypeRow& each) { return each.sqlType == sqlType; });
    return row == std::end(kTypes) ? kOtherType : *row;
}

bool isNumeric(ValueKind kind) {
    return kind == ValueKind::Integer || kind == ValueKind::Real || kind == ValueKind::Number;
}

/// A described character may be a pair of units, and a byte is written as two digits.
void planTextColumn(ColumnPlan& plan, const TypeRow& row, const DriverColumn& column) {
    const bool isOpenEnded =
        row.length != Length::Fixed && (column.size == 0 || column.size > kMaxBoundCharacters || &row == &kOtherType);
    plan.isLong = isOpenEnded;
    if (isOpenEnded) return;
    const auto units = row.length == Length::Fixed ? row.units : static_cast<std::uint32_t>(column.size) * 2 + 2;
    plan.valueBytes = (units + 1) * static_cast<std::uint32_t>(sizeof(SQLWCHAR));
}

}  // namespace

ColumnPlan planColumn(const DriverColumn& column, bool isLoose) {
    const TypeRow& row = rowOf(column.sqlType);
    ColumnPlan plan;
    plan.name = column.name;
    plan.kind = row.kind;
    const bool isWideInteger = row.sqlType == SQL_BIGINT && column.isUnsigned;
    if (isWideInteger || (isLoose && isNumeric(row.kind))) plan.kind = ValueKind::Number;
    switch (plan.kind) {
        case ValueKind::Integer:
            plan.cType = SQL_C_SBIGINT;
            plan.valueBytes = sizeof(std::int64_t);
            plan.expected = ColumnType::Int64;
            break;
        case ValueKind::Real:
            plan.cType = row.sqlType == SQL_REAL ? SQL_C_FLOAT : SQL_C_DOUBLE;
            plan.valueBytes = row.sqlType == SQL_REAL ? sizeof(float) : sizeof(double);
            plan.expected = ColumnType::Double;
            break;
        case ValueKind::Number:
            plan.cType = SQL_C_CHAR;
            plan.valueBytes = kNumberBytes;
            plan.expected = row.kind == ValueKind::Integer ? ColumnType::Int64 : ColumnType::Decimal64;
            if (row.kind == ValueKind::Number) plan.scale = std::clamp<int>(column.digits, 0, base::kMaxDigits);
            break;
        case ValueKind::DateTime:
            plan.cType = SQL_C_TYPE_TIMESTAMP;
            plan.valueBytes = sizeof(SQL_TIMESTAMP_STRUCT);
            plan.expected = ColumnType::DateTime;
            break;
        case ValueKind::Date:
            plan.cType = SQL_C_TYPE_DATE;
            plan.valueBytes = sizeof(SQL_DATE_STRUCT);
            break;
        case ValueKind::Text:
            planTextColumn(plan, row, column);
            break;
    }
    return plan;
}

}  // namespace velcoran::odbc
