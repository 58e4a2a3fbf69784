#include "form/call_runner.h"

#include "form/belongs_to.h"
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

bool isDrag(QEvent::Type type) { return type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop; }

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
    enum class HostInput { kept, passed };

    /// @param stop, close  called for Esc in the window and for its closing
    InputFilter(QWidget& window, HostInput hostInput, std::function<void()> stop, std::function<void()> close)
        : m_window(window), m_hostInput(hostInput), m_stop(std::move(stop)), m_close(std::move(close)) {
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
        if (!isQuit && belongsTo(*object, m_window)) {
            note(*object, *event);
            return true;
        }
        // Whether a key is a shortcut is asked now; the shortcut itself waits like any other input.
        if (m_hostInput == HostInput::passed || event->type() == QEvent::ShortcutOverride) return false;
        if (isDrag(event->type()))
            event->ignore();  // what is dragged lives only as long as its event
        else
            keep(*object, *event);
        if (event->type() == QEvent::Close) event->ignore();
        return true;
    }

private:
    struct Kept {
        QPointer<QObject> receiver;
        std::unique_ptr<QEvent> event;
    };

    void note(const QObject& object, QEvent& event) {
        if (event.type() == QEvent::ShortcutOverride) return event.accept();  // no key of ours is a host's shortcut
        if (event.type() == QEvent::Close) {
            event.ignore();
            if (&object == &m_window || &object == static_cast<QObject*>(m_window.windowHandle())) m_close();
        }
        if (event.type() != QEvent::KeyPress) return;
        const auto& key = static_cast<const QKeyEvent&>(event);
        if (key.key() == Qt::Key_Escape && !key.isAutoRepeat()) m_stop();
    }
    void keep(QObject& object, const QEvent& event) {
        constexpr std::size_t kMost = 10000;
        if (m_kept.size() < kMost) m_kept.push_back({&object, std::unique_ptr<QEvent>(event.clone())});
    }

    QWidget& m_window;
    HostInput m_hostInput;
    std::function<void()> m_stop;
    std::function<void()> m_close;
    std::vector<Kept> m_kept;
};

void CallRunner::run(const db::Connection& connection, std::function<void()> call) {
    // Input is dropped meanwhile; what comes another way, a screen reader's press on a button, ends here.
    if (m_isRunning || m_isClosing) throw base::Cancelled();
    m_isRunning = true;
    m_isStopped = false;
    struct Ended {
        bool& isRunning;
        ~Ended() { isRunning = false; }
    } const ended{m_isRunning};
    const db::Connection used = connection;  // the window may get another one meanwhile
    try {
        used.isFreeThreaded() ? runOnWorker(used, call) : runHere(used, call);
    } catch (...) {
        if (isUnwanted()) throw base::Cancelled();  // whatever the provider calls it
        throw;
    }
    if (isUnwanted()) throw base::Cancelled();
}

void CallRunner::runHere(const db::Connection& connection, const std::function<void()>& call) {
    const auto cancel = [&connection](bool& reason) {
        reason = true;
        connection.cancel();
    };
    const InputFilter filter(
        m_window, InputFilter::HostInput::passed, [&] { cancel(m_isStopped); }, [&] { cancel(m_isClosing); });
    call();
}

void CallRunner::runOnWorker(const db::Connection& connection, const std::function<void()>& call) {
    QEventLoop loop;
    const auto loopEnd = std::make_shared<LoopEnd>(loop);
    std::optional<db::Worker> worker = start(connection, call, [loopEnd] { (*loopEnd)(); });
    if (!worker) return runHere(connection, call);
    if (!worker->waitFor(kQuietTime)) waitDispatching(connection, *worker, loop);
    loopEnd->forget();
    if (worker->isDone()) return worker->rethrow();
    db::keeper().keep(std::move(*worker), connection.interface().get());
}

/// @return nothing where the system has no thread to give: the call is made on the calling one then
std::optional<db::Worker> CallRunner::start(const db::Connection& connection, const std::function<void()>& call,
                                            std::function<void()> over) {
    try {
        return std::make_optional<db::Worker>([connection, call] { call(); }, std::move(over));
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

void CallRunner::waitDispatching(const db::Connection& connection, const db::Worker& worker, QEventLoop& loop) {
    Hourglass hourglass;
    hourglass.set();
    const InputFilter filter(
        m_window, InputFilter::HostInput::kept, [this] { m_isStopped = true; }, [this] { m_isClosing = true; });
    QElapsedTimer sinceStop;
    QTimer canceller;
    QObject::connect(&canceller, &QTimer::timeout, [&] {
        if (worker.isDone()) return loop.quit();
        if (!isUnwanted()) return;
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
