#include "host/recorder.h"

#include "db/forwarding.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

QString nameOf(db::Via via) {
    switch (via) {
        case db::Via::execute:
            return u"execute"_s;
        case db::Via::recordset:
            return u"recordset"_s;
        case db::Via::command:
            break;
    }
    return u"command"_s;
}

class RecordingStatement final : public db::ForwardingStatement {
public:
    RecordingStatement(com::Ref<IStatement> statement, QString text, std::shared_ptr<StatementLog> log)
        : ForwardingStatement(std::move(statement)), m_text(std::move(text)), m_log(std::move(log)) {}

    com::HResult Run() override {
        if (std::exchange(m_hasRun, true)) m_log->append(nameOf(db::Via::command), m_text);
        return ForwardingStatement::Run();
    }

private:
    QString m_text;
    std::shared_ptr<StatementLog> m_log;
    bool m_hasRun = false;
};

class RecordingConnection final : public db::ForwardingConnection {
public:
    RecordingConnection(com::Ref<IConnection> connection, std::shared_ptr<StatementLog> log)
        : ForwardingConnection(std::move(connection)), m_log(std::move(log)) {}

private:
    void admit(const QString& text, db::Via via) override { m_log->append(nameOf(via), text); }
    com::Ref<IRows> wrap(com::Ref<IRows> rows, const QString&) override { return rows; }
    com::Ref<IStatement> wrap(com::Ref<IStatement> statement, const QString& text) override {
        return com::Ref<IStatement>::adopt(
            com::makeObject<RecordingStatement>(std::move(statement), text, m_log).release());
    }

    std::shared_ptr<StatementLog> m_log;
};

}  // namespace

void StatementLog::append(const QString& via, const QString& text) {
    const std::lock_guard lock(m_mutex);
    m_statements.append({via, text});
}

QList<RecordedStatement> StatementLog::take() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_statements, {});
}

com::Ref<IConnection> recordConnection(com::Ref<IConnection> connection, std::shared_ptr<StatementLog> log) {
    if (!connection) return connection;
    return com::Ref<IConnection>::adopt(
        com::makeObject<RecordingConnection>(std::move(connection), std::move(log)).release());
}

}  // namespace velcoran::host
