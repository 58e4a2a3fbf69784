#include "statement.h"

#include <algorithm>

namespace velcoran::odbc {

Statement::Statement(com::Ref<OdbcConnection> connection)
    : m_connection(std::move(connection)), m_statement(std::make_shared<DriverStatement>(m_connection->link())) {}

Statement::~Statement() {
    // The handle is freed on the driver's thread; nobody waits for it.
    m_connection->post([statement = std::move(m_statement)] { statement->release(); });
}

void Statement::execute(const QString& text) {
    m_connection->perform(m_token,
                          [statement = m_statement, text, token = m_token] { statement->execute(text, token); });
    describeColumns();
}

void Statement::prepare(const QString& text) {
    m_connection->perform(m_token,
                          [statement = m_statement, text, token = m_token] { statement->prepare(text, token); });
    describeColumns();
}

void Statement::describeColumns() {
    if (isDescribed()) return;  // handed out: they stay as they are
    for (const ColumnPlan& plan : m_statement->columns()) describe(plan.name, plan.expected, plan.scale);
}

void Statement::start() {
    m_position = m_available = 0;
    m_connection->perform(m_token, [statement = m_statement, token = m_token] { statement->run(token); });
    describeColumns();
}

const RowBlock& Statement::read(std::uint32_t maxRows) {
    m_connection->requireOpen();
    stopWhenCancelled();
    if (m_position == m_available) {
        m_position = m_available = 0;
        m_connection->perform(m_token, [statement = m_statement, token = m_token] { statement->next(*token); });
        m_available = m_statement->block().rowCount();
    }
    const std::uint32_t first = m_position;
    m_position += std::min(maxRows, m_available - first);
    return m_statement->block().show(first, m_position - first);
}

/// A cancel between two fetches, while rows of the last block are still here.
void Statement::stopWhenCancelled() {
    if (m_position == m_available || !m_token->take()) return;
    m_position = m_available = 0;
    m_connection->post([statement = m_statement] { statement->close(); });
    throw base::Cancelled();
}

}  // namespace velcoran::odbc
