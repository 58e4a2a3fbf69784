#include "window_thread.h"

#include "component.h"
#include "form/rpt_stoc.h"

#include "base/error.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QThread>
#include <QTimer>

#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::component {

namespace {

[[noreturn]] void refuse(const QString& words) {
    throw base::Error(base::kInvalidProcedureCall, words, u"Velcoran.clsVelcoran"_s);
}

/// A set-up that fails has shown its window all the same.
struct RenewedExitStop {
    explicit RenewedExitStop(OwnApplication& own) : application(own) { application.renewExitStop(); }
    ~RenewedExitStop() { application.renewExitStop(); }
    RenewedExitStop(const RenewedExitStop&) = delete;
    RenewedExitStop& operator=(const RenewedExitStop&) = delete;
    OwnApplication& application;
};

}  // namespace

WindowThread::WindowThread(const com::HostObjects& hostObjects)
    : m_surroundings(hostObjects, m_events), m_connections([mailbox = m_events.mailbox()](IConnection* connection) {
          HostEvents::queueReleased(*mailbox, connection);
      }) {}

void WindowThread::destroyWindow() { delete std::exchange(m_window, nullptr); }

/// The host's application object goes.
void WindowThread::dropWindow() {
    WindowThread& self = component().window;
    self.destroyWindow();
    self.m_events.tellNews();
    self.m_events.end();
}

bool WindowThread::release() {
    if (m_window == nullptr && !m_application.isOpen()) return true;
    if (isInUse() || !m_application.canClose() || QCoreApplication::instance()->thread() != QThread::currentThread())
        return false;
    if (m_application.isOpen() && OwnApplication::isShared()) return false;
    if (m_window != nullptr) {
        qRemovePostRoutine(&WindowThread::dropWindow);
        destroyWindow();
        OwnApplication::leave();
    }
    m_events.tellNews();
    if (m_window != nullptr) return false;  // the host has answered with a call
    m_events.end();
    m_surroundings.releaseLibraries();
    m_application.close();
    return true;
}

void WindowThread::provideApplication() {
    QCoreApplication* application = QCoreApplication::instance();
    if (application == nullptr) return m_application.open();
    if (qobject_cast<QApplication*>(application) == nullptr)
        refuse(u"Programul gazdă nu are ferestre: fereastra raportului nu se poate deschide."_s);
    if (application->thread() == QThread::currentThread()) return;
    if (!m_application.isOpen())
        refuse(
            u"Fereastra raportului se poate deschide numai pe firul de execuție al ferestrelor programului gazdă."_s);
    if (application->thread()->isFinished())
        refuse(
            u"Firul de execuție al ferestrei raportului s-a încheiat, iar Qt îngăduie un singur fir cu ferestre "
            "într-un proces: fereastra nu se mai poate deschide."_s);
    refuse(
        u"Fereastra raportului ține de alt fir de execuție, iar Qt îngăduie un singur fir cu ferestre într-un "
        "proces: fereastra se poate deschide numai pe acela."_s);
}

void WindowThread::provideWindow() {
    if (m_window != nullptr) return;
    m_window = new form::RptStoc(m_surroundings);
    OwnApplication::join();
    m_events.begin();
    qAddPostRoutine(&WindowThread::dropWindow);
}

void WindowThread::incarca(const QString& kind, const com::Ref<IConnection>& connection, QDate date,
                           const QString& prefix) {
    provideApplication();
    provideWindow();
    const RenewedExitStop renewed(m_application);
    m_window->setPriza(db::Connection(m_connections.watch(connection)));
    m_window->Incarca(kind, date, prefix);
}

bool WindowThread::isInUse() const { return m_events.isTelling() || (m_window != nullptr && m_window->isInUse()); }

void WindowThread::requireThread() {
    const QCoreApplication* application = QCoreApplication::instance();
    if (application != nullptr && application->thread() != QThread::currentThread())
        refuse(u"Fereastra raportului este pe alt fir de execuție."_s);
}

void WindowThread::advise(com::Ref<IWindowEvents> events) {
    requireThread();
    m_events.setListener(std::move(events));
}

bool WindowThread::close() {
    requireThread();
    if (m_window != nullptr && m_window->isLoaded()) m_window->CloseForm();
    return m_window == nullptr || !m_window->isLoaded();
}

bool WindowThread::dispatch(std::chrono::milliseconds wait) {
    constexpr std::chrono::minutes kLongest(1);
    requireThread();
    if (wait > kLongest) refuse(u"Așteptarea este prea lungă."_s);
    QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance();
    if (dispatcher == nullptr) return false;
    QCoreApplication::sendPostedEvents();
    if (!dispatcher->processEvents(QEventLoop::AllEvents) && wait.count() > 0) {
        QTimer end;
        end.setSingleShot(true);
        end.start(wait);
        dispatcher->processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);  // as an event loop does when it comes round
    return m_window != nullptr && m_window->isLoaded();
}

}  // namespace velcoran::component
