#pragma once

#include "row_filter.h"

#include <QString>

#include <velcoran/connection.h>

#include <memory>
#include <optional>
#include <vector>

namespace velcoran::db {

/// Rows of a statement kept block by block, in columns, as they came: no allocation for a cell.
class RowStore {
public:
    /// Copies a block, which was checked (Rows::fetch). @throws Error kOverflow for more rows than 32 bits count
    void append(const RowBlock& block);

    [[nodiscard]] std::uint32_t rowCount() const { return m_rowCount; }
    /// Text of a value; nothing for null.
    [[nodiscard]] std::optional<QString> text(std::uint32_t row, int column) const;
    /// Numbers of the rows whose value passes, ascending. A null passes nothing.
    [[nodiscard]] std::vector<std::uint32_t> select(const RowFilter& filter, int column) const;

private:
    struct Values {
        ColumnType type = ColumnType::Text;
        int scale = 0;
        std::unique_ptr<std::uint8_t[]> nulls;  ///< null when there is none
        std::unique_ptr<std::byte[]> values;
        std::unique_ptr<std::uint32_t[]> offsets;

        [[nodiscard]] bool isNull(std::uint32_t row) const { return nulls && nulls[row] != 0; }
        [[nodiscard]] QStringView view(std::uint32_t row) const;
        [[nodiscard]] QString text(std::uint32_t row) const;
        [[nodiscard]] bool passes(std::uint32_t row, const RowFilter& filter) const;
    };
    struct Segment {
        std::uint32_t firstRow = 0;
        std::uint32_t rowCount = 0;
        std::vector<Values> columns;
    };

    [[nodiscard]] static Values copyOf(const ColumnBlock& column, std::uint32_t rowCount);
    [[nodiscard]] const Segment& segmentOf(std::uint32_t row) const;

    std::vector<Segment> m_segments;
    std::uint32_t m_rowCount = 0;
};

}  // namespace velcoran::db
