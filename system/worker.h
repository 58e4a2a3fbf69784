#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace velcoran::system {

/// A call on a thread of its own. The call owns everything that it touches: a worker whose call does not come back may
/// be left to the keeper, and then outlives whoever started it.
class Worker {
public:
    /// @param call  its exception is kept for rethrow()
    /// @param over  called on the worker's thread when the call has ended; throws nothing; may be empty
    /// @throws std::system_error when the system gives no thread; nothing was called then
    explicit Worker(std::function<void()> call, std::function<void()> over = {});
    Worker(Worker&&) noexcept = default;
    Worker& operator=(Worker&&) = delete;
    /// Waits for the call's end.
    ~Worker();

    /// @return true when the call has ended
    [[nodiscard]] bool waitFor(std::chrono::milliseconds time) const;
    [[nodiscard]] bool isDone() const { return waitFor(std::chrono::milliseconds(0)); }
    /// What the call threw; to be called after its end.
    void rethrow() const;
    /// Lets the thread run on with nobody waiting: for a process that ends.
    void abandon() noexcept;

private:
    struct State {
        mutable std::mutex mutex;
        mutable std::condition_variable isOver;
        std::exception_ptr failure;
        bool isDone = false;
    };

    std::shared_ptr<State> m_state;
    std::thread m_thread;
};

}  // namespace velcoran::system
