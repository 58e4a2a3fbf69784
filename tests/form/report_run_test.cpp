#include "form_fixture.h"

#include <QComboBox>
#include <QGuiApplication>

#include "db/forwarding.h"
#include "db/keeper.h"
#include "report/layout/document.h"
#include "report/report.h"

#include <QElapsedTimer>
#include <QTimer>

namespace velcoran::tests {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const char* const kWaiting[] = {"Raport", "cmdExit", "cmbVizual", "frmEnable", "Command1", "cmdViz"};

FakeAnswer invoices() {
    const FakeColumn money{{}, ColumnType::Decimal64, 2};
    const auto amount = [&](const QString& name) {
        FakeColumn column = money;
        column.name = name;
        return column;
    };
    return {.columns = {{u"TipRaport"_s},
                        {u"CodClient"_s},
                        {u"NumeClient"_s},
                        {u"DataDoc"_s},
                        {u"NumarFactura"_s},
                        amount(u"ValoareNeta"_s),
                        amount(u"ValoareTVA"_s),
                        amount(u"ValoareBruta"_s),
                        {u"Moneda"_s},
                        amount(u"CursValutar"_s),
                        amount(u"ValoareTaxe"_s)},
            .rows = {{u"Furnizor"_s, u"F1"_s, u"ALFA"_s, u"05/07/2003"_s, u"100"_s, u"10.00"_s, u"1.90"_s, u"11.90"_s,
                      u"EUR"_s, u"4.97"_s, u"0.00"_s}}};
}

}  // namespace

class ReportRunTest : public FormTest {
protected:
    ReportRunTest() {
        connection->answer(u"AS TipRaport"_s, invoices());
        setUpFor(u"Import"_s);
        statements();
    }
    viewer::ReportViewer* viewer() { return find<viewer::ReportViewer>("CRW"); }
    void run() { QTest::mouseClick(find<QWidget>("Raport"), Qt::LeftButton); }
    void expectWaiting(bool isWaiting) {
        EXPECT_EQ(isShown("fraMesaj"), isWaiting);
        for (const char* name : kWaiting)
            EXPECT_EQ(find<QWidget>(name)->testAttribute(Qt::WA_ForceDisabled), isWaiting) << name;
    }
    void expectPointer(const QString& pointer) {
        EXPECT_EQ(member("pointer"), pointer);
        EXPECT_EQ(QGuiApplication::overrideCursor() != nullptr, pointer == u"hourglass"_s);
    }
    bool waitForEnd() {
        return waitFor([this] { return !viewer()->isBusy() && !isShown("fraMesaj"); });
    }
};

TEST_F(ReportRunTest, endsInTheReportView) {
    run();
    EXPECT_EQ(member("bRaportIncarcat"), u"true"_s);
    EXPECT_EQ(member("rptFacturi"), u"CRFacturiImport"_s);
    ASSERT_TRUE(waitForEnd());
    expectWaiting(false);
    expectPointer(u"default"_s);
    EXPECT_FALSE(isShown("frmEnable"));
    EXPECT_EQ(focus(), u"CRW"_s);
    EXPECT_EQ(caption("Label2"), u"Asteptati va rog ! Se interogheaza baza de date ..."_s);
    EXPECT_TRUE(viewer()->hasReport());
    EXPECT_EQ(viewer()->options().size(), 16);
    EXPECT_EQ(viewer()->report().toMap()[u"rows"_s].toInt(), 1);

    QTest::mouseClick(find<QWidget>("cmdViz"), Qt::LeftButton);
    EXPECT_TRUE(isShown("frmEnable"));
    EXPECT_EQ(focus(), u"cmbTipRaport"_s);
    giveFocus("cmbVizual");
    press(Qt::Key_Return);
    EXPECT_FALSE(isShown("frmEnable"));
    EXPECT_EQ(focus(), u"CRW"_s);
}

TEST_F(ReportRunTest, theViewersKeysActOnThePrinterButtonWhileTheReportIsInView) {
    run();
    ASSERT_TRUE(waitForEnd());
    const auto isOverridden = [this](const char* name, int key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(QEvent::ShortcutOverride, key, modifiers);
        event.ignore();
        QApplication::sendEvent(find<QWidget>(name), &event);
        return event.isAccepted();
    };
    const struct {
        int key;
        Qt::KeyboardModifiers modifiers;
        const char* focus;  ///< the part of the viewer that has it then
    } cases[] = {{Qt::Key_F, Qt::ControlModifier, "crwSearchBox"}, {Qt::Key_F6, {}, "crwTree"}};
    for (const auto& one : cases) {
        giveFocus("Command1");
        EXPECT_TRUE(isOverridden("Command1", one.key, one.modifiers));
        press(one.key, one.modifiers);
        EXPECT_EQ(QApplication::focusWidget()->objectName(), QString::fromLatin1(one.focus));
        EXPECT_EQ(focus(), u"CRW"_s);
    }
    const double before = find<QComboBox>("crwZoom")->currentText().section(u' ', 0, 0).toDouble();
    giveFocus("Command1");
    press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_GT(find<QComboBox>("crwZoom")->currentText().section(u' ', 0, 0).toDouble(), before);
    EXPECT_EQ(focus(), u"Command1"_s);
    QTest::mouseClick(find<QWidget>("cmdViz"), Qt::LeftButton);
    giveFocus("Command1");
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(focus(), u"Command1"_s) << "the filters are in view";
    find<QWidget>("frmEnable")->hide();
    giveFocus("cmdViz");
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(focus(), u"cmdViz"_s) << "which has keys of its own";
}

TEST_F(ReportRunTest, waitsWhileTheRowsCome) {
    FakeAnswer slow = invoices();
    slow.runDelay = 300ms;
    connection->answer(u"AS TipRaport"_s, slow);
    QStringList captions;
    QObject::connect(viewer(), &viewer::ReportViewer::downloadStarted, viewer(),
                     [&] { captions.append(caption("Label2")); });
    run();
    expectWaiting(true);
    expectPointer(u"hourglass"_s);
    EXPECT_EQ(caption("Label2"), u"Asteptati va rog ! Se interogheaza baza de date ..."_s);
    EXPECT_TRUE(captions.isEmpty()) << "the statement has not answered yet";
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(captions, QStringList{u"Asteptati va rog ! Raportul este in executie ..."_s});
    expectPointer(u"default"_s);
}

TEST_F(ReportRunTest, refusesValuesThatWereTypedOver) {
    box("txtProducator")->setText(u"x"_s);
    box("txtCodAgent")->setText(u" "_s);
    run();
    EXPECT_EQ(surroundings.messages,
              QList<ShownMessage>({{u" Urmatoarele filtrari au fost modificate ulterior selectiei:\r\n - Producator, "
                                    u"Denumire Client\r\n Pentru a putea continua repetati selectiile! "_s,
                                    64, u"ATENTIE!"_s}}));
    EXPECT_TRUE(statements().isEmpty());
    expectWaiting(false);
}

TEST_F(ReportRunTest, aBadStatementIsOneMessageAndTheWaitStateStays) {
    connection->answer(u"AS TipRaport"_s, {.openError = base::Error(base::kStatementError, u"Incorrect syntax"_s)});
    setPicked("txtTipProdus", u"a'b"_s);
    run();
    EXPECT_EQ(surroundings.messages,
              QList<ShownMessage>({{u"-2147217900Incorrect syntax"_s, 16, u"Facturi Import Furnizori"_s}}));
    expectWaiting(true);
    expectPointer(u"default"_s);
    EXPECT_EQ(member("bRaportIncarcat"), u"false"_s);
}

TEST_F(ReportRunTest, aLostConnectionLeavesTheWindowUsable) {
    FakeAnswer lost = invoices();
    lost.fetchError = base::Error(base::kProviderFailure, u"Connection lost"_s);
    connection->answer(u"AS TipRaport"_s, lost);
    run();
    ASSERT_TRUE(waitForEnd());
    expectWaiting(false);
    expectPointer(u"default"_s);
    EXPECT_TRUE(surroundings.messages.isEmpty());
}

TEST_F(ReportRunTest, closingOrSettingUpWhileItLoadsLeavesNothingBehind) {
    FakeAnswer slow = invoices();
    slow.runDelay = 5s;
    connection->answer(u"AS TipRaport"_s, slow);
    run();
    expectPointer(u"hourglass"_s);
    setUpFor(u"Export"_s);
    expectPointer(u"default"_s);
    expectWaiting(false);
    EXPECT_TRUE(isShown("frmEnable"));
    EXPECT_FALSE(viewer()->isBusy());
    run();
    window.close();
    EXPECT_FALSE(window.isLoaded());
    expectPointer(u"default"_s);
    EXPECT_FALSE(connection->isBusy());
}

TEST_F(ReportRunTest, emptiesCodesWhoseFieldsAreEmpty) {
    giveFocus("txtCodClient");
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    EXPECT_EQ(member("sCodClient"), u"C1"_s);
    statements();
    run();
    const QString sql = statements().value(0);
    EXPECT_TRUE(sql.contains(u" AND CapDocIntE.[Furnizor]='C1'"_s)) << sql.toStdString();
    EXPECT_TRUE(sql.contains(u">= '2003-07-01'"_s)) << sql.toStdString();
    ASSERT_TRUE(waitForEnd());
}

TEST_F(ReportRunTest, showsTheValueOfAClickedObject) {
    bool useDefault = true;
    emit viewer()->objectClicked(1, 1, {u"a"_s, u"11,90"_s}, &useDefault);
    emit viewer()->objectClicked(1, 1, {}, &useDefault);
    EXPECT_EQ(surroundings.messages, QList<ShownMessage>({{u"11,90"_s, 64, u"Facturi Import Furnizori"_s}}));
    EXPECT_TRUE(useDefault);
    emit viewer()->printButtonClicked(&useDefault);
    EXPECT_FALSE(useDefault);
}

TEST_F(ReportRunTest, aCallEndsTheWaitStateThatAFailedRunLeft) {
    connection->answer(u"AS TipRaport"_s, {.openError = base::Error(base::kStatementError, u"Incorrect syntax"_s)});
    run();
    expectWaiting(true);
    setUpFor(u"Export"_s);
    expectWaiting(false);
    EXPECT_TRUE(isShown("frmEnable"));
    EXPECT_EQ(caption("Label2"), u"Asteptati va rog ! Se interogheaza baza de date ..."_s);
    connection->answer(u"AS TipRaport"_s, invoices());
    run();
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(viewer()->hasReport());
}

TEST_F(ReportRunTest, withoutAnOpenConnectionTheWindowStaysAsItWas) {
    struct Case {
        const char* name;
        std::function<void()> lose;
        int number;
    };
    const Case cases[] = {{"none", [this] { window.setPriza(db::Connection()); }, base::kObjectNotSet},
                          {"closed by its host", [this] { connection->close(); }, base::kInvalidConnection}};
    for (const Case& one : cases) {
        one.lose();
        surroundings.messages.clear();
        run();
        ASSERT_EQ(surroundings.messages.size(), 1) << one.name;
        EXPECT_TRUE(surroundings.messages[0].text.startsWith(QString::number(one.number))) << one.name;
        expectWaiting(false);
        expectPointer(u"default"_s);
        EXPECT_EQ(focus(), u"Raport"_s) << one.name;
        window.setPriza(db::Connection(connection->asConnection()));
    }
}

TEST_F(ReportRunTest, escStopsTheLoadWithoutAnyFocusAndOnce) {
    FakeAnswer slow = invoices();
    slow.runDelay = 60s;
    connection->answer(u"AS TipRaport"_s, slow);
    run();
    ASSERT_TRUE(waitFor([this] { return connection->isBusy(); }));
    EXPECT_EQ(focus(), QString());
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(&window, &held);
    EXPECT_TRUE(viewer()->isBusy()) << "a key held down from before stops nothing";
    QTest::keyClick(&window, Qt::Key_Escape);
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(window.isLoaded());
    EXPECT_TRUE(surroundings.messages.isEmpty());
    expectPointer(u"default"_s);
    EXPECT_EQ(focus(), u"CRW"_s);
}

TEST_F(ReportRunTest, aStoppedPreparationLeavesTheFiltersAsTheyWere) {
    FakeAnswer slow = invoices();
    slow.openDelay = 60s;
    connection->answer(u"AS TipRaport"_s, slow);
    giveFocus("Raport");
    QTimer::singleShot(500, &window, [this] { QTest::keyClick(&window, Qt::Key_Escape); });
    run();
    expectWaiting(false);
    expectPointer(u"default"_s);
    EXPECT_TRUE(surroundings.messages.isEmpty());
    EXPECT_TRUE(isShown("frmEnable"));
    EXPECT_EQ(focus(), u"Raport"_s);
    connection->answer(u"AS TipRaport"_s, invoices());
    run();
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(viewer()->hasReport()) << "the stop was for that run alone";
}

/// A connection whose driver does not hear a cancel.
class DeafStatement final : public db::ForwardingStatement {
public:
    using ForwardingStatement::ForwardingStatement;
    com::HResult Cancel() override { return com::kOk; }
};
class DeafConnection final : public db::ForwardingConnection {
public:
    using ForwardingConnection::ForwardingConnection;
    com::HResult Cancel() override { return com::kOk; }

private:
    com::Ref<IRows> wrap(com::Ref<IRows> rows, const QString&) override { return rows; }
    com::Ref<IStatement> wrap(com::Ref<IStatement> statement, const QString&) override {
        return com::Ref<IStatement>::adopt(com::makeObject<DeafStatement>(std::move(statement)).release());
    }
};

TEST_F(ReportRunTest, aSilentServerHoldsNeitherACloseNorACall) {
    for (const bool isClosing : {true, false}) {
        const auto silent = FakeConnection::create();
        silent->answer(u"FROM An"_s, {.columns = {{u"An"_s}}, .rows = {{u"2003"_s}}});
        silent->answer(u"FROM Depozite"_s, {.columns = {{u"D"_s}}, .rows = {{u"1 - A"_s}}});
        FakeAnswer slow = invoices();
        slow.fetchDelay = 2s;
        silent->answer(u"AS TipRaport"_s, slow);
        const auto deaf =
            com::Ref<IConnection>::adopt(com::makeObject<DeafConnection>(silent->asConnection()).release());
        window.setPriza(db::Connection(deaf));
        window.Incarca(u"Import"_s, QDate(2003, 7, 15), {});
        run();
        ASSERT_TRUE(waitFor([&] { return silent->isBusy(); }));
        QElapsedTimer clock;
        clock.start();
        if (isClosing) {
            window.close();
            EXPECT_FALSE(window.isLoaded());
        } else {
            setUpFor(u"Export"_s);
            EXPECT_EQ(member("caption"), u"Facturi Export Clienti"_s);
        }
        EXPECT_LT(clock.elapsed(), 1900) << "the window's thread did not wait for the driver";
        EXPECT_FALSE(db::keeper().isEmpty());
        EXPECT_THROW((void)db::Connection(deaf).execute(u"SELECT An FROM An"_s), base::Error);
        ASSERT_TRUE(waitFor([] { return db::keeper().isEmpty(); })) << "joined when the driver has returned";
        EXPECT_NO_THROW((void)db::Connection(deaf).execute(u"SELECT An FROM An"_s));
    }
}

TEST_F(ReportRunTest, whatIsShownKeepsItsKindAndFilters) {
    setPicked("txtTipProdus", u"PF1"_s);
    run();
    ASSERT_TRUE(waitForEnd());
    connection->answer(u"AS TipRaport"_s, {.openError = base::Error(base::kStatementError, u"Incorrect syntax"_s)});
    setUpFor(u"Export"_s);
    setPicked("txtTipProdus", u"SV1"_s);
    run();
    const auto shown = viewer()->shownReport();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->request().fileTitle, u"Facturi Import Furnizori"_s);
    EXPECT_TRUE(shown->request().filters.join(u' ').contains(u"PF1"_s));
    EXPECT_FALSE(shown->snapshot().unboundTexts.isEmpty());
}

}  // namespace velcoran::tests
