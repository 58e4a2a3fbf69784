#include "db/keeper.h"
#include "form_fixture.h"

#include <QDropEvent>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QMimeData>
#include <QShortcut>
#include <QSignalSpy>
#include <QTimer>

#include <new>
#include <stdexcept>

namespace velcoran::tests {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// In milliseconds: far below the half minute that a dead driver of these tests takes.
constexpr qint64 kAtOnce = 5000;
const QString kLookup = u"FROM Agenti"_s;
const QString kReport = u"AS TipRaport"_s;
const QString kWarehouseTable = u"FROM Depozite"_s;

FakeAnswer oneInvoice() {
    FakeAnswer answer = reportColumns();
    answer.rows = {{u"Furnizor"_s, u"F1"_s, u"ALFA"_s, u"05/07/2003"_s, u"100"_s, u"10.00"_s, u"1.90"_s, u"11.90"_s,
                    u"EUR"_s, u"4.97"_s, u"0.00"_s}};
    return answer;
}

/// A C++ host whose Prepare lets an exception of any type out.
class ThrowingConnection final : public com::Object<IConnection> {
public:
    ThrowingConnection(com::Ref<IConnection> real, std::function<void()> thrower)
        : m_real(std::move(real)), m_thrower(std::move(thrower)) {}

    std::int32_t State() override { return m_real->State(); }
    com::HResult Execute(com::Bstr text, IRows** rows) override { return m_real->Execute(text, rows); }
    com::HResult OpenRowset(com::Bstr text, std::int32_t location, std::int32_t cursor, std::int32_t lock,
                            IRows** rows) override {
        if (com::toQString(text).contains(kLookup)) m_thrower();
        return m_real->OpenRowset(text, location, cursor, lock, rows);
    }
    com::HResult Prepare(com::Bstr, IStatement**) override {
        m_thrower();
        return com::kOk;
    }
    com::HResult Cancel() override { return m_real->Cancel(); }

private:
    com::Ref<IConnection> m_real;
    std::function<void()> m_thrower;
};

}  // namespace

class StopsTest : public FormTest {
protected:
    StopsTest() {
        connection->answer(kReport, oneInvoice());
        setUpFor(u"Import"_s);
        connection->clearCalls();
    }
    ~StopsTest() override {
        connection->answerAtLast();
        EXPECT_TRUE(waitFor([] { return db::keeper().isEmpty(); }));
    }

    viewer::ReportViewer* viewer() { return find<viewer::ReportViewer>("CRW"); }
    void run() { QTest::mouseClick(find<QWidget>("Raport"), Qt::LeftButton); }
    /// The report's statement takes so long before it brings a row.
    void slowReport(std::chrono::milliseconds time, bool isDeaf) {
        FakeAnswer slow = oneInvoice();
        slow.fetchDelay = time;
        slow.isDeaf = isDeaf;
        connection->answer(kReport, slow);
    }
    void slow(const QString& statement, std::chrono::milliseconds time, bool isDeaf) {
        connection->answer(statement, {.columns = {{u"Cod"_s}, {u"Denumire"_s}},
                                       .rows = {{u"1"_s, u"ALFA"_s}},
                                       .openDelay = time,
                                       .isDeaf = isDeaf});
    }
    void meanwhile(const QString& statement, std::function<void()> action) {
        connection->answer(
            statement,
            {.columns = {{u"Cod"_s}, {u"Denumire"_s}}, .rows = {{u"1"_s, u"ALFA"_s}}, .meanwhile = std::move(action)});
    }
    void lookUp() {
        giveFocus("txtCodAgent");
        press(Qt::Key_Return);
    }
    /// As the window system gives it: to the window, wherever the focus is.
    void pressInWindow(int key) { QTest::keyClick(window.windowHandle(), static_cast<Qt::Key>(key)); }
    bool waitUntilReading() {
        return waitFor([this] { return connection->isBusy(); });
    }
    void expectFiltersUsable() {
        for (const char* name : {"Raport", "cmdExit", "cmbVizual", "frmEnable", "Command1", "cmdViz"})
            EXPECT_FALSE(find<QWidget>(name)->testAttribute(Qt::WA_ForceDisabled)) << name;
        EXPECT_FALSE(isShown("fraMesaj"));
        expectDefaultPointer();
    }
    void expectDefaultPointer() {
        EXPECT_EQ(member("pointer"), u"default"_s);
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    }
    std::int32_t numberOf(const QString& kind) {
        const std::optional<base::Error> error = failureOf(kind);
        return error ? error->number() : 0;
    }
};

TEST_F(StopsTest, escStopsTheLoadWhereverTheFocusIs) {
    for (const bool isDeaf : {false, true}) {
        slowReport(30s, isDeaf);
        QSignalSpy finished(viewer(), &viewer::ReportViewer::downloadFinished);
        run();
        ASSERT_TRUE(waitUntilReading()) << isDeaf;
        EXPECT_EQ(focus(), QString()) << "nothing can be worked";
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(&window, &held);
        EXPECT_TRUE(viewer()->isBusy()) << "a key held down from before stops nothing";
        QElapsedTimer clock;
        clock.start();
        pressInWindow(Qt::Key_Escape);
        ASSERT_TRUE(waitFor([&] { return finished.count() == 1; })) << isDeaf;
        EXPECT_LT(clock.elapsed(), kAtOnce) << isDeaf;
        EXPECT_TRUE(window.isLoaded());
        expectFiltersUsable();
        EXPECT_FALSE(isShown("frmEnable"));
        EXPECT_EQ(focus(), u"CRW"_s);
        EXPECT_FALSE(viewer()->failure().isValid()) << "a stop is no failure";
        EXPECT_TRUE(surroundings.messages.isEmpty());
        QCoreApplication::sendEvent(QApplication::focusWidget(), &held);
        EXPECT_TRUE(window.isLoaded()) << "held down it does nothing more";
        QTest::mouseClick(find<QWidget>("cmdViz"), Qt::LeftButton);
    }
    connection->answerAtLast();
    ASSERT_TRUE(waitFor([] { return db::keeper().isEmpty(); }));
    connection->answer(kReport, oneInvoice());
    run();
    ASSERT_TRUE(waitFor([this] { return viewer()->hasReport(); })) << "the stop is not left for the next statement";
}

TEST_F(StopsTest, aDriverThatMissesACancelHearsTheNext) {
    FakeAnswer slow = oneInvoice();
    slow.fetchDelay = 30s;
    slow.cancelsNeeded = 3;
    connection->answer(kReport, slow);
    QSignalSpy finished(viewer(), &viewer::ReportViewer::downloadFinished);
    run();
    ASSERT_TRUE(waitUntilReading());
    pressInWindow(Qt::Key_Escape);
    ASSERT_TRUE(waitFor([&] { return finished.count() == 1; }));
    EXPECT_TRUE(db::keeper().isEmpty()) << "it came back by itself";
}

TEST_F(StopsTest, aHostsEscForAllItsWindowsLeavesTheStop) {
    QWidget hostWindow;
    int hostsEsc = 0;
    QShortcut shortcut(Qt::Key_Escape, &hostWindow);
    shortcut.setContext(Qt::ApplicationShortcut);
    QObject::connect(&shortcut, &QShortcut::activated, &hostWindow, [&] { ++hostsEsc; });
    hostWindow.show();
    window.activateWindow();
    slowReport(30s, false);
    QSignalSpy finished(viewer(), &viewer::ReportViewer::downloadFinished);
    run();
    ASSERT_TRUE(waitUntilReading());
    pressInWindow(Qt::Key_Escape);
    ASSERT_TRUE(waitFor([&] { return finished.count() == 1; }));
    EXPECT_EQ(hostsEsc, 0);
}

TEST_F(StopsTest, escInTheWaitStateOfAFailedRunDoesNothing) {
    FakeAnswer bad = oneInvoice();
    bad.openError = base::Error(base::kStatementError, u"bad"_s);
    connection->answer(kReport, bad);
    run();
    EXPECT_TRUE(isShown("fraMesaj"));
    pressInWindow(Qt::Key_Escape);
    EXPECT_TRUE(window.isLoaded());
    EXPECT_TRUE(isShown("fraMesaj"));
}

TEST_F(StopsTest, aStoppedPreparationLeavesTheWindowAsItWas) {
    for (const bool isDeaf : {false, true}) {
        FakeAnswer slow = oneInvoice();
        slow.openDelay = 30s;
        slow.isDeaf = isDeaf;
        connection->answer(kReport, slow);
        giveFocus("Raport");
        QTimer::singleShot(450ms, &window, [this] { pressInWindow(Qt::Key_Escape); });
        press(Qt::Key_Return);
        expectFiltersUsable();
        EXPECT_TRUE(isShown("frmEnable"));
        EXPECT_TRUE(surroundings.messages.isEmpty()) << isDeaf;
        EXPECT_EQ(focus(), u"Raport"_s);
        EXPECT_EQ(member("bRaportIncarcat"), u"false"_s);
    }
    connection->answerAtLast();
    ASSERT_TRUE(waitFor([] { return db::keeper().isEmpty(); }));
    connection->answer(kReport, oneInvoice());
    run();
    ASSERT_TRUE(waitFor([this] { return viewer()->hasReport(); })) << "the stop was for that run alone";
}

TEST_F(StopsTest, aStopCountsAlsoWhenTheStatementCameToItsEnd) {
    slow(kLookup, 750ms, true);
    QTimer::singleShot(450ms, &window, [this] { pressInWindow(Qt::Key_Escape); });
    lookUp();
    EXPECT_FALSE(isShown("fraGrid"));
    EXPECT_TRUE(surroundings.messages.isEmpty());
    EXPECT_TRUE(db::keeper().isEmpty());
}

TEST_F(StopsTest, aStoppedOrClosedSetUpIsAStopToTheHost) {
    const auto setUpWhile = [&](std::function<void()> action) {
        QTimer::singleShot(450ms, &window, std::move(action));
        try {
            setUpFor(u"Export"_s);
        } catch (const base::Cancelled&) {
            return true;
        }
        return false;
    };
    for (const bool isDeaf : {false, true}) {
        slow(kWarehouseTable, 30s, isDeaf);
        EXPECT_TRUE(setUpWhile([this] { pressInWindow(Qt::Key_Escape); })) << isDeaf;
        EXPECT_TRUE(window.isLoaded());
        connection->answerAtLast();
        ASSERT_TRUE(waitFor([] { return db::keeper().isEmpty(); }));
        EXPECT_TRUE(setUpWhile([this] { window.close(); })) << isDeaf;
        EXPECT_FALSE(window.isLoaded());
        connection->answerAtLast();
        ASSERT_TRUE(waitFor([] { return db::keeper().isEmpty(); }));
        slow(kWarehouseTable, 0ms, false);
        setUpFor(u"Import"_s);
        EXPECT_EQ(list("cmbTipRaport")->items().size(), 2);
    }
}

TEST_F(StopsTest, aDeadServerHoldsNobodyUp) {
    const auto other = FakeConnection::create();
    other->answer(u"SELECT An FROM An"_s, {.columns = {{u"An"_s}}, .rows = {{u"2004"_s}}});
    other->answer(kWarehouseTable, {.columns = {{u"Depozit"_s}}, .rows = {{u"2 - Alt"_s}}});
    slowReport(30s, true);
    run();
    ASSERT_TRUE(waitUntilReading());
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(numberOf(u"Export"_s), 5) << "the connection is at work";
    EXPECT_LT(clock.elapsed(), kAtOnce);
    expectFiltersUsable();
    EXPECT_FALSE(db::keeper().isEmpty());

    run();
    ASSERT_EQ(surroundings.messages.size(), 1);
    EXPECT_TRUE(surroundings.messages.first().text.startsWith(u"5"_s));
    expectFiltersUsable();

    window.setPriza(db::Connection(other->asConnection()));
    EXPECT_NO_THROW(window.Incarca(u"Import"_s, QDate(2004, 7, 15), {})) << "another connection";
    EXPECT_EQ(member("iAn"), u"2004"_s);

    connection->answerAtLast();
    ASSERT_TRUE(waitFor([] { return db::keeper().isEmpty(); }));
    EXPECT_EQ(numberOf(u"Export"_s), 0);
    run();
    ASSERT_TRUE(waitUntilReading());
    clock.start();
    window.close();
    EXPECT_LT(clock.elapsed(), kAtOnce);
    EXPECT_FALSE(window.isVisible());
    expectDefaultPointer();
}

TEST_F(StopsTest, everyTypeOfFailureTakesTheOnePath) {
    const struct {
        std::function<void()> thrower;
        int number;
    } kCases[] = {
        {[] { throw base::Error(base::kTypeMismatch, u"x"_s); }, 13},
        {[] { throw std::bad_alloc(); }, 7},
        {[] { throw std::runtime_error("words"); }, base::kProviderFailure},
        {[] { throw 42; }, base::kProviderFailure},
    };
    for (const auto& one : kCases) {
        const com::Ref<IConnection> throwing(
            com::makeObject<ThrowingConnection>(connection->asConnection(), one.thrower).get());
        window.setPriza(db::Connection(throwing));
        window.Incarca(u"Import"_s, QDate(2003, 7, 15), {});
        surroundings.messages.clear();
        lookUp();
        ASSERT_EQ(surroundings.messages.size(), 1) << one.number;
        EXPECT_EQ(surroundings.messages.first().text, u"Nu s-au gasit Inregistrari !!"_s);
        surroundings.messages.clear();
        run();
        ASSERT_EQ(surroundings.messages.size(), 1) << one.number;
        EXPECT_TRUE(surroundings.messages.first().text.startsWith(QString::number(one.number)));
        EXPECT_EQ(surroundings.messages.first().style, 16);
        expectDefaultPointer();
        EXPECT_TRUE(isShown("fraMesaj")) << "it stays in its wait state";
    }
}

TEST_F(StopsTest, withoutAConnectionTheRunEndsBeforeTheWaitState) {
    const auto expectEnd = [this](const QString& number) {
        ASSERT_EQ(surroundings.messages.size(), 1);
        EXPECT_TRUE(surroundings.messages.first().text.startsWith(number));
        expectFiltersUsable();
        EXPECT_EQ(focus(), u"Raport"_s);
        surroundings.messages.clear();
    };
    connection->close();
    run();
    expectEnd(u"3709"_s);
    window.setPriza({});
    EXPECT_ANY_THROW(window.Incarca(u"Import"_s, QDate(2003, 7, 15), {}));
    run();
    expectEnd(u"91"_s);
}

TEST_F(StopsTest, aCallEndsWhatIsLeftStanding) {
    FakeAnswer bad = oneInvoice();
    bad.openError = base::Error(base::kStatementError, u"bad"_s);
    connection->answer(kReport, bad);
    run();
    EXPECT_TRUE(isShown("fraMesaj"));
    setUpFor(u"Export"_s);
    expectFiltersUsable();
    EXPECT_EQ(caption("Label2"), u"Asteptati va rog ! Se interogheaza baza de date ..."_s);
    EXPECT_EQ(focus(), u"Raport"_s) << "where it was";

    lookUp();
    ASSERT_TRUE(isShown("fraGrid"));
    type(u"a"_s);
    setUpFor(u"Import"_s);
    EXPECT_FALSE(isShown("fraGrid"));
    EXPECT_EQ(focus(), u"txtCodAgent"_s);
    EXPECT_EQ(member("sCautare"), QString());
    expectFiltersUsable();

    slowReport(30s, false);
    QSignalSpy finished(viewer(), &viewer::ReportViewer::downloadFinished);
    run();
    ASSERT_TRUE(waitUntilReading());
    setUpFor(u"Export"_s);
    EXPECT_EQ(finished.count(), 1);
    EXPECT_TRUE(isShown("frmEnable"));
    EXPECT_EQ(focus(), u"cmbTipRaport"_s);
    expectFiltersUsable();
}

TEST_F(StopsTest, aRefusedCallChangesNothing) {
    const auto other = FakeConnection::create();
    std::optional<std::int32_t> number;
    const auto callAnew = [&] {
        try {
            window.setPriza(db::Connection(other->asConnection()));
            window.Incarca(u"Export"_s, QDate(2003, 7, 15), u"X"_s);
        } catch (const base::Error& error) {
            number = error.number();
            EXPECT_TRUE(error.description().startsWith(u"Fereastra"_s));
        }
    };
    slow(kLookup, 1500ms, false);
    QTimer::singleShot(450ms, &window, callAnew);
    lookUp();
    EXPECT_EQ(number, 5);
    EXPECT_TRUE(isShown("fraGrid"));
    EXPECT_EQ(member("sSoc"), QString());
    press(Qt::Key_Escape);
    connection->clearCalls();
    lookUp();
    EXPECT_EQ(connection->calls().size(), 1) << "the lookups go where they went";
    EXPECT_TRUE(other->calls().isEmpty());
}

TEST_F(StopsTest, anyMomentMayEndALoad) {
    const std::pair<const char*, std::function<void()>> kEnds[] = {{"Esc", [this] { pressInWindow(Qt::Key_Escape); }},
                                                                   {"a second call", [this] { setUpFor(u"Import"_s); }},
                                                                   {"closing", [this] { window.close(); }},
                                                                   {"closing and a call", [this] {
                                                                        window.close();
                                                                        setUpFor(u"Import"_s);
                                                                    }}};
    FakeAnswer slow = oneInvoice();
    slow.repeat = 8;
    slow.openDelay = 2ms;
    slow.runDelay = 3ms;
    slow.fetchDelay = 1ms;
    connection->answer(kReport, slow);
    for (int moment = 0; moment < 60; ++moment) {
        const auto& [name, end] = kEnds[moment % std::size(kEnds)];
        setUpFor(u"Import"_s);
        run();
        QTest::qWait(moment / 4);
        end();
        if (window.isLoaded()) {
            ASSERT_TRUE(waitFor([this] { return !viewer()->isBusy(); })) << name << moment;
            expectFiltersUsable();
        }
        expectDefaultPointer();
        ASSERT_TRUE(surroundings.messages.isEmpty()) << name << moment;
    }
    EXPECT_TRUE(db::keeper().isEmpty());
}

/// A host may dispatch events inside its own connection's calls.
class DispatchingHostTest : public StopsTest {
protected:
    DispatchingHostTest() { connection->setFreeThreaded(false); }
};

TEST_F(DispatchingHostTest, theWindowTakesNoInputAndTheHostKeepsItsOwn) {
    QLineEdit hostBox;
    hostBox.show();
    std::optional<std::int32_t> number;
    meanwhile(kLookup, [&] {
        QTest::keyClick(box("txtCodAgent"), Qt::Key_X);
        QTest::keyClick(&hostBox, Qt::Key_H);
        number = numberOf(u"Export"_s);
    });
    lookUp();
    EXPECT_EQ(box("txtCodAgent")->text(), QString());
    EXPECT_EQ(hostBox.text(), u"h"_s);
    EXPECT_EQ(number, 5);
    EXPECT_TRUE(isShown("fraGrid"));
}

TEST_F(DispatchingHostTest, escAndClosingStopTheStatement) {
    meanwhile(kLookup, [&] { pressInWindow(Qt::Key_Escape); });
    lookUp();
    EXPECT_EQ(connection->cancelCount(), 1);
    EXPECT_FALSE(isShown("fraGrid"));
    EXPECT_TRUE(surroundings.messages.isEmpty());

    meanwhile(kLookup, [&] {
        window.close();
        EXPECT_TRUE(window.isLoaded()) << "what runs has still to return";
    });
    lookUp();
    EXPECT_FALSE(window.isLoaded());
    EXPECT_TRUE(surroundings.messages.isEmpty());
}

TEST_F(StopsTest, inputOfTheHostWaitsForTheStatement) {
    QWidget hostWindow;
    QLineEdit hostBox(&hostWindow);
    int shortcuts = 0;
    QShortcut shortcut(Qt::CTRL | Qt::Key_J, &hostWindow);
    QObject::connect(&shortcut, &QShortcut::activated, &hostWindow, [&] { ++shortcuts; });
    hostWindow.show();
    QWidget second;
    second.show();
    class DropTarget final : public QWidget {
    public:
        int drops = 0;

    protected:
        void dropEvent(QDropEvent*) override { ++drops; }
    } target;
    target.show();
    slow(kLookup, 1500ms, false);
    giveFocus("txtCodAgent");
    QWidget* field = QApplication::focusWidget();
    QTimer::singleShot(450ms, &window, [&] {
        hostWindow.activateWindow();
        hostBox.setFocus();
        QTest::keyClick(hostWindow.windowHandle(), Qt::Key_H);
        QTest::keyClick(hostWindow.windowHandle(), Qt::Key_J, Qt::ControlModifier);
        second.close();
        QMimeData dragged;  // gone when the drag is over
        QDropEvent drop({}, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &drop);
        EXPECT_EQ(hostBox.text(), QString());
        EXPECT_EQ(shortcuts, 0);
        EXPECT_TRUE(second.isVisible());
    });
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(hostBox.text(), QString());
    QCoreApplication::processEvents();
    EXPECT_EQ(hostBox.text(), u"h"_s);
    EXPECT_EQ(shortcuts, 1);
    EXPECT_EQ(target.drops, 0);
    EXPECT_FALSE(second.isVisible());
}

}  // namespace velcoran::tests
