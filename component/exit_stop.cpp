#include "exit_stop.h"

#include "component.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <semaphore>
#include <thread>

#include <unistd.h>

namespace velcoran::component {

namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 500ms;
/// Longer than a process takes to end, and short enough for one whose end waits for something that the thread holds.
constexpr auto kStop = 5s;
/// After the first picture of a window.
constexpr auto kSettled = 300ms;
/// Each costs the C library an entry; later calls make no more globals.
constexpr int kMaxRenewals = 16;

extern "C" void stopWindowThread() { component().window.stopAtExit(); }

}  // namespace

void ExitStop::watch(QCoreApplication* application) {
    const std::scoped_lock lock(m_mutex);
    m_application = application;
    m_process = ::getpid();
    m_renewals = 0;
}

void ExitStop::renew() noexcept {
    if (m_application == nullptr || m_renewals == kMaxRenewals) return;
    if (std::atexit(stopWindowThread) != 0) return;  // no memory: the next call tries again
    ++m_renewals;
    QTimer::singleShot(kSettled, m_application, [] { (void)std::atexit(stopWindowThread); });
}

void ExitStop::leave() {
    const std::scoped_lock lock(m_mutex);
    m_application = nullptr;
}

void ExitStop::stopThread() {
    if (m_process != ::getpid()) return;  // a copy of the process has this thread alone
    const auto stopped = std::make_shared<std::binary_semaphore>(0);
    {
        const std::scoped_lock lock(m_mutex);
        if (m_application == nullptr || m_application->thread()->isFinished()) return;
        if (m_application->thread() == QThread::currentThread()) return;
        QMetaObject::invokeMethod(
            m_application,
            [stopped] {
                stopped->release();
                std::this_thread::sleep_for(kStop);
            },
            Qt::QueuedConnection);
        m_application = nullptr;  // once is enough
    }
    (void)stopped->try_acquire_for(kPatience);
}

}  // namespace velcoran::component
