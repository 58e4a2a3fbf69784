#pragma once

#include "db/connection.h"

class QEventLoop;
class QWidget;

namespace velcoran::form {

/// Runs the window's statements. To the caller every call is synchronous; on a connection that allows it, the call runs
/// on a worker, and a window that waits longer than a third of a second is painted again and can be cancelled: Esc in
/// it and closing it cancel the statement. All other input is dropped meanwhile.
class CallRunner final : public db::ICallRunner {
public:
    explicit CallRunner(QWidget& window) : m_window(window) {}

    /// @throws what the call throws; Cancelled when the window was to be closed while it ran
    void run(const db::Connection& connection, const std::function<void()>& call) override;
    /// True while a statement of the window runs.
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// Cancels the running statement because the window is to close. Nothing happens when none runs.
    void cancelForClose() { m_isClosing = m_isRunning; }
    /// True once after a statement ended that was cancelled for closing.
    [[nodiscard]] bool takeClosing();

private:
    class Worker;
    class InputFilter;

    void waitDispatching(const db::Connection& connection, Worker& worker, QEventLoop& loop);

    QWidget& m_window;
    bool m_isRunning = false;
    bool m_isClosing = false;
    bool m_isStopped = false;
};

}  // namespace velcoran::form
