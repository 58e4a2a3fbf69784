#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace velcoran::host {

/// Ends a run whose output nobody reads any more, or that a signal (SIGTERM, SIGINT, SIGHUP) asks to end: the running
/// statement is cancelled and every event loop of the application left. A run that has not ended two seconds later, in
/// a driver that does not answer, is ended with its process; so is one at a second signal, at once. Files that are half
/// written are removed then.
///
/// One at a time: it holds the process's handlers of these signals. One that is ignored when it comes (nohup) stays so.
class EndWatch {
public:
    static constexpr std::chrono::milliseconds kPatience{2000};

    /// @param output    descriptor of the output; -1 for none
    /// @param patience  how long a run may take to end; zero for one that cannot be asked
    /// @throws Error when the system has no thread or no pipe to give
    explicit EndWatch(int output = -1, std::chrono::milliseconds patience = kPatience);
    ~EndWatch();
    EndWatch(const EndWatch&) = delete;
    EndWatch& operator=(const EndWatch&) = delete;

    /// What cancels the running statement; called from another thread, more than once.
    void cancelBy(std::function<void()> cancel);
    /// What is left to do when the process is ended without its destructors; called from another thread.
    void cleanUpBy(std::function<void()> cleanUp);
    /// The exit status of a run that was ended: 1 for a closed output, 128 and the number of the signal; nothing
    /// before.
    [[nodiscard]] std::optional<int> status() const;

    /// Makes a run of the application. What it throws on its way to the end that it was asked for is no failure.
    /// @return the exit status of the run, or of its end
    template <class Run>
    [[nodiscard]] int follow(Run run) const {
        try {
            const int status = run();
            return m_status < 0 ? status : m_status.load();
        } catch (...) {
            if (m_status < 0) throw;
            return m_status;
        }
    }

private:
    void watch(int output) noexcept;
    void end(int status) noexcept;
    void cancel() noexcept;
    [[noreturn]] void leave(int status) noexcept;

    std::chrono::milliseconds m_patience;
    std::mutex m_mutex;
    std::function<void()> m_cancel;
    std::function<void()> m_cleanUp;
    std::atomic<int> m_status = -1;
    std::thread m_thread;  // last: it uses the others
};

}  // namespace velcoran::host
