#include "host/silence_watch.h"

#include "db/forwarding.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

using Clock = std::chrono::steady_clock;

/// Cancels the call in progress when its time is over, again and again until it ends: a cancel reaches only what runs.
class SilenceWatch {
public:
    SilenceWatch(com::Ref<IConnection> connection, std::chrono::milliseconds limit)
        : m_connection(std::move(connection)), m_limit(limit), m_thread([this] { watch(); }) {}
    ~SilenceWatch() {
        {
            const std::scoped_lock lock(m_mutex);
            m_isEnding = true;
        }
        m_changed.notify_all();
        m_thread.join();
    }
    SilenceWatch(const SilenceWatch&) = delete;
    SilenceWatch& operator=(const SilenceWatch&) = delete;

    /// Makes a call under the watch.
    template <class Call>
    com::HResult during(Call call) {
        begin();
        const com::HResult result = call();
        if (!end() || com::succeeded(result)) return result;
        com::setThreadError({base::kProviderFailure, words()});
        return com::kUnspecifiedFailure;
    }

private:
    [[nodiscard]] QString words() const {
        return u"no answer for %1 seconds"_s.arg(QString::number(static_cast<double>(m_limit.count()) / 1000));
    }
    void begin() {
        const std::scoped_lock lock(m_mutex);
        m_deadline = Clock::now() + m_limit;
        m_isOver = false;
        m_changed.notify_all();
    }
    /// @return true when the call's time was over
    bool end() {
        const std::scoped_lock lock(m_mutex);
        m_deadline.reset();
        return std::exchange(m_isOver, false);
    }
    void watch() {
        constexpr auto kAgain = std::chrono::milliseconds(50);
        std::unique_lock lock(m_mutex);
        while (!m_isEnding) {
            if (!m_deadline) {
                m_changed.wait(lock);
            } else if (Clock::now() < *m_deadline) {
                m_changed.wait_until(lock, Clock::time_point(*m_deadline));
            } else {
                m_isOver = true;
                lock.unlock();
                m_connection->Cancel();
                lock.lock();
                m_changed.wait_for(lock, kAgain);
            }
        }
    }

    com::Ref<IConnection> m_connection;
    std::chrono::milliseconds m_limit;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<Clock::time_point> m_deadline;
    bool m_isOver = false;
    bool m_isEnding = false;
    std::thread m_thread;  // last: it uses the others
};

class WatchedRows final : public db::ForwardingRows {
public:
    WatchedRows(com::Ref<IRows> inner, std::shared_ptr<SilenceWatch> watch)
        : ForwardingRows(std::move(inner)), m_watch(std::move(watch)) {}

    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        return m_watch->during([&] { return ForwardingRows::Fetch(maxRows, block); });
    }

private:
    std::shared_ptr<SilenceWatch> m_watch;
};

class WatchedStatement final : public db::ForwardingStatement {
public:
    WatchedStatement(com::Ref<IStatement> inner, std::shared_ptr<SilenceWatch> watch)
        : ForwardingStatement(std::move(inner)), m_watch(std::move(watch)) {}

    com::HResult Run() override {
        return m_watch->during([this] { return ForwardingStatement::Run(); });
    }
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        return m_watch->during([&] { return ForwardingStatement::Fetch(maxRows, block); });
    }

private:
    std::shared_ptr<SilenceWatch> m_watch;
};

class WatchedConnection final : public db::ForwardingConnection {
public:
    WatchedConnection(com::Ref<IConnection> connection, std::chrono::milliseconds limit)
        : ForwardingConnection(connection), m_watch(std::make_shared<SilenceWatch>(std::move(connection), limit)) {}

    com::HResult Execute(com::Bstr text, IRows** rows) override {
        return m_watch->during([&] { return ForwardingConnection::Execute(text, rows); });
    }
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override {
        return m_watch->during(
            [&] { return ForwardingConnection::OpenRowset(text, cursorLocation, cursorType, lockType, rows); });
    }
    com::HResult Prepare(com::Bstr text, IStatement** statement) override {
        return m_watch->during([&] { return ForwardingConnection::Prepare(text, statement); });
    }

private:
    com::Ref<IRows> wrap(com::Ref<IRows> rows, const QString&) override {
        return com::Ref<IRows>::adopt(com::makeObject<WatchedRows>(std::move(rows), m_watch).release());
    }
    com::Ref<IStatement> wrap(com::Ref<IStatement> statement, const QString&) override {
        return com::Ref<IStatement>::adopt(com::makeObject<WatchedStatement>(std::move(statement), m_watch).release());
    }

    std::shared_ptr<SilenceWatch> m_watch;
};

}  // namespace

com::Ref<IConnection> watchConnection(com::Ref<IConnection> connection, std::chrono::milliseconds limit) {
    if (!connection || limit.count() <= 0) return connection;
    return com::Ref<IConnection>::adopt(com::makeObject<WatchedConnection>(std::move(connection), limit).release());
}

}  // namespace velcoran::host
