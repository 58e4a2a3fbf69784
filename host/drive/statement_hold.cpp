#include "statement_hold.h"

#include "db/forwarding.h"

#include <utility>

namespace velcoran::host {

void StatementHold::holdNext(std::chrono::milliseconds time) {
    const std::scoped_lock lock(m_mutex);
    m_next = time;
}

std::optional<std::chrono::milliseconds> StatementHold::take() {
    const std::scoped_lock lock(m_mutex);
    return std::exchange(m_next, std::nullopt);
}

void StatementHold::wait(std::chrono::milliseconds time, std::atomic<bool>& isCancelled) {
    std::unique_lock lock(m_mutex);
    const std::uint64_t before = m_cancels;
    if (!m_changed.wait_for(lock, time, [&] { return m_cancels != before || isCancelled; })) return;
    isCancelled = false;
    throw base::Cancelled();
}

void StatementHold::cancel() {
    const std::scoped_lock lock(m_mutex);
    ++m_cancels;
    m_changed.notify_all();
}

void StatementHold::wake() {
    const std::scoped_lock lock(m_mutex);
    m_changed.notify_all();
}

namespace {

class HeldStatement final : public db::ForwardingStatement {
public:
    HeldStatement(com::Ref<IStatement> statement, std::shared_ptr<StatementHold> hold, std::chrono::milliseconds time)
        : ForwardingStatement(std::move(statement)), m_hold(std::move(hold)), m_time(time) {}

    com::HResult Run() override {
        return com::guarded([this] {
            if (const auto time = std::exchange(m_time, std::nullopt)) m_hold->wait(*time, m_isCancelled);
            return ForwardingStatement::Run();
        });
    }
    com::HResult Cancel() override {
        m_isCancelled = true;
        m_hold->wake();
        return ForwardingStatement::Cancel();
    }

private:
    std::shared_ptr<StatementHold> m_hold;
    std::optional<std::chrono::milliseconds> m_time;
    std::atomic<bool> m_isCancelled = false;
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
        const auto time = m_hold->take();
        std::atomic<bool> isCancelled = false;  // but by the connection's own cancel
        if (via == db::Via::command)
            m_time = time;
        else if (time)
            m_hold->wait(*time, isCancelled);
    }
    com::Ref<IStatement> wrap(com::Ref<IStatement> statement, const QString&) override {
        const auto time = std::exchange(m_time, std::nullopt);
        if (!time) return statement;
        return com::Ref<IStatement>::adopt(
            com::makeObject<HeldStatement>(std::move(statement), m_hold, *time).release());
    }
    com::Ref<IRows> wrap(com::Ref<IRows> rows, const QString&) override { return rows; }

    std::optional<std::chrono::milliseconds> m_time;  ///< of the statement that is being prepared
    std::shared_ptr<StatementHold> m_hold;
};

}  // namespace

com::Ref<IConnection> holdConnection(com::Ref<IConnection> connection, std::shared_ptr<StatementHold> hold) {
    if (!connection) return connection;
    return com::Ref<IConnection>::adopt(
        com::makeObject<HeldConnection>(std::move(connection), std::move(hold)).release());
}

}  // namespace velcoran::host
