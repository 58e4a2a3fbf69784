#include "form_fixture.h"

#include <QComboBox>
#include <QGuiApplication>

#include "report/layout/document.h"
#include "report/report.h"

namespace velcoran::tests {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const char* const kWaiting[] = {"Raport", "cmdExit", "cmbVizual", "frmEnable", "Command1", "cmdViz"};

FakeAnswer invoices() {
    FakeAnswer answer = reportColumns();
    answer.rows = {{u"Furnizor"_s, u"F1"_s, u"ALFA"_s, u"05/07/2003"_s, u"100"_s, u"10.00"_s, u"1.90"_s, u"11.90"_s,
                    u"EUR"_s, u"4.97"_s, u"0.00"_s}};
    return answer;
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
