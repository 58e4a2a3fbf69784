#pragma once

#include <velcoran/connection.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

namespace velcoran::host {

/// Holds the next statement of a connection back for a while before it runs, as a slow server would. A cancel ends the
/// wait, and the statement with it. Any thread.
class StatementHold {
public:
    /// @param time  for the next statement that runs; in place of one that is still to come
    void holdNext(std::chrono::milliseconds time);
    /// To be called before a statement runs. @throws Cancelled when it was cancelled meanwhile
    void pass();
    void cancel();

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<std::chrono::milliseconds> m_next;
    bool m_isHolding = false;
    bool m_isCancelled = false;
};

/// A connection whose statements pass a hold. A prepared statement is held when it runs, not when it is prepared.
[[nodiscard]] com::Ref<IConnection> holdConnection(com::Ref<IConnection> connection,
                                                   std::shared_ptr<StatementHold> hold);

}  // namespace velcoran::host
