#pragma once

#include "com/object.h"

#include <velcoran/connection.h>

#include <QList>
#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

namespace velcoran::host {

/// A statement that reached the connection.
struct RecordedStatement {
    QString via;  ///< "execute", "recordset" or "command"
    QString text;
};

/// What reached a connection, in order, and what runs on it now. Any thread: the report engine works on a thread of its
/// own.
class StatementLog {
public:
    void append(const QString& via, const QString& text);
    /// What was recorded since the last call.
    [[nodiscard]] QList<RecordedStatement> take();

    /// True while the window waits for a statement: one that runs, is prepared or brings rows to it. A prepared one
    /// that runs is a report that loads, and nobody's wait.
    [[nodiscard]] bool isRunning() const { return m_running > 0; }
    /// How many cancels have reached the connection, its statements and their rows.
    [[nodiscard]] int cancels() const { return m_cancels; }
    void noteCancel() { ++m_cancels; }

    /// A call that the window waits for, as long as the object lives.
    class Running {
    public:
        explicit Running(StatementLog& log) : m_log(log) { ++m_log.m_running; }
        ~Running() { --m_log.m_running; }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

    private:
        StatementLog& m_log;
    };

private:
    std::mutex m_mutex;
    QList<RecordedStatement> m_statements;
    std::atomic<int> m_running = 0;
    std::atomic<int> m_cancels = 0;
};

/// A connection that records every text and hands each call on, failures and their words included. A prepared statement
/// is recorded when it is prepared, and again for every run after its first.
[[nodiscard]] com::Ref<IConnection> recordConnection(com::Ref<IConnection> connection,
                                                     std::shared_ptr<StatementLog> log);

}  // namespace velcoran::host
