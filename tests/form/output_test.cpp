#include "com/object.h"
#include "form/run/dialog_output.h"
#include "form_fixture.h"
#include "report/layout/document.h"
#include "viewer/report_viewer.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QTemporaryDir>
#include <QTimer>

#include <velcoran/dialogs.h>

#include <optional>
#include <utility>

namespace velcoran::tests {

using namespace Qt::StringLiterals;

namespace {

/// What the dialogs of a test answer; nothing cancels.
struct Answers {
    std::optional<std::pair<int, QString>> exported;  ///< type and file
    std::optional<PrintChoice> print;
    QString printFile;
    std::optional<int> orientation;
    QStringList opened;
    std::function<void()> whileOpen;  ///< done inside each dialog
};

class ScriptedExport final : public com::Object<IExportDialog> {
public:
    explicit ScriptedExport(Answers& answers) : m_answers(answers) {}
    com::HResult Choose(std::uintptr_t, const ExportFormat*, std::uint32_t formatCount, com::Bstr suggestedFile,
                        std::int32_t* type, com::Bstr* file) override {
        m_answers.opened.append(u"export %1 %2"_s.arg(formatCount).arg(com::toQString(suggestedFile)));
        if (m_answers.whileOpen) m_answers.whileOpen();
        if (!m_answers.exported) return com::kFalse;
        *type = m_answers.exported->first;
        *file = com::toText(m_answers.exported->second).release();
        return com::kOk;
    }

private:
    Answers& m_answers;
};

class ScriptedPrint final : public com::Object<IPrintDialog> {
public:
    explicit ScriptedPrint(Answers& answers) : m_answers(answers) {}
    com::HResult Choose(std::uintptr_t, std::int32_t pageCount, PrintChoice* choice) override {
        m_answers.opened.append(u"print %1"_s.arg(pageCount));
        if (m_answers.whileOpen) m_answers.whileOpen();
        if (!m_answers.print) return com::kFalse;
        com::freeText(choice->printer);  // of a name, the rule is: whoever replaces it frees it
        com::freeText(choice->file);
        *choice = *m_answers.print;
        choice->file = com::toText(m_answers.printFile).release();
        return com::kOk;
    }

private:
    Answers& m_answers;
};

class ScriptedSetup final : public com::Object<IPrinterSetupDialog> {
public:
    explicit ScriptedSetup(Answers& answers) : m_answers(answers) {}
    com::HResult Choose(std::uintptr_t, PrinterSetup* setup) override {
        m_answers.opened.append(u"setup %1"_s.arg(com::toQString(setup->paper)));
        if (m_answers.whileOpen) m_answers.whileOpen();
        if (!m_answers.orientation) return com::kFalse;
        setup->orientation = *m_answers.orientation;
        return com::kOk;
    }

private:
    Answers& m_answers;
};

class OutputSurroundings final : public form::Surroundings {
public:
    com::Ref<IMesaje> newMesaje() override { return messages.newMesaje(); }
    com::Ref<IExportDialog> newExportDialog() override {
        return com::Ref<IExportDialog>(com::makeObject<ScriptedExport>(answers).get());
    }
    com::Ref<IPrintDialog> newPrintDialog() override {
        return com::Ref<IPrintDialog>(com::makeObject<ScriptedPrint>(answers).get());
    }
    com::Ref<IPrinterSetupDialog> newPrinterSetupDialog() override {
        return com::Ref<IPrinterSetupDialog>(com::makeObject<ScriptedSetup>(answers).get());
    }
    std::unique_ptr<form::IReportOutput> newOutput(QWidget& window, form::Activity& activity) override {
        return std::make_unique<form::DialogOutput>(window, activity, *this, memory);
    }
    void showPlainMessage(QWidget& window, const QString& text) override {
        plain.append(text);
        if (isPlainBoxReal) Surroundings::showPlainMessage(window, text);
    }

    RecordingSurroundings messages;
    Answers answers;
    form::OutputMemory memory;
    QStringList plain;
    bool isPlainBoxReal = false;
};

/// A window that shows a report of one document.
class OutputTest : public testing::Test {
protected:
    OutputTest() {
        connection->answer(u"SELECT An FROM An"_s, {.columns = {{u"An"_s}}, .rows = {{u"2003"_s}}});
        connection->answer(u"FROM Depozite"_s, {.columns = {{u"Depozit"_s}}, .rows = {{u"1 - Central"_s}}});
        invoices.rows = {{u"Furnizor"_s, u"F1"_s, u"ALFA"_s, u"05/07/2003"_s, u"100"_s, u"10.00"_s, u"1.90"_s,
                          u"11.90"_s, u"EUR"_s, u"4.97"_s, u"0.00"_s}};
        connection->answer(u"AS TipRaport"_s, invoices);
        window.setPriza(db::Connection(connection->asConnection()));
        window.Incarca(u"Import"_s, QDate(2003, 7, 15), {});
        QCoreApplication::processEvents();
        viewer = window.findChild<viewer::ReportViewer*>(u"CRW"_s);
    }
    void load() {
        QTest::mouseClick(window.findChild<QWidget*>(u"Raport"_s), Qt::LeftButton);
        ASSERT_TRUE(QTest::qWaitFor([this] { return !viewer->isBusy() && viewer->hasReport(); }, 10'000));
    }
    void press(const char16_t* button) { viewer->act(QString::fromUtf16(button), {}); }
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    [[nodiscard]] QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden); }
    QStringList takeOpened() { return std::exchange(surroundings.answers.opened, {}); }

    QTemporaryDir m_folder;
    OutputSurroundings surroundings;
    com::Ref<FakeConnection> connection = FakeConnection::create();
    FakeAnswer invoices = reportColumns();
    form::RptStoc window{surroundings};
    viewer::ReportViewer* viewer = nullptr;
};

TEST_F(OutputTest, anExportIsWrittenAndItsFolderIsKept) {
    load();
    surroundings.answers.exported = {5, path(u"a.csv"_s)};
    press(u"export");
    QFile written(path(u"a.csv"_s));
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_TRUE(written.readAll().contains("ALFA"));
    takeOpened();
    surroundings.answers.exported.reset();
    press(u"export");
    EXPECT_EQ(takeOpened(),
              QStringList{u"export 8 "_s + path(u"Facturi Import Furnizori 2003-07-01 - 2003-07-15.pdf"_s)});
    EXPECT_EQ(files(), QStringList{u"a.csv"_s});
    EXPECT_TRUE(surroundings.messages.messages.isEmpty()) << "a cancelled dialog says nothing";
}

TEST_F(OutputTest, theEnginesOwnFormatsAreRefusedSilently) {
    load();
    for (const int type : {1, 33}) {
        surroundings.answers.exported = {type, path(u"a.bin"_s)};
        press(u"export");
    }
    EXPECT_TRUE(files().isEmpty());
    EXPECT_TRUE(surroundings.messages.messages.isEmpty());
}

TEST_F(OutputTest, aFailedExportSaysNumberAndDescription) {
    load();
    const QString file = path(u"lipsa/a.pdf"_s);
    surroundings.answers.exported = {31, file};
    press(u"export");
    surroundings.answers.exported = {999, path(u"a.x"_s)};
    press(u"export");
    const QList<ShownMessage>& shown = surroundings.messages.messages;
    ASSERT_EQ(shown.size(), 2);
    EXPECT_TRUE(shown[0].text.startsWith(u"Export esuat. Contactati departamentul tehnic!\r\n75,"_s))
        << shown[0].text.toStdString();
    EXPECT_TRUE(shown[0].text.contains(file));
    EXPECT_EQ(shown[0].style, 16);
    EXPECT_EQ(shown[0].title, u"EROARE!"_s);
    EXPECT_EQ(shown[1],
              (ShownMessage{u"Aceasta optiune nu este disponibila.\r\nIncercati un alt format!"_s, 64, u"ATENTIE!"_s}));
}

TEST_F(OutputTest, aMissingPrinterLeadsToTheSetUp) {
    load();
    surroundings.answers.print = PrintChoice{nullptr, nullptr, 1, 0, 1, 1};
    press(u"print");
    EXPECT_EQ(takeOpened(), (QStringList{u"print 1"_s, u"setup A4"_s}));
    EXPECT_TRUE(surroundings.plain.isEmpty());
}

TEST_F(OutputTest, keysAloneLeadFromTheFirstFieldToAPrintedFile) {
    surroundings.answers.print = PrintChoice{nullptr, nullptr, 1, 0, 1, 1};
    surroundings.answers.printFile = path(u"raport.pdf"_s);
    window.findChild<QWidget*>(u"cmbTipRaport"_s)->setFocus();
    const QWidget* raport = window.findChild<QWidget*>(u"Raport"_s);
    for (int keys = 0; QApplication::focusWidget() != raport && keys < 30; ++keys)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), raport);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !viewer->isBusy() && viewer->hasReport(); }, 10'000));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(files(), QStringList{u"raport.pdf"_s});
    EXPECT_TRUE(surroundings.plain.isEmpty());
}

TEST_F(OutputTest, anyOtherFailureOfPrintingIsAPlainMessage) {
    load();
    surroundings.answers.print = PrintChoice{nullptr, nullptr, 1, 0, 1, 1};
    surroundings.answers.printFile = path(u"lipsa/a.pdf"_s);
    press(u"print");
    EXPECT_EQ(takeOpened(), QStringList{u"print 1"_s});
    ASSERT_EQ(surroundings.plain.size(), 1);
    EXPECT_TRUE(surroundings.plain[0].startsWith(u"75 - "_s)) << surroundings.plain[0].toStdString();
}

TEST_F(OutputTest, theSetUpTurnsTheSheetWithoutAskingTheDatabase) {
    const auto setUp = [this] {
        QTest::mouseClick(window.findChild<QWidget*>(u"Command1"_s), Qt::LeftButton);
        return takeOpened();
    };
    EXPECT_TRUE(setUp().isEmpty()) << "no report yet";
    load();
    connection->clearCalls();
    surroundings.answers.orientation = kPortrait;
    EXPECT_EQ(setUp(), QStringList{u"setup A4"_s});
    EXPECT_FALSE(viewer->pageSetup().isLandscape);
    EXPECT_LT(viewer->document()->pageWidth(), viewer->document()->pageHeight());
    EXPECT_TRUE(connection->calls().empty());
}

}  // namespace
/// The box is the platform's own; not every platform gives the focus back when it goes.
TEST_F(OutputTest, afterThePlainMessageTheFocusIsWhereItWas) {
    load();
    surroundings.isPlainBoxReal = true;
    surroundings.answers.print = PrintChoice{nullptr, nullptr, 1, 0, 1, 1};
    surroundings.answers.printFile = path(u"lipsa/a.pdf"_s);
    window.findChild<QWidget*>(u"cmdViz"_s)->setFocus();
    const QWidget* focused = QApplication::focusWidget();
    ASSERT_NE(focused, nullptr);
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [] {
        if (QWidget* box = QApplication::activeModalWidget()) box->close();
    });
    closer.start(20);
    press(u"print");
    ASSERT_EQ(surroundings.plain.size(), 1);
    QCoreApplication::processEvents();
    EXPECT_EQ(QApplication::focusWidget(), focused);
}

TEST_F(OutputTest, aHostMayCloseTheWindowInsideAnyDialog) {
    const PrintChoice noPrinter{nullptr, nullptr, 1, 0, 1, 1};
    const struct {
        const char* name;
        const char16_t* button;
        QString file;
        QStringList opened;
    } kCases[] = {
        {"print without a printer", u"print", {}, {u"print 1"_s}},
        {"print to a file", u"print", path(u"a.pdf"_s), {u"print 1"_s}},
        {"export", u"export", {}, {u"export"_s}},
        {"set-up", nullptr, {}, {u"setup A4"_s}},
    };
    for (const auto& one : kCases) {
        window.setPriza(db::Connection(connection->asConnection()));
        window.Incarca(u"Import"_s, QDate(2003, 7, 15), {});
        QCoreApplication::processEvents();
        viewer = window.findChild<viewer::ReportViewer*>(u"CRW"_s);
        load();
        surroundings.answers.print = noPrinter;
        surroundings.answers.printFile = one.file;
        surroundings.answers.exported = {5, path(u"a.csv"_s)};
        surroundings.answers.orientation = 1;
        surroundings.answers.whileOpen = [this] { window.close(); };
        if (one.button != nullptr)
            press(one.button);
        else
            QTest::mouseClick(window.findChild<QWidget*>(u"Command1"_s), Qt::LeftButton);
        surroundings.answers.whileOpen = nullptr;
        const QStringList opened = takeOpened();
        ASSERT_EQ(opened.size(), 1) << one.name;
        EXPECT_TRUE(opened[0].startsWith(one.opened[0])) << one.name;
        EXPECT_TRUE(files().isEmpty()) << one.name;
        EXPECT_TRUE(surroundings.plain.isEmpty()) << one.name;
        EXPECT_TRUE(surroundings.messages.messages.isEmpty()) << one.name;
        EXPECT_FALSE(window.isLoaded()) << one.name;
    }
}

TEST_F(OutputTest, outputsSpeakOfTheReportThatIsShown) {
    window.findChild<controls::TickList*>(u"cmbDepozit"_s)->setTicked(0, true);
    load();
    const auto exported = [this] {
        surroundings.answers.exported = {24, path(u"a.html"_s)};
        press(u"export");
        QFile file(path(u"a.html"_s));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QString::fromUtf8(file.readAll());
    };
    const QString before = exported();
    ASSERT_TRUE(before.contains(u"Depozit"_s)) << before.toStdString();
    const QString name = takeOpened().at(0).section(u'/', -1);
    EXPECT_EQ(name, u"Facturi Import Furnizori 2003-07-01 - 2003-07-15.pdf"_s);

    // A run that fails before it is handed over leaves the shown report; so does a second call.
    window.findChild<QWidget*>(u"cmdViz"_s)->setFocus();
    QTest::mouseClick(window.findChild<QWidget*>(u"cmdViz"_s), Qt::LeftButton);
    window.findChild<controls::TickList*>(u"cmbDepozit"_s)->setTicked(0, false);
    FakeAnswer bad = invoices;
    bad.openError = base::Error(base::kStatementError, u"bad"_s);
    connection->answer(u"AS TipRaport"_s, bad);
    QTest::mouseClick(window.findChild<QWidget*>(u"Raport"_s), Qt::LeftButton);
    ASSERT_EQ(surroundings.messages.messages.size(), 1);
    EXPECT_EQ(exported(), before);
    EXPECT_EQ(takeOpened().at(0).section(u'/', -1), name);

    window.setPriza(db::Connection(connection->asConnection()));
    window.Incarca(u"Export"_s, QDate(2003, 9, 20), {});
    EXPECT_EQ(exported(), before);
    EXPECT_EQ(takeOpened().at(0).section(u'/', -1), name);
}

TEST_F(OutputTest, theMenusOfTheViewersBoxesAreRomanian) {
    auto* search = viewer->findChild<QLineEdit*>(u"crwSearchBox"_s);
    ASSERT_NE(search, nullptr);
    search->setText(u"a"_s);
    emit search->customContextMenuRequested({});
    const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->actions().constLast()->text().startsWith(u"Selectează tot"_s));
    QApplication::activePopupWidget()->close();
}

}  // namespace velcoran::tests
