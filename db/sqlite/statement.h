#pragma once

#include "db/provider/block_builder.h"
#include "db/provider/statement_shell.h"
#include "session.h"

#include <optional>

namespace velcoran::sqlite {

/// A statement of the embedded database.
class Statement final : public provider::StatementShell {
public:
    /// Prepares. @throws Error of the database
    Statement(std::shared_ptr<Session> session, const QString& text);
    ~Statement() override;

    void start() override;

protected:
    const RowBlock& read(std::uint32_t maxRows) override;
    void stop() noexcept override { m_token.request(); }

private:
    void describeColumns(const QString& text);
    void endRun();
    void readBlock(std::uint32_t maxRows);

    std::shared_ptr<Session> m_session;
    provider::CancelToken m_token;
    StatementHandle m_statement;
    std::optional<Session::Activity> m_activity;  ///< while it runs
    bool m_isAtEnd = false;
    provider::BlockBuilder m_block;
};

}  // namespace velcoran::sqlite
