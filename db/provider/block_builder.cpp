#include "block_builder.h"

namespace velcoran::provider {

void BlockBuilder::start(std::uint32_t capacity) {
    for (ColumnBuilder& column : m_columns) column.start(capacity);
    m_rowCount = 0;
}

std::size_t BlockBuilder::byteCount() const {
    std::size_t bytes = 0;
    for (const ColumnBuilder& column : m_columns) bytes += column.byteCount();
    return bytes;
}

const RowBlock& BlockBuilder::show(std::uint32_t firstRow, std::uint32_t count) {
    m_shownColumns.clear();
    for (ColumnBuilder& column : m_columns) m_shownColumns.push_back(column.block(firstRow));
    m_shown = {count, static_cast<std::uint32_t>(m_shownColumns.size()), m_shownColumns.data()};
    return m_shown;
}

}  // namespace velcoran::provider
