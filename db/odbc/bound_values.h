#pragma once

#include "column_plan.h"
#include "db/provider/column_builder.h"

namespace velcoran::odbc {

/// Values of a bound column as the driver left them, one after the other.
struct BoundValues {
    const std::byte* values = nullptr;
    const SQLLEN* lengths = nullptr;  ///< in bytes, SQL_NULL_DATA for null
    std::uint32_t stride = 0;         ///< bytes from one value to the next
};

/// Adds rows of a bound column to its block. No value is longer than its buffer.
void appendValues(provider::ColumnBuilder& column, ValueKind kind, const BoundValues& bound, std::uint32_t rowCount);

}  // namespace velcoran::odbc
