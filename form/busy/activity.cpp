#include "activity.h"

#include "belongs_to.h"

#include "base/error.h"
#include "system/input_shield.h"

#include <QWidget>
#include <QWindow>

#include <utility>

namespace velcoran::form {

namespace {

/// Counts up while it lives.
class Counted {
public:
    explicit Counted(int& count) : m_count(count) { ++m_count; }
    ~Counted() { --m_count; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

private:
    int& m_count;
};

}  // namespace

bool Activity::takeClosing() { return std::exchange(m_isClosing, false); }

void Activity::callHost(const std::function<void()>& call) {
    const Counted running(m_depth);
    const Counted hostCall(m_hostCalls);
    const system::InputShield shield(*this, system::InputShield::Others::passed);
    call();
}

// Input is dropped meanwhile; what comes another way, a screen reader's press on a button, ends here.
Activity::Work::Work(Activity& activity, std::function<void()> cancel) : m_activity(activity) {
    if (activity.isRunning() || activity.m_isClosing) throw base::Cancelled();
    activity.m_isStopped = false;
    activity.m_cancel = std::move(cancel);
    ++activity.m_depth;
}

Activity::Work::~Work() {
    --m_activity.m_depth;
    m_activity.m_cancel = nullptr;
}

system::IWaiting::Part Activity::partOf(const QObject& receiver) const {
    if (&receiver == &m_window || &receiver == static_cast<QObject*>(m_window.windowHandle())) return Part::window;
    if (!belongsTo(receiver, m_window)) return Part::others;
    return isInDialog(receiver, m_window) ? Part::dialog : Part::inside;
}

void Activity::stop() {
    m_isStopped = true;
    cancel();
}

void Activity::close() {
    m_isClosing = true;
    cancel();
    if (m_hostCalls > 0) m_window.hide();
}

void Activity::cancel() noexcept {
    if (m_cancel) m_cancel();
}

}  // namespace velcoran::form
