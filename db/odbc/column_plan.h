#pragma once

#include "handles.h"

#include <QString>

#include <velcoran/connection.h>

#include <cstdint>

namespace velcoran::odbc {

/// What becomes of a column's values.
enum class ValueKind : std::uint8_t { Integer, Real, Number, DateTime, Date, Text };

/// A column as the driver describes it.
struct DriverColumn {
    QString name;
    SQLSMALLINT sqlType = SQL_UNKNOWN_TYPE;
    SQLULEN size = 0;  ///< digits or characters; 0 when the driver does not know
    SQLSMALLINT digits = 0;
    bool isUnsigned = false;
};

/// How a column is fetched.
struct ColumnPlan {
    QString name;
    ValueKind kind = ValueKind::Text;
    SQLSMALLINT cType = SQL_C_WCHAR;
    std::uint32_t valueBytes = 0;  ///< of the buffer for one row
    ColumnType expected = ColumnType::Text;
    int scale = 0;
    bool isLong = false;  ///< read in pieces
};

/// Texts of more characters than this are read in pieces instead of into a buffer for each row.
constexpr SQLULEN kMaxBoundCharacters = 4000;

/// @param isLoose  the database does not hold its values to the column's type: numbers are read as text and typed by
///                 what they are
[[nodiscard]] ColumnPlan planColumn(const DriverColumn& column, bool isLoose);

}  // namespace velcoran::odbc
