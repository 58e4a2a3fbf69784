#pragma once

#include "db/provider/cancel_token.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace velcoran::odbc {

using provider::CancelToken;
using SharedToken = std::shared_ptr<CancelToken>;

/// The thread that makes a connection's driver calls, one after the other, and the thread that cancels them.
///
/// A driver may hang - in a call on a dead network, in its cancel too - and nothing ends that from outside. So a caller
/// never waits for the driver itself but for the worker, and gives up a while after a cancel: the worker is abandoned
/// then. Its threads stay with the driver until that comes back, do the steps that free what the driver holds, and end.
/// All that they touch belongs to the steps and to them, nothing to the callers.
class Worker {
public:
    using Step = std::function<void()>;
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;

    /// What a caller of run meets when the worker was stopped or given up.
    struct Abandoned {};

    /// @param cancelCall  ends, from another thread, what a step waits for; may block as long as the driver does
    Worker(Step cancelCall, std::chrono::milliseconds cancelWait);
    /// Stops as stop does, when that was not done before.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Runs a step in its turn and waits for its end; what the step throws comes out here.
    /// @param step      owns what it uses, for it may outlive this call
    /// @param token     ends the wait: at once while the step waits for its turn, after the driver's cancel otherwise
    /// @param deadline  requests the token's cancel at that moment
    /// @throws Cancelled; Abandoned
    void run(const SharedToken& token, Step step, Deadline deadline = {});
    /// Runs a step in its turn without waiting for it. For steps that free something: they run in any case.
    void post(Step step) noexcept;
    void cancel(CancelToken& token) noexcept;
    /// Wishes to stop the step that runs and all that wait.
    void cancelAll() noexcept;
    /// Cancels everything, runs a last step and ends the threads, or leaves them behind when that takes too long.
    void stop(Step last) noexcept;

private:
    struct State;
    void endThreads(bool haveEnded) noexcept;

    std::shared_ptr<State> m_state;
    std::thread m_caller;
    std::thread m_canceller;
};

}  // namespace velcoran::odbc
