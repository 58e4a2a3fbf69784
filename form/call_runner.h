#pragma once

#include "db/connection.h"
#include "db/worker.h"

#include <optional>

class QEventLoop;
class QWidget;

namespace velcoran::form {

/// Runs the window's statements. To the caller every call is synchronous; on a connection that allows it, the call runs
/// on a worker, and a window that waits longer than a third of a second is painted again and can be cancelled: Esc in
/// it and closing it cancel the statement, all other input for it is dropped, and what the host's own windows get waits
/// until the statement has ended. A driver that does not answer a cancel is left to the keeper.
class CallRunner final : public db::ICallRunner {
public:
    explicit CallRunner(QWidget& window) : m_window(window) {}

    /// @throws what the call throws; Cancelled when the user stopped it, or closed the window while it ran
    void run(const db::Connection& connection, std::function<void()> call) override;
    /// True while a statement of the window runs.
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// Cancels the running statement because the window is to close. Nothing happens when none runs.
    void cancelForClose() { m_isClosing = m_isRunning; }
    /// True once after a statement ended that was cancelled for closing.
    [[nodiscard]] bool takeClosing();

private:
    class LoopEnd;
    class InputFilter;

    static std::optional<db::Worker> start(const std::function<void()>& call, std::function<void()> over);
    void waitDispatching(const db::Connection& connection, const db::Worker& worker, QEventLoop& loop);

    QWidget& m_window;
    bool m_isRunning = false;
    bool m_isClosing = false;
    bool m_isStopped = false;
};

}  // namespace velcoran::form
