#include "form/call_runner.h"

#include "form/hourglass.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace velcoran::form {

namespace {

using namespace std::chrono_literals;

/// Almost every statement is done by then.
constexpr auto kQuietTime = 333ms;
/// A cancel reaches only what runs at that moment: it is repeated until the call returns.
constexpr auto kCancelInterval = 50ms;

bool isInput(QEvent::Type type) {
    switch (type) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::NonClientAreaMouseButtonPress:
        case QEvent::NonClientAreaMouseButtonRelease:
        case QEvent::NonClientAreaMouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TabletPress:
        case QEvent::TabletRelease:
        case QEvent::TabletMove:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
        case QEvent::NativeGesture:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
        case QEvent::Close:
            return true;
        default:
            return false;
    }
}

}  // namespace

/// The thread of one call. Joined by its destructor.
class CallRunner::Worker {
public:
    Worker(const std::function<void()>& call, QEventLoop& loop)
        : m_thread([this, &call, &loop] { work(call, loop); }) {}
    ~Worker() { m_thread.join(); }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// @return true when the call is done
    bool waitFor(std::chrono::milliseconds time) {
        std::unique_lock lock(m_mutex);
        return m_isOver.wait_for(lock, time, [this] { return m_isDone; });
    }
    void rethrow() const {
        if (m_failure) std::rethrow_exception(m_failure);
    }

private:
    void work(const std::function<void()>& call, QEventLoop& loop) noexcept {
        std::exception_ptr failure;
        try {
            call();
        } catch (...) {
            failure = std::current_exception();
        }
        {
            const std::scoped_lock lock(m_mutex);
            m_failure = failure;
            m_isDone = true;
        }
        m_isOver.notify_all();
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    }

    std::mutex m_mutex;
    std::condition_variable m_isOver;
    std::exception_ptr m_failure;
    bool m_isDone = false;
    std::thread m_thread;  // last: it uses the others
};

/// Drops all input of the application; notes Esc in the window and its closing.
class CallRunner::InputFilter final : public QObject {
public:
    InputFilter(QWidget& window, bool& isStopped, bool& isClosing)
        : m_window(window), m_isStopped(isStopped), m_isClosing(isClosing) {
        QCoreApplication::instance()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (!isInput(event->type())) return false;
        if (isInWindow(object)) note(*event);
        if (event->type() == QEvent::Close) event->ignore();
        return true;
    }

private:
    [[nodiscard]] bool isInWindow(QObject* object) const {
        if (object->isWindowType()) return object == m_window.windowHandle();
        return object->isWidgetType() && static_cast<QWidget*>(object)->window() == &m_window;
    }
    void note(const QEvent& event) {
        if (event.type() == QEvent::Close) m_isClosing = true;
        if (event.type() == QEvent::KeyPress && static_cast<const QKeyEvent&>(event).key() == Qt::Key_Escape)
            m_isStopped = true;
    }

    QWidget& m_window;
    bool& m_isStopped;
    bool& m_isClosing;
};

void CallRunner::run(const db::Connection& connection, const std::function<void()>& call) {
    if (m_isRunning || !connection.isFreeThreaded()) {
        call();
        return;
    }
    m_isRunning = true;
    m_isClosing = false;
    m_isStopped = false;
    struct Ended {
        bool& isRunning;
        ~Ended() { isRunning = false; }
    } const ended{m_isRunning};
    QEventLoop loop;
    Worker worker(call, loop);
    if (!worker.waitFor(kQuietTime)) waitDispatching(connection, worker, loop);
    if (m_isClosing) throw base::Cancelled();
    worker.rethrow();
}

void CallRunner::waitDispatching(const db::Connection& connection, Worker& worker, QEventLoop& loop) {
    Hourglass hourglass;
    hourglass.set();
    const InputFilter filter(m_window, m_isStopped, m_isClosing);
    QTimer canceller;
    QObject::connect(&canceller, &QTimer::timeout, [&] {
        if (m_isStopped || m_isClosing) connection.cancel();
    });
    canceller.start(kCancelInterval);
    loop.exec();
    // A loop that ends early belongs to an application that quits: the call is stopped.
    while (!worker.waitFor(kCancelInterval)) connection.cancel();
}

bool CallRunner::takeClosing() { return std::exchange(m_isClosing, false); }

}  // namespace velcoran::form
