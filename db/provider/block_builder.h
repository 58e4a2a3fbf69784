#pragma once

#include "column_builder.h"

namespace velcoran::provider {

/// Collects the rows of one block after the other, column by column.
class BlockBuilder {
public:
    /// Adds a column, with what its builder is told about it.
    void addColumn(ColumnType expected, std::optional<int> scale = {}) { m_columns.emplace_back(expected, scale); }
    [[nodiscard]] std::size_t columnCount() const { return m_columns.size(); }
    [[nodiscard]] ColumnBuilder& column(std::size_t index) { return m_columns[index]; }

    /// Starts a block. @param capacity  most rows that will come
    void start(std::uint32_t capacity);
    /// Says that each column has got so many values more.
    void addRows(std::uint32_t count) { m_rowCount += count; }
    [[nodiscard]] std::uint32_t rowCount() const { return m_rowCount; }
    /// Bytes of the values so far.
    [[nodiscard]] std::size_t byteCount() const;

    /// Rows of the block, for the caller of Fetch; valid until the next call of this or of start.
    [[nodiscard]] const RowBlock& show(std::uint32_t firstRow, std::uint32_t count);

private:
    std::vector<ColumnBuilder> m_columns;
    std::uint32_t m_rowCount = 0;
    std::vector<ColumnBlock> m_shownColumns;
    RowBlock m_shown{};
};

}  // namespace velcoran::provider
