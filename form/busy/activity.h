#pragma once

#include "system/waiting.h"

#include <functional>

class QWidget;

namespace velcoran::form {

/// What keeps the window from beginning anything else: a statement, an export, a print job, or a call into the host on
/// the window's own thread (its message object, its dialogs, the state of its connection). A host may dispatch events
/// inside its own calls, so all of them are treated alike: input for the window is dropped, a second call of the host
/// is refused, and a close follows when what runs has returned.
class Activity final : public system::IWaiting {
public:
    /// @param window  outlives this
    explicit Activity(QWidget& window) : m_window(window) {}
    Activity(const Activity&) = delete;
    Activity& operator=(const Activity&) = delete;

    [[nodiscard]] bool isRunning() const { return m_depth > 0; }
    [[nodiscard]] bool isClosing() const { return m_isClosing; }
    /// True once after a close was requested.
    [[nodiscard]] bool takeClosing();

    /// A call into the host on this thread. Lets its exception through.
    void callHost(const std::function<void()>& call);

    /// Something that the user may stop, while it lives.
    class Work {
    public:
        /// @param cancel  asks the work to end; throws nothing; outlived by what it touches
        /// @throws Cancelled while anything else runs, or once the window is to close
        Work(Activity& activity, std::function<void()> cancel);
        ~Work();
        Work(const Work&) = delete;
        Work& operator=(const Work&) = delete;

    private:
        Activity& m_activity;
    };

    [[nodiscard]] Part partOf(const QObject& receiver) const override;
    void stop() override;
    /// Cancels what runs and lets nothing else begin. A dialog of ours that is open goes at once, with its window.
    void close() override;
    [[nodiscard]] bool isUnwanted() const override { return m_isStopped || m_isClosing; }
    void cancel() noexcept override;

private:
    QWidget& m_window;
    std::function<void()> m_cancel;  ///< of the work; empty without one
    int m_depth = 0;
    int m_hostCalls = 0;
    bool m_isStopped = false;
    bool m_isClosing = false;
};

}  // namespace velcoran::form
