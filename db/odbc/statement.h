#pragma once

#include "db/provider/statement_shell.h"
#include "driver_statement.h"
#include "odbc_connection.h"

namespace velcoran::odbc {

/// A statement of a connection: what its callers hold of a DriverStatement.
class Statement final : public provider::StatementShell {
public:
    explicit Statement(com::Ref<OdbcConnection> connection);
    ~Statement() override;

    /// Runs a text at once. @throws Error; Cancelled
    void execute(const QString& text);
    /// Prepares a text: its columns are known then. @throws Error; Cancelled
    void prepare(const QString& text);

protected:
    void start() override;
    const RowBlock& read(std::uint32_t maxRows) override;
    void stop() noexcept override { m_connection->cancel(*m_token); }

private:
    void describeColumns();
    void stopWhenCancelled();

    com::Ref<OdbcConnection> m_connection;
    SharedToken m_token = std::make_shared<CancelToken>();
    std::shared_ptr<DriverStatement> m_statement;
    std::uint32_t m_position = 0;  ///< rows of the driver statement's block that were shown
    std::uint32_t m_available = 0;
};

}  // namespace velcoran::odbc
