#include "host/statement_hold.h"

#include "db/forwarding.h"

#include <utility>

namespace velcoran::host {

void StatementHold::holdNext(std::chrono::milliseconds time) {
    const std::scoped_lock lock(m_mutex);
    m_next = time;
}

void StatementHold::pass() {
    std::unique_lock lock(m_mutex);
    const auto time = std::exchange(m_next, std::nullopt);
    if (!time) return;
    m_isHolding = true;
    m_isCancelled = false;
    m_changed.wait_for(lock, *time, [this] { return m_isCancelled; });
    m_isHolding = false;
    if (std::exchange(m_isCancelled, false)) throw base::Cancelled();
}

void StatementHold::cancel() {
    const std::scoped_lock lock(m_mutex);
    m_isCancelled = m_isHolding;
    m_changed.notify_all();
}

namespace {

class HeldStatement final : public db::ForwardingStatement {
public:
    HeldStatement(com::Ref<IStatement> statement, std::shared_ptr<StatementHold> hold)
        : ForwardingStatement(std::move(statement)), m_hold(std::move(hold)) {}

    com::HResult Run() override {
        return com::guarded([this] {
            m_hold->pass();
            return ForwardingStatement::Run();
        });
    }
    com::HResult Cancel() override {
        m_hold->cancel();
        return ForwardingStatement::Cancel();
    }

private:
    std::shared_ptr<StatementHold> m_hold;
};

class HeldConnection final : public db::ForwardingConnection {
public:
    HeldConnection(com::Ref<IConnection> connection, std::shared_ptr<StatementHold> hold)
        : ForwardingConnection(std::move(connection)), m_hold(std::move(hold)) {}

    com::HResult Cancel() override {
        m_hold->cancel();
        return ForwardingConnection::Cancel();
    }

private:
    void admit(const QString&, db::Via via) override {
        if (via != db::Via::command) m_hold->pass();
    }
    com::Ref<IRows> wrap(com::Ref<IRows> rows, const QString&) override { return rows; }
    com::Ref<IStatement> wrap(com::Ref<IStatement> statement, const QString&) override {
        return com::Ref<IStatement>::adopt(com::makeObject<HeldStatement>(std::move(statement), m_hold).release());
    }

    std::shared_ptr<StatementHold> m_hold;
};

}  // namespace

com::Ref<IConnection> holdConnection(com::Ref<IConnection> connection, std::shared_ptr<StatementHold> hold) {
    if (!connection) return connection;
    return com::Ref<IConnection>::adopt(
        com::makeObject<HeldConnection>(std::move(connection), std::move(hold)).release());
}

}  // namespace velcoran::host
