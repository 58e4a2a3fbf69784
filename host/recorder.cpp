#include "host/recorder.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

/// Words of a failure come from whoever failed, not from the recorder.
com::HResult lastErrorOf(com::IUnknown& target, std::int32_t* number, com::Bstr* description, com::Bstr* source) {
    com::Ref<com::IErrorSource> errors;
    if (com::failed(target.QueryInterface(com::IErrorSource::kId, errors.receiveVoid()))) return com::kFalse;
    return errors->LastError(number, description, source);
}

class RecordingStatement final : public com::Object<IStatement> {
public:
    RecordingStatement(com::Ref<IStatement> statement, QString text, std::shared_ptr<StatementLog> log)
        : m_statement(std::move(statement)), m_text(std::move(text)), m_log(std::move(log)) {}

    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override {
        return m_statement->Columns(columns, count);
    }
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        return m_statement->Fetch(maxRows, block);
    }
    com::HResult Cancel() override { return m_statement->Cancel(); }
    com::HResult Run() override {
        if (std::exchange(m_hasRun, true)) m_log->append(u"command"_s, m_text);
        return m_statement->Run();
    }
    com::HResult LastError(std::int32_t* number, com::Bstr* description, com::Bstr* source) override {
        return lastErrorOf(*m_statement, number, description, source);
    }

private:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IRows::kId; }

    com::Ref<IStatement> m_statement;
    QString m_text;
    std::shared_ptr<StatementLog> m_log;
    bool m_hasRun = false;
};

class RecordingConnection final : public com::Object<IConnection> {
public:
    RecordingConnection(com::Ref<IConnection> connection, std::shared_ptr<StatementLog> log)
        : m_connection(std::move(connection)),
          m_log(std::move(log)),
          m_isFreeThreaded(m_connection.as<IFreeThreadedConnection>()) {}

    std::int32_t State() override { return m_connection->State(); }
    com::HResult Execute(com::Bstr text, IRows** rows) override {
        m_log->append(u"execute"_s, com::toQString(text));
        return m_connection->Execute(text, rows);
    }
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override {
        m_log->append(u"recordset"_s, com::toQString(text));
        return m_connection->OpenRowset(text, cursorLocation, cursorType, lockType, rows);
    }
    com::HResult Prepare(com::Bstr text, IStatement** statement) override {
        if (statement == nullptr) return com::kNullPointer;
        *statement = nullptr;
        m_log->append(u"command"_s, com::toQString(text));
        com::Ref<IStatement> prepared;
        const com::HResult result = m_connection->Prepare(text, prepared.receive());
        if (com::failed(result)) return result;
        *statement = com::makeObject<RecordingStatement>(prepared, com::toQString(text), m_log).release();
        return result;
    }
    com::HResult Cancel() override { return m_connection->Cancel(); }
    com::HResult LastError(std::int32_t* number, com::Bstr* description, com::Bstr* source) override {
        return lastErrorOf(*m_connection, number, description, source);
    }

private:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override {
        return m_isFreeThreaded && id == IFreeThreadedConnection::kId;
    }

    com::Ref<IConnection> m_connection;
    std::shared_ptr<StatementLog> m_log;
    bool m_isFreeThreaded;
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
