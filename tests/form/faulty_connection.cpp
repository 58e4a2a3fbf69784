#include "form/faulty_connection.h"

#include "base/error.h"
#include "db/connection.h"

#include <QString>

#include <chrono>
#include <thread>

namespace velcoran::tests {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The failure of the real object, as a failure of ours.
com::HResult passOn(com::HResult result, com::IUnknown* object) {
    if (result < 0) throw db::errorOf(result, object);
    return result;
}

class FaultyStatement final : public com::Object<IStatement> {
public:
    FaultyStatement(FaultyConnection* connection, com::Ref<IRows> rows, com::Ref<IStatement> statement)
        : m_connection(connection), m_rows(std::move(rows)), m_statement(std::move(statement)) {}

    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override {
        return call([&] { return m_rows->Columns(columns, count); });
    }
    com::HResult Run() override {
        return call([&] { return m_statement->Run(); });
    }
    com::HResult Fetch(std::uint32_t, const RowBlock** block) override {
        return call([&] { return m_rows->Fetch(100, block); });  // many blocks from few rows
    }
    com::HResult Cancel() override {
        m_connection->Cancel();
        return m_rows->Cancel();
    }

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IRows::kId; }

private:
    template <class Call>
    com::HResult call(Call real) {
        return com::guarded([&] {
            m_connection->beginCall();
            return passOn(real(), m_rows.get());
        });
    }

    com::Ref<FaultyConnection> m_connection;
    com::Ref<IRows> m_rows;
    com::Ref<IStatement> m_statement;
};

}  // namespace

void FaultyConnection::stall() {
    std::unique_lock lock(m_mutex);
    m_isStalled = true;
    m_changed.wait(lock, [this] { return m_isCancelled; });
    m_isStalled = false;
    throw base::Cancelled();
}

void FaultyConnection::beginCall() {
    const bool isHere = m_calls++ == m_faultAt;
    if (isHere && m_fault == Fault::delay) std::this_thread::sleep_for(450ms);  // longer than the window waits silently
    if (isHere && m_fault == Fault::stall) stall();
    if (isHere && m_fault == Fault::lose) m_isLost = true;
    if (m_isLost) throw base::Error(base::kProviderFailure, u"Communication link failure"_s);
    if (isHere && m_fault == Fault::fail) throw base::Error(base::kStatementError, u"Deadlock victim"_s);
}

com::HResult FaultyConnection::Execute(com::Bstr text, IRows** rows) {
    return com::guarded([&] {
        beginCall();
        com::Ref<IRows> real;
        passOn(m_real->Execute(text, real.receive()), m_real.get());
        *rows = com::makeObject<FaultyStatement>(this, std::move(real), nullptr).release();
        return com::kOk;
    });
}

com::HResult FaultyConnection::OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType,
                                          std::int32_t lockType, IRows** rows) {
    return com::guarded([&] {
        beginCall();
        com::Ref<IRows> real;
        passOn(m_real->OpenRowset(text, cursorLocation, cursorType, lockType, real.receive()), m_real.get());
        *rows = com::makeObject<FaultyStatement>(this, std::move(real), nullptr).release();
        return com::kOk;
    });
}

com::HResult FaultyConnection::Prepare(com::Bstr text, IStatement** statement) {
    return com::guarded([&] {
        beginCall();
        com::Ref<IStatement> real;
        passOn(m_real->Prepare(text, real.receive()), m_real.get());
        *statement = com::makeObject<FaultyStatement>(this, com::Ref<IRows>(real.get()), real).release();
        return com::kOk;
    });
}

com::HResult FaultyConnection::Cancel() {
    {
        const std::scoped_lock lock(m_mutex);
        m_isCancelled = true;
    }
    m_changed.notify_all();
    return m_real->Cancel();
}

}  // namespace velcoran::tests
