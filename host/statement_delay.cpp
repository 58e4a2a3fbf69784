#include "host/statement_delay.h"

#include "host/decorated.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace velcoran::host {

namespace {

/// In seconds, about three years: a clock counts so far.
constexpr double kLongest = 1e8;

/// What waits on one connection now, for its cancel.
class Waiting {
public:
    /// @return false when the wait was cancelled
    bool wait(const std::shared_ptr<Hold>& hold) {
        {
            const std::lock_guard lock(m_mutex);
            m_holds.push_back(hold);
        }
        const bool isOver = hold->wait();
        const std::lock_guard lock(m_mutex);
        std::erase(m_holds, hold);
        return isOver;
    }
    void cancel() {
        const std::lock_guard lock(m_mutex);
        for (const auto& hold : m_holds) hold->cancel();
    }

private:
    std::mutex m_mutex;
    std::vector<std::shared_ptr<Hold>> m_holds;
};

class DelayedStatement final : public Decorated<IStatement> {
public:
    DelayedStatement(com::Ref<IStatement> inner, std::shared_ptr<Hold> hold, std::shared_ptr<Waiting> waiting)
        : Decorated(std::move(inner)), m_hold(std::move(hold)), m_waiting(std::move(waiting)) {}

    com::HResult Columns(const ColumnDescription** columns, std::uint32_t* count) override {
        startCall();
        return inner()->Columns(columns, count);
    }
    com::HResult Run() override {
        startCall();
        if (!std::exchange(m_hasRun, true) && !m_waiting->wait(m_hold)) return fail(base::Cancelled());
        return inner()->Run();
    }
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        startCall();
        return inner()->Fetch(maxRows, block);
    }
    com::HResult Cancel() override {
        m_hold->cancel();
        return inner()->Cancel();
    }

private:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IRows::kId; }

    std::shared_ptr<Hold> m_hold;
    std::shared_ptr<Waiting> m_waiting;
    bool m_hasRun = false;
};

class DelayingConnection final : public Decorated<IConnection> {
public:
    DelayingConnection(com::Ref<IConnection> inner_, std::shared_ptr<DelayScript> script)
        : Decorated(std::move(inner_)),
          m_script(std::move(script)),
          m_isFreeThreaded(inner().as<IFreeThreadedConnection>()) {}

    std::int32_t State() override { return inner()->State(); }
    com::HResult Execute(com::Bstr text, IRows** rows) override {
        return held([&] { return inner()->Execute(text, rows); });
    }
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override {
        return held([&] { return inner()->OpenRowset(text, cursorLocation, cursorType, lockType, rows); });
    }
    com::HResult Prepare(com::Bstr text, IStatement** statement) override {
        startCall();
        const std::shared_ptr<Hold> hold = m_script->take();
        com::Ref<IStatement> prepared;
        const com::HResult result = inner()->Prepare(text, statement == nullptr ? nullptr : prepared.receive());
        if (com::failed(result)) return result;
        if (hold) prepared = com::makeObject<DelayedStatement>(std::move(prepared), hold, m_waiting).as<IStatement>();
        *statement = prepared.release();
        return result;
    }
    com::HResult Cancel() override {
        m_waiting->cancel();
        return inner()->Cancel();
    }

private:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override {
        return m_isFreeThreaded && id == IFreeThreadedConnection::kId;
    }
    template <class Call>
    com::HResult held(Call call) {
        startCall();
        const std::shared_ptr<Hold> hold = m_script->take();
        if (hold && !m_waiting->wait(hold)) return fail(base::Cancelled());
        return call();
    }

    std::shared_ptr<DelayScript> m_script;
    std::shared_ptr<Waiting> m_waiting = std::make_shared<Waiting>();
    bool m_isFreeThreaded;
};

}  // namespace

bool Hold::wait() {
    std::unique_lock lock(m_mutex);
    return !m_cancelled.wait_for(lock, m_time, [this] { return m_isCancelled; });
}

void Hold::cancel() {
    {
        const std::lock_guard lock(m_mutex);
        m_isCancelled = true;
    }
    m_cancelled.notify_all();
}

void DelayScript::delayNext(double seconds) {
    const std::lock_guard lock(m_mutex);
    m_time.reset();
    if (seconds > 0) m_time = std::chrono::duration<double>(std::min(seconds, kLongest));
}

std::shared_ptr<Hold> DelayScript::take() {
    const std::lock_guard lock(m_mutex);
    const auto time = std::exchange(m_time, std::nullopt);
    return time ? std::make_shared<Hold>(*time) : nullptr;
}

com::Ref<IConnection> delayConnection(com::Ref<IConnection> connection, std::shared_ptr<DelayScript> script) {
    if (!connection) return connection;
    return com::Ref<IConnection>::adopt(
        com::makeObject<DelayingConnection>(std::move(connection), std::move(script)).release());
}

}  // namespace velcoran::host
