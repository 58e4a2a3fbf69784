#pragma once

#include "column_plan.h"
#include "db/provider/block_builder.h"
#include "link.h"

#include <memory>
#include <vector>

namespace velcoran::odbc {

/// The columns of a statement that runs, bound to buffers, and the rows that come through them.
///
/// Usually all columns are bound, a block of rows at a time. A column too long for a buffer a row is bound to a short
/// one where the driver can read a longer value again; where it cannot, rows come one at a time and everything from the
/// first such column on is read in pieces, which is the order that every driver allows.
class BoundColumns {
public:
    /// Binds the columns. @throws Error of the driver
    BoundColumns(Link& link, const StatementHandle& statement, const std::vector<ColumnPlan>& plans,
                 const CancelToken& token);

    /// Fills a block. @return false at the end, with no row @throws Error; Cancelled
    bool fetch(provider::BlockBuilder& block, const CancelToken& token);

private:
    struct Binding {
        ColumnPlan plan;
        SQLUSMALLINT number = 0;
        bool isBound = false;
        std::byte* values = nullptr;
        SQLLEN* lengths = nullptr;
    };

    void chooseMode(const std::vector<ColumnPlan>& plans);
    void allocate();
    void setAttribute(SQLINTEGER attribute, SQLPOINTER value, const CancelToken& token);
    void bind(const CancelToken& token);
    [[nodiscard]] std::uint32_t fetchRowset(const CancelToken& token);
    void checkRows(SQLRETURN result, std::uint32_t count, const CancelToken& token);
    void appendRowset(provider::BlockBuilder& block, std::uint32_t rowCount, const CancelToken& token);
    void appendBound(provider::ColumnBuilder& column, const Binding& binding, std::uint32_t rowCount,
                     const CancelToken& token);
    void readAgain(provider::ColumnBuilder& column, const Binding& binding, std::uint32_t row,
                   const CancelToken& token);
    void appendUnbound(provider::ColumnBuilder& column, const Binding& binding, const CancelToken& token);
    bool readPieces(const Binding& binding, const CancelToken& token);
    void appendPieces(provider::ColumnBuilder& column, const Binding& binding, const CancelToken& token);

    Link& m_link;
    const StatementHandle& m_statement;
    std::vector<Binding> m_bindings;
    std::uint32_t m_rowsetSize = 1;
    std::unique_ptr<std::byte[]> m_memory;
    std::vector<SQLUSMALLINT> m_status;
    SQLULEN m_fetched = 0;
    std::vector<char> m_pieces;
};

}  // namespace velcoran::odbc
