#pragma once

#include <velcoran/connection.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

namespace velcoran::host {

/// The wait of one statement before it runs.
class Hold {
public:
    explicit Hold(std::chrono::duration<double> time) : m_time(time) {}

    /// Blocks the calling thread. @return false when the wait was cancelled, now or before
    [[nodiscard]] bool wait();
    /// Ends the wait. From any thread.
    void cancel();

private:
    std::chrono::duration<double> m_time;
    std::mutex m_mutex;
    std::condition_variable m_cancelled;
    bool m_isCancelled = false;
};

/// What a script delays: the next statement, once. Any thread.
class DelayScript {
public:
    /// Delays the next statement, in place of a delay that is still unused. @param seconds  0 for none
    void delayNext(double seconds);
    /// Takes the delay for a statement that has reached the connection; null for none.
    [[nodiscard]] std::shared_ptr<Hold> take();

private:
    std::mutex m_mutex;
    std::optional<std::chrono::duration<double>> m_time;
};

/// A connection that holds statements back before they run, on the thread that calls: at Execute and OpenRowset, and at
/// the first Run of a prepared statement, whose preparation does not wait. A cancel of the connection, of the statement
/// or of its rows ends the wait, and the statement fails as a stopped one.
[[nodiscard]] com::Ref<IConnection> delayConnection(com::Ref<IConnection> connection,
                                                    std::shared_ptr<DelayScript> script);

}  // namespace velcoran::host
