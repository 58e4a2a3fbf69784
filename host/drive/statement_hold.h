#pragma once

#include <velcoran/connection.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace velcoran::host {

/// Holds the next statement of a connection back for a while before it runs, as a slow server would. A cancel ends the
/// wait, and the statement with it. Any thread.
class StatementHold {
public:
    /// @param time  for the next statement that reaches the connection; in place of one that is still to come
    void holdNext(std::chrono::milliseconds time);
    /// Takes the time for a statement that has reached the connection; nothing for no wait.
    [[nodiscard]] std::optional<std::chrono::milliseconds> take();
    /// Waits so long on the calling thread.
    /// @param isCancelled  a wish to stop this statement alone, from before or from now; taken by a stop
    /// @throws Cancelled when the wait was cancelled
    void wait(std::chrono::milliseconds time, std::atomic<bool>& isCancelled);
    /// Ends what waits.
    void cancel();
    /// Has what waits look at its own wish to stop.
    void wake();

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<std::chrono::milliseconds> m_next;
    std::uint64_t m_cancels = 0;
};

/// A connection whose statements are held back. A prepared statement takes its time when it is prepared and waits when
/// it first runs.
[[nodiscard]] com::Ref<IConnection> holdConnection(com::Ref<IConnection> connection,
                                                   std::shared_ptr<StatementHold> hold);

}  // namespace velcoran::host
