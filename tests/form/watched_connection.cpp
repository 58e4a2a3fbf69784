#include "watched_connection.h"

#include "db/connection.h"

namespace velcoran::tests {

namespace {

/// The failure of the real object, as a failure of ours.
com::HResult passOn(com::HResult result, com::IUnknown* object) {
    if (result < 0) throw db::errorOf(result, object);
    return result;
}

class WatchedRows final : public com::Object<IStatement> {
public:
    WatchedRows(WatchedConnection* connection, com::Ref<IRows> rows, com::Ref<IStatement> statement)
        : m_connection(connection), m_rows(std::move(rows)), m_statement(std::move(statement)) {}

    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override {
        return call("Columns", [&] { return m_rows->Columns(columns, count); });
    }
    com::HResult Run() override {
        return call("Run", [&] { return m_statement->Run(); });
    }
    com::HResult Fetch(std::uint32_t, const RowBlock** block) override {
        return call("Fetch", [&] { return m_rows->Fetch(100, block); });  // many blocks from few rows
    }
    com::HResult Cancel() override {
        m_connection->Cancel();
        return m_rows->Cancel();
    }

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IRows::kId; }

private:
    template <class Call>
    com::HResult call(const char* name, Call real) {
        m_connection->enterCall(name);
        return com::guarded([&] {
            m_connection->beginCall(name);
            return passOn(real(), m_rows.get());
        });
    }

    com::Ref<WatchedConnection> m_connection;
    com::Ref<IRows> m_rows;
    com::Ref<IStatement> m_statement;
};

}  // namespace

std::int32_t WatchedConnection::State() {
    enterCall("State");
    return m_real->State();
}

com::HResult WatchedConnection::Execute(com::Bstr text, IRows** rows) {
    enterCall("Execute");
    return com::guarded([&] {
        beginCall("Execute");
        com::Ref<IRows> real;
        passOn(m_real->Execute(text, real.receive()), m_real.get());
        *rows = com::makeObject<WatchedRows>(this, std::move(real), nullptr).release();
        return com::kOk;
    });
}

com::HResult WatchedConnection::OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType,
                                           std::int32_t lockType, IRows** rows) {
    enterCall("OpenRowset");
    return com::guarded([&] {
        beginCall("OpenRowset");
        com::Ref<IRows> real;
        passOn(m_real->OpenRowset(text, cursorLocation, cursorType, lockType, real.receive()), m_real.get());
        *rows = com::makeObject<WatchedRows>(this, std::move(real), nullptr).release();
        return com::kOk;
    });
}

com::HResult WatchedConnection::Prepare(com::Bstr text, IStatement** statement) {
    enterCall("Prepare");
    return com::guarded([&] {
        beginCall("Prepare");
        com::Ref<IStatement> real;
        passOn(m_real->Prepare(text, real.receive()), m_real.get());
        *statement = com::makeObject<WatchedRows>(this, com::Ref<IRows>(real.get()), real).release();
        return com::kOk;
    });
}

}  // namespace velcoran::tests
