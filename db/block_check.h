#pragma once

#include "connection.h"

namespace velcoran::db {

/// Looks at a block before anything reads it, so that a provider's mistake is an error and never a crash or a wrong
/// figure: as many columns as described, no more rows than asked for, known types, scales from 0 to 38, buffers where
/// there are values, texts one behind the other. Takes time with the rows of text columns alone.
/// @throws Error kTypeMismatch with what is wrong and the column's name
void checkBlock(const RowBlock& block, std::uint32_t maxRows, const QList<Column>& columns);

/// For rows that come with the news that there are no more: whether they are to count, nobody can tell.
/// @throws Error kTypeMismatch
[[noreturn]] void throwRowsAfterEnd();

/// The columns of a provider's description. @throws Error kTypeMismatch when it points nowhere
[[nodiscard]] QList<Column> checkedColumns(const ColumnDescription* descriptions, std::uint32_t count);

}  // namespace velcoran::db
