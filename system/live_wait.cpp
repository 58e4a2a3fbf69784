#include "live_wait.h"

#include "input_shield.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <memory>
#include <mutex>
#include <system_error>

namespace velcoran::system {

namespace {

using namespace std::chrono_literals;

constexpr auto kCancelInterval = 50ms;

/// Ends a loop from another thread, as long as there is one.
class LoopEnd {
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

/// One wait for one worker.
class LiveWait {
public:
    LiveWait(IWaiting& waiting, const LiveCall& live)
        : m_waiting(waiting), m_live(live), m_loopEnd(std::make_shared<LoopEnd>(m_loop)) {}
    ~LiveWait() { m_loopEnd->forget(); }
    LiveWait(const LiveWait&) = delete;
    LiveWait& operator=(const LiveWait&) = delete;

    [[nodiscard]] std::optional<Worker> start() const {
        try {
            return std::make_optional<Worker>(m_live.call, [loopEnd = m_loopEnd] { (*loopEnd)(); });
        } catch (const std::system_error&) {
            return std::nullopt;
        }
    }
    void wait(const Worker& worker) {
        if (worker.waitFor(m_live.quietTime)) return;
        dispatch(worker);
        // A loop that ends early belongs to an application that quits: the call is stopped.
        if (!isOver(worker)) m_waiting.stop();
        for (; !isOver(worker); static_cast<void>(worker.waitFor(kCancelInterval))) askToEnd();
    }

private:
    void dispatch(const Worker& worker) {
        const InputShield shield(m_waiting, InputShield::Others::kept);
        if (m_live.dispatching) m_live.dispatching();
        QTimer beat;
        QObject::connect(&beat, &QTimer::timeout, [this, &worker] {
            if (m_waiting.isUnwanted()) askToEnd();
            if (isOver(worker)) m_loop.quit();
        });
        beat.start(kCancelInterval);
        m_loop.exec();
    }
    void askToEnd() {
        if (!m_sinceStop.isValid()) m_sinceStop.start();
        m_waiting.cancel();
    }
    [[nodiscard]] bool isOver(const Worker& worker) const {
        const bool isLate =
            m_live.patience && m_sinceStop.isValid() && m_sinceStop.hasExpired(m_live.patience->count());
        return isLate || worker.isDone();
    }

    IWaiting& m_waiting;
    const LiveCall& m_live;
    QEventLoop m_loop;
    std::shared_ptr<LoopEnd> m_loopEnd;
    QElapsedTimer m_sinceStop;
};

}  // namespace

std::optional<Worker> runLive(IWaiting& waiting, const LiveCall& live) {
    LiveWait wait(waiting, live);
    std::optional<Worker> worker = wait.start();
    if (!worker) {
        const InputShield shield(waiting, InputShield::Others::passed);
        live.call();
        return std::nullopt;
    }
    wait.wait(*worker);
    if (!worker->isDone()) return worker;
    worker->rethrow();
    return std::nullopt;
}

}  // namespace velcoran::system
