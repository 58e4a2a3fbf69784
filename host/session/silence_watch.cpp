#include "silence_watch.h"

#include "system/thread.h"

#include "db/forwarding.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

using Clock = std::chrono::steady_clock;

/// What such a failure says.
QString silenceWords(std::chrono::milliseconds limit) {
    return u"no answer for %1 seconds"_s.arg(QString::number(static_cast<double>(limit.count()) / 1000));
}

/// Cancels the calls whose time is over, again and again until they end: a cancel reaches only what runs.
class SilenceWatch {
public:
    SilenceWatch(com::Ref<IConnection> connection, std::chrono::milliseconds limit)
        : m_connection(std::move(connection)), m_limit(limit), m_thread(system::startThread([this] { watch(); })) {}
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

    /// Makes a call of a statement under the watch.
    /// @param silence  how long the statement has brought nothing so far; the call's time is added
    template <class Run>
    com::HResult during(Clock::duration& silence, Run run) {
        const Clock::time_point start = Clock::now();
        Call call{start + m_limit - silence};
        begin(call);
        const com::HResult result = run();
        end(call);
        silence += Clock::now() - start;
        // Whatever the driver made of the cancel: rows that end with it are no whole answer.
        if (!call.isOver || result == com::kOk) return result;
        return com::guarded([this] { throw base::Error(base::kStatementError, silenceWords(m_limit)); });
    }

private:
    struct Call {
        Clock::time_point due;
        bool isOver = false;
        Call* next = nullptr;
    };

    void begin(Call& call) {
        const std::scoped_lock lock(m_mutex);
        call.next = std::exchange(m_calls, &call);
        m_changed.notify_all();
    }
    void end(const Call& call) {
        const std::scoped_lock lock(m_mutex);
        Call** place = &m_calls;
        while (*place != &call) place = &(*place)->next;
        *place = call.next;
    }
    /// The lock is held during a cancel, so that it cannot reach the statement after the one that it is meant for.
    void watch() {
        constexpr auto kAgain = std::chrono::milliseconds(50);
        std::unique_lock lock(m_mutex);
        while (!m_isEnding) {
            Call* first = m_calls;
            for (Call* each = m_calls; each != nullptr; each = each->next)
                if (each->due < first->due) first = each;
            if (first == nullptr) {
                m_changed.wait(lock);
            } else if (Clock::now() < first->due) {
                m_changed.wait_until(lock, Clock::time_point(first->due));
            } else {
                first->isOver = true;
                m_connection->Cancel();
                first->due = Clock::now() + kAgain;
            }
        }
    }

    com::Ref<IConnection> m_connection;
    std::chrono::milliseconds m_limit;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    Call* m_calls = nullptr;  ///< the calls in progress, on the stacks of their threads
    bool m_isEnding = false;
    std::thread m_thread;  // last: it uses the others
};

class WatchedRows final : public db::ForwardingRows {
public:
    WatchedRows(com::Ref<IRows> inner, std::shared_ptr<SilenceWatch> watch, Clock::duration silence)
        : ForwardingRows(std::move(inner)), m_watch(std::move(watch)), m_silence(silence) {}

    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        const com::HResult result = m_watch->during(m_silence, [&] { return ForwardingRows::Fetch(maxRows, block); });
        if (com::succeeded(result)) m_silence = {};
        return result;
    }

private:
    std::shared_ptr<SilenceWatch> m_watch;
    Clock::duration m_silence;
};

class WatchedStatement final : public db::ForwardingStatement {
public:
    WatchedStatement(com::Ref<IStatement> inner, std::shared_ptr<SilenceWatch> watch)
        : ForwardingStatement(std::move(inner)), m_watch(std::move(watch)) {}

    com::HResult Run() override {
        m_silence = {};
        return m_watch->during(m_silence, [this] { return ForwardingStatement::Run(); });
    }
    com::HResult Fetch(std::uint32_t maxRows, const RowBlock** block) override {
        const com::HResult result =
            m_watch->during(m_silence, [&] { return ForwardingStatement::Fetch(maxRows, block); });
        if (com::succeeded(result)) m_silence = {};
        return result;
    }

private:
    std::shared_ptr<SilenceWatch> m_watch;
    Clock::duration m_silence{};
};

class WatchedConnection final : public db::ForwardingConnection {
public:
    WatchedConnection(const com::Ref<IConnection>& connection, std::shared_ptr<SilenceWatch> watch)
        : ForwardingConnection(connection), m_watch(std::move(watch)) {}

    com::HResult Execute(com::Bstr text, IRows** rows) override {
        return during([&] { return ForwardingConnection::Execute(text, rows); });
    }
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override {
        return during(
            [&] { return ForwardingConnection::OpenRowset(text, cursorLocation, cursorType, lockType, rows); });
    }
    com::HResult Prepare(com::Bstr text, IStatement** statement) override {
        return during([&] { return ForwardingConnection::Prepare(text, statement); });
    }

private:
    template <class Run>
    com::HResult during(Run run) {
        Clock::duration silence{};
        m_start = Clock::now();
        return m_watch->during(silence, run);
    }
    /// The rows go on waiting where the call that opened them left off.
    com::Ref<IRows> wrap(com::Ref<IRows> rows, const QString&) override {
        const Clock::duration silence = Clock::now() - m_start.load();
        return com::Ref<IRows>::adopt(com::makeObject<WatchedRows>(std::move(rows), m_watch, silence).release());
    }
    com::Ref<IStatement> wrap(com::Ref<IStatement> statement, const QString&) override {
        return com::Ref<IStatement>::adopt(com::makeObject<WatchedStatement>(std::move(statement), m_watch).release());
    }

    std::shared_ptr<SilenceWatch> m_watch;
    std::atomic<Clock::time_point> m_start{};
};

}  // namespace

com::Ref<IConnection> watchConnection(com::Ref<IConnection> connection, std::chrono::milliseconds limit) {
    if (!connection || limit.count() <= 0) return connection;
    auto watch = std::make_shared<SilenceWatch>(connection, limit);
    return com::Ref<IConnection>::adopt(com::makeObject<WatchedConnection>(connection, std::move(watch)).release());
}

std::chrono::milliseconds milliseconds(double seconds) {
    constexpr double kLongest = 1e8;
    return std::chrono::milliseconds(std::llround(std::min(seconds, kLongest) * 1000));
}

}  // namespace velcoran::host
