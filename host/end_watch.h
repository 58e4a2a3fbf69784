#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace velcoran::host {

/// Ends a run whose output nobody reads any more, or that a signal (SIGTERM, SIGINT, SIGHUP) asks to end: the running
/// statement is cancelled and every event loop of the application left. A run that has not ended two seconds later, in
/// a driver that does not answer, is ended with its process.
///
/// One at a time: it holds the process's handlers of these signals, and SIGPIPE is ignored meanwhile.
class EndWatch {
public:
    /// @param output  descriptor of the output
    /// @throws Error when the system has no thread or no pipe to give
    explicit EndWatch(int output);
    ~EndWatch();
    EndWatch(const EndWatch&) = delete;
    EndWatch& operator=(const EndWatch&) = delete;

    /// What cancels the running statement; called from another thread, more than once.
    void cancelBy(std::function<void()> cancel);
    /// The exit status of a run that was ended: 1 for a closed output, 128 and the number of the signal; nothing
    /// before.
    [[nodiscard]] std::optional<int> status() const;

private:
    void watch(int output) noexcept;
    void end(int status) noexcept;
    void cancel() noexcept;

    std::mutex m_mutex;
    std::function<void()> m_cancel;
    std::atomic<int> m_status = -1;
    std::thread m_thread;  // last: it uses the others
};

}  // namespace velcoran::host
