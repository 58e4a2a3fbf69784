#pragma once

#include "db/connection.h"
#include "db/worker.h"

#include <optional>

class QEventLoop;
class QWidget;

namespace velcoran::form {

/// Runs the window's statements, one at a time. To the caller every call is synchronous; on a connection that allows
/// it, the call runs on a worker, and a window that waits longer than a third of a second is painted again and can be
/// cancelled: Esc in it and closing it cancel the statement, all other input for it is dropped, and what the host's own
/// windows get waits until the statement has ended. A driver that does not answer a cancel is left to the keeper.
///
/// Any other connection is called on the window's thread. Its host may dispatch events in there, and then keeps its own
/// windows alive; the window's input is treated as above.
class CallRunner final : public db::ICallRunner {
public:
    explicit CallRunner(QWidget& window) : m_window(window) {}

    /// @throws what the call throws; Cancelled when the user stopped it, or closed the window while it ran, also when
    ///         the call came to its end by then; Cancelled without any call while another one runs, or once the window
    ///         is to close
    void run(const db::Connection& connection, std::function<void()> call) override;
    /// True while a statement of the window runs.
    [[nodiscard]] bool isRunning() const { return m_isRunning; }
    /// The window is to close as soon as nothing of it runs: cancels the running statement and lets no other one begin.
    void requestClose() { m_isClosing = true; }
    [[nodiscard]] bool isClosing() const { return m_isClosing; }
    /// True once after a close was requested.
    [[nodiscard]] bool takeClosing();

private:
    class LoopEnd;
    class InputFilter;

    void runHere(const db::Connection& connection, const std::function<void()>& call);
    void runOnWorker(const db::Connection& connection, const std::function<void()>& call);
    static std::optional<db::Worker> start(const db::Connection& connection, const std::function<void()>& call,
                                           std::function<void()> over);
    void waitDispatching(const db::Connection& connection, const db::Worker& worker, QEventLoop& loop);
    [[nodiscard]] bool isUnwanted() const { return m_isStopped || m_isClosing; }

    QWidget& m_window;
    bool m_isRunning = false;
    bool m_isClosing = false;
    bool m_isStopped = false;
};

}  // namespace velcoran::form
