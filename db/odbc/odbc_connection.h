#pragma once

#include "connection.h"
#include "db/provider/connection_shell.h"
#include "link.h"
#include "worker.h"

#include <atomic>
#include <memory>

namespace velcoran::odbc {

/// A connection as its users see it: open, closed or lost, with the worker that makes its calls. Its statements keep
/// it. Any thread.
class OdbcConnection final : public provider::ConnectionShell {
public:
    /// Opens. @throws Error kProviderFailure, kAuthenticationFailed
    OdbcConnection(const QString& connectionText, const Waits& waits, DiagnosticSink sink);
    ~OdbcConnection() override;

    /// @throws Error kInvalidConnection when closed, kProviderFailure when lost
    void requireOpen() const;
    /// Runs a step in its turn and waits for it.
    /// @throws Error; Cancelled, and the token is clear again
    void perform(const SharedToken& token, Worker::Step step);
    /// For steps that free something.
    void post(Worker::Step step) noexcept { m_worker.post(std::move(step)); }
    void cancel(CancelToken& token) noexcept { m_worker.cancel(token); }
    void close() noexcept;

    [[nodiscard]] const std::shared_ptr<Link>& link() const { return m_link; }

protected:
    [[nodiscard]] bool isOpen() const override { return !m_isClosed && !m_link->isLost(); }
    [[nodiscard]] com::Ref<IStatement> prepare(const QString& text) override;
    [[nodiscard]] com::Ref<IStatement> run(const QString& text) override;
    /// Cancels the calls that run or wait, and the statement that is open between its calls.
    void stopAll() noexcept override;

private:
    std::shared_ptr<Link> m_link;
    Worker m_worker;
    std::atomic<bool> m_isClosed{false};
};

}  // namespace velcoran::odbc
