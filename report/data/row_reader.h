#pragma once

#include "db/connection.h"
#include "report_content.h"

namespace velcoran::report {

/// Which column of the source feeds each column of the report; nothing where none does.
using ColumnBinding = base::EnumArray<std::optional<int>, ColumnRole, kColumnCount>;

/// Takes blocks of rows into a store.
class RowReader {
public:
    explicit RowReader(const ColumnBinding& binding) : m_binding(binding) {}

    /// @param block  checked (db::Rows::fetch), of the columns that the binding was made for
    /// @throws Error kTypeMismatch for an amount that is no number, kOverflow for one beyond 38 digits or for more rows
    ///     than 32 bits count
    void add(const RowBlock& block);
    [[nodiscard]] std::uint32_t rowCount() const { return m_store.rowCount; }
    /// The rows; the reader is empty then.
    [[nodiscard]] RowStore take();

private:
    void addTexts(ColumnRole role, const RowBlock& block);
    void addAmounts(ColumnRole role, const RowBlock& block);
    void addOddValue(ColumnRole role, const ColumnBlock& column, std::uint32_t row);

    ColumnBinding m_binding;
    RowStore m_store;
    std::vector<Int128> m_mantissas;  ///< scratch of one block
    std::vector<std::uint8_t> m_nulls;
};

}  // namespace velcoran::report
