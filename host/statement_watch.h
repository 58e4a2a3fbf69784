#pragma once

#include <velcoran/connection.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace velcoran::host {

/// Watches the statements of connections: which run, which were cancelled, and which have brought no row and no end for
/// too long. Any thread.
class StatementWatch {
public:
    /// @param timeout  seconds without a row or an end after which a statement is cancelled; none for never
    explicit StatementWatch(std::optional<double> timeout);
    ~StatementWatch();
    StatementWatch(const StatementWatch&) = delete;
    StatementWatch& operator=(const StatementWatch&) = delete;

    /// True while the window waits for a statement: one that runs, is prepared or brings rows to it. A prepared one
    /// that runs is a report that loads, and nobody's wait.
    [[nodiscard]] bool isRunning() const { return m_running > 0; }
    /// How many cancels have reached the connection and its statements, the watch's own not counted.
    [[nodiscard]] int cancels() const { return m_cancels; }
    void noteCancel() { ++m_cancels; }
    [[nodiscard]] const std::optional<double>& timeout() const { return m_timeout; }
    /// True when a statement was cancelled because it brought nothing for too long.
    [[nodiscard]] bool hasTimedOut() const { return m_hasTimedOut; }

    using Clock = std::chrono::steady_clock;

    /// One call of a statement, from its construction to end().
    class Call {
    public:
        /// @param isWaitedFor  whether it counts as running
        /// @param silence      how long the statement has brought nothing in the calls before
        Call(StatementWatch& watch, IConnection& connection, bool isWaitedFor, Clock::duration silence);
        ~Call();
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;

        /// Ends the call; the watch cancels it no more. @return how long it took
        Clock::duration end();
        /// True when the watch cancelled it.
        [[nodiscard]] bool isTimedOut() const { return m_isTimedOut; }

    private:
        friend class StatementWatch;

        StatementWatch& m_watch;
        IConnection& m_connection;
        Clock::time_point m_start = Clock::now();
        Clock::time_point m_due;
        bool m_isWaitedFor;
        bool m_isTimedOut = false;
        bool m_isOver = false;
    };

private:
    void work() noexcept;

    std::optional<double> m_timeout;
    std::atomic<int> m_running = 0;
    std::atomic<int> m_cancels = 0;
    std::atomic<bool> m_hasTimedOut = false;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::multimap<Clock::time_point, Call*> m_calls;  ///< by the moment at which each is cancelled (again)
    bool m_isEnding = false;
    std::thread m_thread;  // last: it uses the others; none without a timeout
};

/// A connection whose statements are watched. One that times out is cancelled by the connection's Cancel and fails with
/// kStatementError, in words for the user of the window.
[[nodiscard]] com::Ref<IConnection> watchConnection(com::Ref<IConnection> connection,
                                                    std::shared_ptr<StatementWatch> watch);

}  // namespace velcoran::host
