#pragma once

#include "com/object.h"
#include "cursor.h"
#include "session.h"

#include <velcoran/connection.h>

#include <memory>
#include <vector>

namespace velcoran::odbc {

/// A statement of a connection: prepared or running, it is also the rows of Execute and OpenRowset.
class Statement final : public com::Object<IStatement> {
public:
    explicit Statement(std::shared_ptr<Session> session);
    ~Statement() override;

    /// Runs a text at once. @throws Error; Cancelled
    void execute(const QString& text);
    /// Prepares a text: its columns are known then. @throws Error; Cancelled
    void prepare(const QString& text);

    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override;
    com::HResult Run() override;
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override;
    com::HResult Cancel() override;

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IRows::kId; }

private:
    void describe();
    void stopWhenCancelled();
    [[nodiscard]] const RowBlock& showRows(std::uint32_t maxRows);

    std::shared_ptr<Session> m_session;
    SharedToken m_token = std::make_shared<CancelToken>();
    std::shared_ptr<Cursor> m_cursor;
    std::vector<QString> m_names;
    std::vector<ColumnDescription> m_descriptions;
    std::uint32_t m_position = 0;  ///< rows of the cursor's block that were shown
    std::uint32_t m_available = 0;
    std::vector<ColumnBlock> m_columns;
    RowBlock m_block{};
};

}  // namespace velcoran::odbc
