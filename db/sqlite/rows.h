#pragma once

#include "column_builder.h"
#include "com/object.h"
#include "session.h"

#include <velcoran/connection.h>

#include <optional>
#include <string>
#include <vector>

namespace velcoran::sqlite {

/// A statement of the embedded database: prepared or running, it is also the rows of Execute and OpenRowset.
class Statement final : public com::Object<IStatement> {
public:
    /// Prepares. @throws Error of the database
    Statement(std::shared_ptr<Session> session, const QString& text);
    ~Statement() override;

    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override;
    com::HResult Run() override;
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override;
    com::HResult Cancel() override;

    /// Starts the statement, for a connection that prepared it in order to run it.
    void start();

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IRows::kId; }

private:
    void describe(const QString& text);
    void stop();
    bool readBlock(std::uint32_t maxRows);

    std::shared_ptr<Session> m_session;
    CancelToken m_token;
    StatementHandle m_statement;
    std::optional<Session::Activity> m_activity;  ///< while it runs
    bool m_isAtEnd = false;
    std::vector<QString> m_names;
    std::vector<ColumnDescription> m_descriptions;
    std::vector<ColumnBuilder> m_builders;
    std::vector<ColumnBlock> m_columns;
    RowBlock m_block{};
};

}  // namespace velcoran::sqlite
