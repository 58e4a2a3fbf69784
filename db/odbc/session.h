#pragma once

#include "connection.h"
#include "link.h"
#include "worker.h"

#include <QString>

#include <atomic>
#include <memory>

namespace velcoran::odbc {

/// A connection as its users see it: open, closed or lost, with the worker that makes its calls. Lives as long as the
/// longest of the connection and its statements. Any thread.
class Session {
public:
    /// Opens. @throws Error kProviderFailure, kAuthenticationFailed
    Session(const QString& connectionText, const Waits& waits, DiagnosticSink sink);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] bool isOpen() const { return !m_isClosed && !m_link->isLost(); }
    /// @throws Error kInvalidConnection when closed, kProviderFailure when lost
    void requireOpen() const;

    /// Runs a step in its turn and waits for it.
    /// @throws Error; Cancelled, and the token is clear again
    void run(const SharedToken& token, Worker::Step step);
    /// For steps that free something.
    void post(Worker::Step step) noexcept { m_worker.post(std::move(step)); }
    void cancel(CancelToken& token) noexcept { m_worker.cancel(token); }
    /// Cancels the calls that run or wait, and the statement that is open between its calls.
    void cancelAll() noexcept;
    void close() noexcept;

    [[nodiscard]] const std::shared_ptr<Link>& link() const { return m_link; }

private:
    std::shared_ptr<Link> m_link;
    Worker m_worker;
    std::atomic<bool> m_isClosed{false};
};

}  // namespace velcoran::odbc
