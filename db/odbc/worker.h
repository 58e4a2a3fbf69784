#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace velcoran::odbc {

/// A wish to stop what one statement does; set from any thread, taken by the call that fails because of it.
class CancelToken {
public:
    void request() { m_isRequested.store(true); }
    [[nodiscard]] bool isRequested() const { return m_isRequested.load(); }
    void clear() { m_isRequested.store(false); }

private:
    std::atomic<bool> m_isRequested{false};
};
using SharedToken = std::shared_ptr<CancelToken>;

/// Lets a cancel reach the driver call that the worker is in, and no later one: the worker cannot leave the gate while
/// a cancel goes through it.
class CancelGate {
public:
    using Cancel = void (*)(void* target);

    /// @param cancel  ends, from another thread, a call on the target
    explicit CancelGate(Cancel cancel) : m_cancel(cancel) {}

    /// Makes a driver call on a target. @throws Cancelled when the wish is there before the call
    template <class Call>
    auto pass(const CancelToken& token, void* target, Call call) {
        enter(token, target);
        const auto result = call();
        leave();
        return result;
    }
    /// Cancels the call that is under way, when its token wishes it. May block as long as the driver does.
    void cancelCall();

private:
    void enter(const CancelToken& token, void* target);
    void leave();

    Cancel m_cancel;
    std::mutex m_mutex;
    void* m_target = nullptr;
    const CancelToken* m_token = nullptr;
};

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

    Worker(std::shared_ptr<CancelGate> gate, std::chrono::milliseconds cancelWait);
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
