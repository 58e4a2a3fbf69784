#include "db/sqlite/database.h"
#include "form_fixture.h"
#include "viewer/report_viewer.h"
#include "watched_connection.h"

#include <QLabel>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace velcoran::tests {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What goes wrong with a call.
enum class Fault { none, delay, stall, fail, lose };

/// Counts the calls; at one of them the fault happens, so also "after every block": a delay goes on, a stall ends with
/// a cancel, a failure is that call's alone, a lost connection stays lost.
class FaultyConnection final : public WatchedConnection {
public:
    FaultyConnection(com::Ref<IConnection> real, int faultAt, Fault fault)
        : WatchedConnection(std::move(real)), m_faultAt(faultAt), m_fault(fault) {}

    [[nodiscard]] int calls() const { return m_calls; }
    [[nodiscard]] bool isStalled() const { return m_isStalled; }

    com::HResult Cancel() override {
        {
            const std::scoped_lock lock(m_mutex);
            m_isCancelled = true;
        }
        m_changed.notify_all();
        return WatchedConnection::Cancel();
    }
    void beginCall(const char*) override {
        const bool isHere = m_calls++ == m_faultAt;
        if (isHere && m_fault == Fault::delay) std::this_thread::sleep_for(450ms);  // longer than the silent wait
        if (isHere && m_fault == Fault::stall) stall();
        if (isHere && m_fault == Fault::lose) m_isLost = true;
        if (m_isLost) throw base::Error(base::kProviderFailure, u"Communication link failure"_s);
        if (isHere && m_fault == Fault::fail) throw base::Error(base::kStatementError, u"Deadlock victim"_s);
    }

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IFreeThreadedConnection::kId; }

private:
    void stall() {
        std::unique_lock lock(m_mutex);
        m_isStalled = true;
        m_changed.wait(lock, [this] { return m_isCancelled; });
        m_isStalled = false;
        throw base::Cancelled();
    }

    int m_faultAt;
    Fault m_fault;
    std::atomic<int> m_calls{0};
    std::atomic<bool> m_isLost{false};
    std::atomic<bool> m_isStalled{false};
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isCancelled = false;
};

/// A user's session with a connection that goes wrong at one call: opens, looks a group up and picks it, reports. What
/// the user is told is kept; a stall is answered by closing the window.
class FaultySession {
public:
    FaultySession(com::Ref<IConnection> real, int faultAt, Fault fault)
        : m_connection(com::makeObject<FaultyConnection>(std::move(real), faultAt, fault)) {
        // A user who sees nothing move closes the window.
        QObject::connect(&m_impatience, &QTimer::timeout, &m_window, [this] {
            if (m_connection->isStalled()) m_window.close();
        });
        m_impatience.start(20);
    }

    void play() {
        try {
            m_window.setPriza(db::Connection(com::Ref<IConnection>(m_connection.get())));
            m_window.Incarca(u"Import"_s, QDate(2026, 5, 31), {});
        } catch (const base::Error& error) {
            told.append(QString::number(error.number()) + error.description());
        } catch (const base::Cancelled&) {
            told.append(u"cancelled"_s);
        }
        QCoreApplication::processEvents();
        if (told.isEmpty() && m_window.isLoaded()) lookUp();
        if (m_window.isLoaded()) report();
        for (const ShownMessage& message : std::as_const(m_surroundings.messages)) told.append(message.text);
    }
    /// Whether the window closes at once and leaves nothing behind.
    [[nodiscard]] bool closes() {
        m_window.close();
        QCoreApplication::processEvents();
        return !m_window.isLoaded() && !m_window.isVisible() && QGuiApplication::overrideCursor() == nullptr &&
               !m_window.property("priza").toBool();
    }
    [[nodiscard]] int calls() const { return m_connection->calls(); }
    [[nodiscard]] bool hasReport() const { return m_hasReport; }

    QStringList told;

private:
    QWidget* control(QLatin1StringView name) { return m_window.findChild<QWidget*>(name); }
    void lookUp() {
        control("txtGrupaProdus"_L1)->setFocus();
        QTest::keyClick(control("txtGrupaProdus"_L1), Qt::Key_Return);
        if (!m_window.isLoaded() || control("fraGrid"_L1)->isHidden()) return;
        QTest::keyClick(control("Grid"_L1), Qt::Key_Escape);
    }
    void report() {
        auto* viewer = m_window.findChild<viewer::ReportViewer*>(u"CRW"_s);
        QTest::mouseClick(control("Raport"_L1), Qt::LeftButton);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !m_window.isLoaded() || !viewer->isBusy(); }, 10000));
        if (!m_window.isLoaded()) return;
        m_hasReport = viewer->hasReport();
        // The viewer says in its pane what went wrong while rows came.
        for (const QLabel* label : viewer->findChildren<QLabel*>())
            if (label->isVisibleTo(&m_window) && label->text().contains(u": "_s)) told.append(label->text());
    }

    RecordingSurroundings m_surroundings;
    com::Ref<FaultyConnection> m_connection;
    form::RptStoc m_window{m_surroundings};
    QTimer m_impatience;
    bool m_hasReport = false;
};

TEST(Faults, areToldAndTheWindowClosesWhereverTheyHappen) {
    const QString path = QStringLiteral(VELCORAN_TEST_DATABASE);
    const com::Ref<IConnection> real = sqlite::openDatabase(path);
    FaultySession healthy(real, -1, Fault::none);
    healthy.play();
    ASSERT_TRUE(healthy.hasReport());
    ASSERT_TRUE(healthy.told.isEmpty()) << qPrintable(healthy.told.join(u'|'));
    ASSERT_TRUE(healthy.closes());
    ASSERT_GE(healthy.calls(), 12);

    for (const Fault fault : {Fault::delay, Fault::stall, Fault::fail, Fault::lose}) {
        for (int at = 0; at < healthy.calls(); ++at) {
            SCOPED_TRACE("fault " + std::to_string(static_cast<int>(fault)) + " at call " + std::to_string(at));
            FaultySession session(real, at, fault);
            session.play();
            const QString told = session.told.join(u'|');
            if (fault == Fault::delay) {
                EXPECT_TRUE(session.hasReport() && told.isEmpty()) << qPrintable(told);
            } else if (fault != Fault::stall) {
                const QString words = fault == Fault::fail ? u"-2147217900"_s : u"-2147467259"_s;
                EXPECT_TRUE(told.contains(words) || told.contains(u"Nu s-au gasit Inregistrari !!"_s))
                    << qPrintable(told);
            }
            EXPECT_TRUE(session.closes());
        }
    }
    FaultySession after(real, -1, Fault::none);
    after.play();
    EXPECT_TRUE(after.hasReport()) << "the host's connection is no longer usable";
}

}  // namespace velcoran::tests
