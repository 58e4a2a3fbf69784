#include "db/sqlite/database.h"
#include "form/run/dialog_output.h"
#include "form_fixture.h"
#include "viewer/report_viewer.h"
#include "watched_connection.h"

#include <QAbstractButton>
#include <QDialog>
#include <QLineEdit>
#include <QThread>

#include <velcoran/dialogs.h>

#include <functional>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

namespace {

/// Every call that the window makes into its host on its own thread, by name; inside one of them the host does
/// something.
class HostCalls {
public:
    void call(const QString& name) {
        if (QThread::currentThread() != qApp->thread()) return;
        names.append(name);
        if (names.size() - 1 != m_at || !m_action) return;
        const std::function<void()> action = std::exchange(m_action, nullptr);
        action();
    }
    /// @param at  number of the call, from 0
    void doAt(qsizetype at, std::function<void()> action) {
        m_at = at;
        m_action = std::move(action);
    }

    QStringList names;

private:
    qsizetype m_at = -1;
    std::function<void()> m_action;
};

/// Bound to its thread: such a host may dispatch events inside its own calls.
class BoundConnection final : public WatchedConnection {
public:
    BoundConnection(com::Ref<IConnection> real, HostCalls& calls)
        : WatchedConnection(std::move(real)), m_calls(calls) {}
    void enterCall(const char* call) override { m_calls.call(QString::fromLatin1(call)); }

private:
    HostCalls& m_calls;
};

class HostDialog final : public com::Object<IMesaje> {
public:
    explicit HostDialog(HostCalls& calls) : m_calls(calls) {}
    com::HResult Afiseaza(com::Bstr, std::int16_t, std::int16_t, com::Bstr, std::int32_t, std::int32_t,
                          std::int32_t*) override {
        m_calls.call(u"message"_s);
        return com::kOk;
    }

private:
    HostCalls& m_calls;
};

/// A dialog in which the user gives up.
template <class Interface, class... Arguments>
class GivenUp final : public com::Object<Interface> {
public:
    GivenUp(HostCalls& calls, const char16_t* name) : m_calls(calls), m_name(QString::fromUtf16(name)) {}
    com::HResult Choose(Arguments...) override {
        m_calls.call(m_name);
        return com::kFalse;
    }

private:
    HostCalls& m_calls;
    QString m_name;
};
using ExportGivenUp =
    GivenUp<IExportDialog, std::uintptr_t, const ExportFormat*, std::uint32_t, com::Bstr, std::int32_t*, com::Bstr*>;
using PrintGivenUp = GivenUp<IPrintDialog, std::uintptr_t, std::int32_t, PrintChoice*>;
using SetupGivenUp = GivenUp<IPrinterSetupDialog, std::uintptr_t, PrinterSetup*>;

class Host final : public form::Surroundings {
public:
    com::Ref<IMesaje> newMesaje() override { return made<IMesaje, HostDialog>(); }
    com::Ref<IExportDialog> newExportDialog() override { return made<IExportDialog, ExportGivenUp>(u"export"); }
    com::Ref<IPrintDialog> newPrintDialog() override { return made<IPrintDialog, PrintGivenUp>(u"print"); }
    com::Ref<IPrinterSetupDialog> newPrinterSetupDialog() override {
        return made<IPrinterSetupDialog, SetupGivenUp>(u"printer set-up");
    }
    std::unique_ptr<form::IReportOutput> newOutput(QWidget& window, form::Activity& activity) override {
        return std::make_unique<form::DialogOutput>(window, activity, *this, memory);
    }
    void showPlainMessage(QWidget&, const QString&) override {}

    HostCalls calls;
    form::OutputMemory memory;

private:
    template <class Interface, class Object, class... Arguments>
    com::Ref<Interface> made(Arguments... arguments) {
        calls.call(u"factory"_s);
        return com::Ref<Interface>(com::makeObject<Object>(calls, arguments...).get());
    }
};

/// A user's work over a host that does something inside one of its own calls.
class Work {
public:
    Work() = default;

    /// Opens, looks something up that is there and something that is not, runs a report, prints, sets the printer up,
    /// exports. Ends early when the window is gone.
    void play() {
        using Step = void (Work::*)();
        // One after the other, whatever has failed before.
        for (const Step step : {&Work::open, &Work::lookUp, &Work::lookUpNothing, &Work::refuse, &Work::report,
                                &Work::showValue, &Work::print, &Work::setUpPrinter, &Work::exportIt}) {
            (this->*step)();
            QCoreApplication::processEvents();
            if (!window.isLoaded()) return;
        }
    }
    void call(const QString& kind = u"Import"_s) {
        window.setPriza(db::Connection(connection));
        window.Incarca(kind, QDate(2026, 5, 31), {});
    }
    /// Number of the error that a call ends with; 0 for none.
    int numberOfCall(const QString& kind) {
        try {
            call(kind);
        } catch (...) {
            return base::currentError().number();
        }
        return 0;
    }
    QWidget* control(QLatin1StringView name) { return window.findChild<QWidget*>(name); }
    viewer::ReportViewer* viewer() { return window.findChild<viewer::ReportViewer*>(u"CRW"_s); }

    Host host;
    com::Ref<IConnection> connection{
        com::makeObject<BoundConnection>(sqlite::openDatabase(QStringLiteral(VELCORAN_TEST_DATABASE)), host.calls)
            .as<IConnection>()};
    form::RptStoc window{host};
    int opened = 0;  ///< how the first call ended
    qsizetype callsOfOpening = 0;

private:
    void open() {
        opened = numberOfCall(u"Import"_s);
        callsOfOpening = host.calls.names.size();
    }
    void enterIn(QLatin1StringView box, const QString& text) {
        if (control("fraGrid"_L1)->isVisible()) QTest::keyClick(control("Grid"_L1), Qt::Key_Escape);
        control(box)->setFocus();
        auto* line = qobject_cast<QLineEdit*>(control(box));
        if (line == nullptr) line = control(box)->findChild<QLineEdit*>();
        if (line != nullptr) line->setText(text);
        QTest::keyClick(QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : control(box),
                        Qt::Key_Return);
        if (window.isLoaded() && control("fraGrid"_L1)->isVisible())
            QTest::keyClick(control("Grid"_L1), Qt::Key_Escape);
    }
    void lookUp() { enterIn("txtGrupaProdus"_L1, {}); }
    void lookUpNothing() {
        enterIn("txtCodAgent"_L1, u"zzzzzz"_s);
        if (window.isLoaded()) qobject_cast<QLineEdit*>(control("txtCodAgent"_L1))->clear();
    }
    void refuse() {
        auto* box = qobject_cast<QLineEdit*>(control("txtCodClient"_L1));
        box->setText(u"x"_s);
        click("Raport"_L1);
        if (window.isLoaded()) box->clear();
    }
    void report() {
        click("Raport"_L1);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !window.isLoaded() || !viewer()->isBusy(); }, 10000));
    }
    void showValue() {
        bool useDefault = true;
        emit viewer()->objectClicked(0, 0, {u"NumarFactura"_s, u"1"_s}, &useDefault);
    }
    void print() { press(u"print"_s); }
    void setUpPrinter() { click("Command1"_L1); }
    void exportIt() { press(u"export"_s); }
    void press(const QString& action) { viewer()->act(action, {}); }
    void click(QLatin1StringView name) { QTest::mouseClick(control(name), Qt::LeftButton); }
};

/// What a screen reader does, past all events.
void pressPastEvents(QWidget* button) { qobject_cast<QAbstractButton*>(button)->click(); }

}  // namespace

class Reentry : public testing::Test {
protected:
    static void SetUpTestSuite() {
        Work work;
        work.play();
        s_names = work.host.calls.names;
        s_setUpCalls = work.callsOfOpening;
    }
    /// Does something inside each call in turn.
    template <class Meanwhile, class Check>
    void inEachCall(Meanwhile meanwhile, Check check) {
        for (m_at = 0; m_at < s_names.size(); ++m_at) {
            SCOPED_TRACE("inside call " + std::to_string(m_at) + ", " + s_names[m_at].toStdString());
            Work work;
            bool wasDone = false;
            work.host.calls.doAt(m_at, [&] {
                wasDone = true;
                meanwhile(work);
            });
            work.play();
            EXPECT_TRUE(wasDone);
            check(work);
            EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
            work.host.calls.doAt(-1, nullptr);
            EXPECT_EQ(work.numberOfCall(u"Export"_s), 0) << "it opens again";
            EXPECT_EQ(work.window.windowTitle(), u"Facturi Export Clienti"_s);
        }
    }

    static QStringList s_names;
    static qsizetype s_setUpCalls;
    qsizetype m_at = 0;
};

QStringList Reentry::s_names;
qsizetype Reentry::s_setUpCalls = 0;

TEST_F(Reentry, reachesEveryKindOfCall) {
    for (const QString& name : {u"Execute"_s, u"OpenRowset"_s, u"Prepare"_s, u"Columns"_s, u"Fetch"_s, u"State"_s,
                                u"factory"_s, u"message"_s, u"print"_s, u"printer set-up"_s, u"export"_s})
        EXPECT_TRUE(s_names.contains(name)) << qPrintable(name);
}

TEST_F(Reentry, aSecondCallIsRefusedAndChangesNothing) {
    int number = 0;
    inEachCall([&](Work& work) { number = work.numberOfCall(u"Export"_s); },
               [&](Work& work) {
                   EXPECT_EQ(number, 5);
                   EXPECT_EQ(work.opened, 0);
                   EXPECT_EQ(work.host.calls.names, s_names);
                   EXPECT_EQ(work.window.windowTitle(), u"Facturi Import Furnizori"_s);
               });
}

TEST_F(Reentry, aCloseFollows) {
    for (const bool isByUser : {true, false})
        inEachCall(
            [&](Work& work) {
                if (isByUser)
                    work.window.close();
                else
                    work.window.CloseForm();
                QCoreApplication::processEvents();
                EXPECT_TRUE(work.window.isLoaded()) << "what runs has still to return";
            },
            [](Work& work) {
                EXPECT_FALSE(work.window.isLoaded());
                EXPECT_FALSE(work.window.isVisible());
                EXPECT_FALSE(work.window.property("priza").toBool());
            });
}

TEST_F(Reentry, clicksAndKeysInTheWindowDoNothing) {
    inEachCall(
        [](Work& work) {
            if (QWidget* raport = work.control("Raport"_L1); raport != nullptr && work.window.isVisible()) {
                QTest::mouseClick(raport, Qt::LeftButton);
                QTest::keyClick(raport, Qt::Key_Return);
                pressPastEvents(raport);
                pressPastEvents(work.control("Command1"_L1));
                QTest::keyClick(work.control("txtGrupaProdus"_L1), Qt::Key_X);
            }
        },
        [](Work& work) { EXPECT_EQ(work.host.calls.names, s_names); });
}

/// A host that catches nothing of its own.
TEST_F(Reentry, anyExceptionIsToldAndTheWindowGoesOn) {
    const struct {
        std::function<void()> thrower;
        int number;
    } kCases[] = {{[] { throw 42; }, base::kProviderFailure},
                  {[] { throw std::bad_alloc(); }, base::kOutOfMemory},
                  {[] { throw base::Error(4711, u"al gazdei"_s); }, 4711}};
    for (const auto& one : kCases)
        inEachCall([&](Work&) { one.thrower(); },
                   [&](Work& work) {
                       EXPECT_EQ(work.opened, m_at < s_setUpCalls ? one.number : 0);
                       EXPECT_TRUE(work.window.isLoaded());
                       work.window.close();
                       EXPECT_FALSE(work.window.isLoaded()) << "it can be left";
                   });
}

TEST_F(Reentry, nothingOpensBehindAModalDialogOfTheHost) {
    Work work;
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    EXPECT_EQ(work.numberOfCall(u"Import"_s), 5);
    EXPECT_FALSE(work.window.isLoaded());
    dialog.hide();
    EXPECT_EQ(work.numberOfCall(u"Import"_s), 0);
    dialog.show();
    EXPECT_EQ(work.numberOfCall(u"Export"_s), 5);
    EXPECT_EQ(work.window.windowTitle(), u"Facturi Import Furnizori"_s);
    QWidget other;
    QDialog inside(&other);
    inside.setWindowModality(Qt::WindowModal);
    dialog.hide();
    other.show();
    inside.show();
    EXPECT_EQ(work.numberOfCall(u"Export"_s), 0) << "it blocks its own window alone";
}

}  // namespace velcoran::tests
