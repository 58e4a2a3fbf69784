#include "form/call_runner.h"

#include "form/hourglass.h"

#include "db/keeper.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <chrono>
#include <memory>
#include <mutex>
#include <system_error>
#include <utility>
#include <vector>

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

/// Ends a loop from another thread, as long as there is one.
class CallRunner::LoopEnd {
public:
    explicit LoopEnd(QEventLoop& loop) : m_loop(&loop) {}

    void operator()() {
        const std::scoped_lock lock(m_mutex);
        if (m_loop != nullptr) QMetaObject::invokeMethod(m_loop, &QEventLoop::quit, Qt::QueuedConnection);
    }
    void forget() {
        const std::scoped_lock lock(m_mutex);
        m_loop = nullptr;
    }

private:
    std::mutex m_mutex;
    QEventLoop* m_loop;
};

/// Drops the input of the window and notes Esc in it and its closing. What the host's own windows get, and a quit, is
/// kept and delivered when the statement has ended: run inside our call it would come back into the host.
class CallRunner::InputFilter final : public QObject {
public:
    InputFilter(QWidget& window, bool& isStopped, bool& isClosing)
        : m_window(window), m_isStopped(isStopped), m_isClosing(isClosing) {
        QCoreApplication::instance()->installEventFilter(this);
    }
    ~InputFilter() override {
        QCoreApplication::instance()->removeEventFilter(this);
        for (Kept& kept : m_kept)
            if (kept.receiver) QCoreApplication::postEvent(kept.receiver, kept.event.release());
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        const bool isQuit = event->type() == QEvent::Quit && object == QCoreApplication::instance();
        if (!isQuit && !isInput(event->type())) return false;
        if (isInWindow(object))
            note(*event);
        else
            keep(object, *event);
        if (event->type() == QEvent::Close) event->ignore();
        return true;
    }

private:
    struct Kept {
        QPointer<QObject> receiver;
        std::unique_ptr<QEvent> event;
    };

    [[nodiscard]] bool isInWindow(QObject* object) const {
        if (object->isWindowType()) return object == m_window.windowHandle();
        return object->isWidgetType() && static_cast<QWidget*>(object)->window() == &m_window;
    }
    void note(const QEvent& event) {
        if (event.type() == QEvent::Close) m_isClosing = true;
        if (event.type() != QEvent::KeyPress) return;
        const auto& key = static_cast<const QKeyEvent&>(event);
        if (key.key() == Qt::Key_Escape && !key.isAutoRepeat()) m_isStopped = true;
    }
    void keep(QObject* object, const QEvent& event) {
        constexpr std::size_t kMost = 10000;
        if (m_kept.size() < kMost) m_kept.push_back({object, std::unique_ptr<QEvent>(event.clone())});
    }

    QWidget& m_window;
    bool& m_isStopped;
    bool& m_isClosing;
    std::vector<Kept> m_kept;
};

void CallRunner::run(const db::Connection& connection, std::function<void()> call) {
    if (m_isRunning || !connection.isFreeThreaded()) return call();
    m_isRunning = true;
    m_isClosing = false;
    m_isStopped = false;
    struct Ended {
        bool& isRunning;
        ~Ended() { isRunning = false; }
    } const ended{m_isRunning};
    const db::Connection used = connection;  // the window may get another one meanwhile
    QEventLoop loop;
    const auto loopEnd = std::make_shared<LoopEnd>(loop);
    std::optional<db::Worker> worker = start(call, [loopEnd] { (*loopEnd)(); });
    if (!worker) return call();
    if (!worker->waitFor(kQuietTime)) waitDispatching(used, *worker, loop);
    loopEnd->forget();
    if (!worker->isDone()) {
        db::keeper().keep(std::move(*worker), used.interface());
        throw base::Cancelled();
    }
    if (m_isClosing) throw base::Cancelled();
    try {
        worker->rethrow();
    } catch (...) {
        if (m_isStopped) throw base::Cancelled();  // whatever the provider calls it
        throw;
    }
}

/// @return nothing where the system has no thread to give: the call is made on the calling one then
std::optional<db::Worker> CallRunner::start(const std::function<void()>& call, std::function<void()> over) {
    try {
        return std::make_optional<db::Worker>(call, std::move(over));
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

void CallRunner::waitDispatching(const db::Connection& connection, const db::Worker& worker, QEventLoop& loop) {
    Hourglass hourglass;
    hourglass.set();
    const InputFilter filter(m_window, m_isStopped, m_isClosing);
    QElapsedTimer sinceStop;
    QTimer canceller;
    QObject::connect(&canceller, &QTimer::timeout, [&] {
        if (!m_isStopped && !m_isClosing) return;
        if (!sinceStop.isValid()) sinceStop.start();
        connection.cancel();
        if (sinceStop.hasExpired(db::kCancelPatience.count())) loop.quit();
    });
    canceller.start(kCancelInterval);
    loop.exec();
    if (sinceStop.isValid()) return;
    // A loop that ends early belongs to an application that quits: the call is stopped.
    for (auto waited = 0ms; waited < db::kCancelPatience && !worker.waitFor(kCancelInterval);
         waited += kCancelInterval) {
        m_isStopped = true;
        connection.cancel();
    }
}

bool CallRunner::takeClosing() { return std::exchange(m_isClosing, false); }

}  // namespace velcoran::form
