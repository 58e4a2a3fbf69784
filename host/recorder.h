#pragma once

#include "platform/com/object.h"

#include <velcoran/connection.h>

#include <QList>
#include <QString>

#include <memory>
#include <mutex>

namespace velcoran::host {

/// A statement that reached the connection.
struct RecordedStatement {
    QString via;  ///< "execute", "recordset" or "command"
    QString text;
};

/// What reached a connection, in order. Any thread: the report engine works on a thread of its own.
class StatementLog {
public:
    void append(const QString& via, const QString& text);
    /// What was recorded since the last call.
    [[nodiscard]] QList<RecordedStatement> take();

private:
    std::mutex m_mutex;
    QList<RecordedStatement> m_statements;
};

/// A connection that records every text and hands each call on, failures and their words included. A prepared statement
/// is recorded when it is prepared, and again for every run after its first.
[[nodiscard]] com::Ref<IConnection> recordConnection(com::Ref<IConnection> connection,
                                                     std::shared_ptr<StatementLog> log);

}  // namespace velcoran::host
