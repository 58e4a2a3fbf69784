#include "recorder.h"

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

class RecordingRows final : public db::ForwardingRows {
public:
    RecordingRows(com::Ref<IRows> rows, std::shared_ptr<StatementLog> log)
        : ForwardingRows(std::move(rows)), m_log(std::move(log)) {}

    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        const StatementLog::Running running(*m_log);
        return ForwardingRows::Fetch(maxRows, block);
    }
    com::HResult Cancel() override {
        m_log->noteCancel();
        return ForwardingRows::Cancel();
    }

private:
    std::shared_ptr<StatementLog> m_log;
};

class RecordingStatement final : public db::ForwardingStatement {
public:
    RecordingStatement(com::Ref<IStatement> statement, QString text, std::shared_ptr<StatementLog> log)
        : ForwardingStatement(std::move(statement)), m_text(std::move(text)), m_log(std::move(log)) {}

    com::HResult Run() override {
        if (std::exchange(m_hasRun, true)) m_log->append(nameOf(db::Via::command), m_text);
        return ForwardingStatement::Run();
    }
    com::HResult Cancel() override {
        m_log->noteCancel();
        return ForwardingStatement::Cancel();
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

    com::HResult Execute(com::Bstr text, IRows** rows) override {
        const StatementLog::Running running(*m_log);
        return ForwardingConnection::Execute(text, rows);
    }
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override {
        const StatementLog::Running running(*m_log);
        return ForwardingConnection::OpenRowset(text, cursorLocation, cursorType, lockType, rows);
    }
    com::HResult Prepare(com::Bstr text, IStatement** statement) override {
        const StatementLog::Running running(*m_log);
        return ForwardingConnection::Prepare(text, statement);
    }
    com::HResult Cancel() override {
        m_log->noteCancel();
        return ForwardingConnection::Cancel();
    }

private:
    void admit(const QString& text, db::Via via) override { m_log->append(nameOf(via), text); }
    com::Ref<IRows> wrap(com::Ref<IRows> rows, const QString&) override {
        return com::Ref<IRows>::adopt(com::makeObject<RecordingRows>(std::move(rows), m_log).release());
    }
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
