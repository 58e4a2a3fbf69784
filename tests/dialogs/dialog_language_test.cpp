#include "dialogs/dialog_language.h"

#include "dialog_driver.h"
#include "dialogs/export_dialog.h"
#include "dialogs/print_dialog.h"
#include "dialogs/printer_setup_dialog.h"
#include "report/layout/page_setup.h"
#include "support/test_data.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTranslator>
#include <QTreeView>

#include <QFile>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <set>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;

namespace {

/// Hidden parts are those that another printer, folder or choice would show.
enum class Parts { visible, all };

/// Everything that a person can read in a widget and its parts: texts, titles, tooltips, items, headings, commands.
class TextWalk {
public:
    explicit TextWalk(const QWidget& root, Parts parts = Parts::visible) {
        walk(root);
        for (const auto* part : root.findChildren<QWidget*>())
            if (parts == Parts::all || part->isVisibleTo(&root)) walk(*part);
        for (const auto* action : root.findChildren<QAction*>()) add(action->text());
    }
    QStringList texts;

private:
    void add(const QString& text) {
        // Names of files and fonts are nobody's language.
        if (!text.contains(u'/') && text != QDir::home().dirName()) texts.append(text);
    }
    /// The kinds of what a list of files shows; the names are the files' own.
    void addKinds(const QTreeView& tree) {
        constexpr int kKind = 2;
        for (int row = 0; row < tree.model()->rowCount(tree.rootIndex()); ++row)
            add(tree.model()->index(row, kKind, tree.rootIndex()).data().toString());
    }
    void walk(const QWidget& part) {
        for (const char* name : {"windowTitle", "title", "toolTip", "placeholderText", "accessibleName", "suffix"})
            add(part.property(name).toString());
        if (qobject_cast<const QLineEdit*>(&part) == nullptr) add(part.property("text").toString());
        if (const auto* combo = qobject_cast<const QComboBox*>(&part))
            for (int index = 0; index < combo->count(); ++index) add(combo->itemText(index));
        if (const auto* tabs = qobject_cast<const QTabWidget*>(&part))
            for (int index = 0; index < tabs->count(); ++index)
                if (tabs->isTabVisible(index)) add(tabs->tabText(index));
        if (const auto* header = qobject_cast<const QHeaderView*>(&part))
            for (int index = 0; index < header->count(); ++index)
                add(header->model()->headerData(index, header->orientation()).toString());
        if (const auto* tree = qobject_cast<const QTreeView*>(&part)) addKinds(*tree);
        for (const QAction* action : part.actions()) add(action->text());
    }
};

struct WalkedDialog {
    const char* name;
    std::function<std::unique_ptr<QDialog>()> make;
};

std::unique_ptr<QDialog> fileDialog(QFileDialog::AcceptMode mode) {
    auto dialog = std::make_unique<QFileDialog>();
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setViewMode(QFileDialog::Detail);
    dialog->setAcceptMode(mode);
    static const QTemporaryDir folder;
    QDir(folder.path()).mkdir(u"2026"_s);
    dialog->setDirectory(folder.path());
    return dialog;
}

std::unique_ptr<QDialog> messageBox() {
    auto box = std::make_unique<QMessageBox>();
    for (int button = QMessageBox::Ok; button <= QMessageBox::RestoreDefaults; button <<= 1)
        box->addButton(static_cast<QMessageBox::StandardButton>(button));
    box->setDetailedText(u"1"_s);
    return box;
}

QPrinter& filePrinter() {
    static QPrinter printer;
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(u"/tmp/x.pdf"_s);
    return printer;
}

const WalkedDialog kDialogs[] = {
    {"save", [] { return fileDialog(QFileDialog::AcceptSave); }},
    {"open", [] { return fileDialog(QFileDialog::AcceptOpen); }},
    {"message", messageBox},
    {"print", [] { return std::make_unique<QPrintDialog>(&filePrinter()); }},
};

QStringList textsOf(const WalkedDialog& each) {
    const auto dialog = each.make();
    dialog->show();
    // A list of files is read on a thread of Qt.
    if (const auto* files = dialog->findChild<QTreeView*>()) {
        EXPECT_TRUE(QTest::qWaitFor([files] { return files->model()->rowCount(files->rootIndex()) > 0; }));
    }
    return TextWalk(*dialog, Parts::all).texts;
}

/// A text that is the same in both languages because the words are.
bool isSharedWord(const QString& text) {
    static const std::set<QString> kShared{u"OK"_s, u"&OK"_s, u"..."_s, u"Color"_s};
    const bool hasLetter = std::any_of(text.begin(), text.end(), [](QChar letter) { return letter.isLetter(); });
    return !hasLetter || kShared.contains(text) || text.startsWith(u"qt_"_s);
}

struct Translation {
    QString context, source, text;
};

/// The texts as translators edit them.
std::vector<Translation> translations() {
    QFile file(QStringLiteral(VELCORAN_TRANSLATIONS));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader reader(&file);
    std::vector<Translation> all;
    QString context;
    QString source;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) continue;
        if (reader.name() == u"name") context = reader.readElementText();
        if (reader.name() == u"source") source = reader.readElementText();
        if (reader.name() == u"translation") all.push_back({context, source, reader.readElementText()});
    }
    return all;
}

TEST(DialogLanguage, everyTextOfQtsDialogsIsRomanian) {
    for (const WalkedDialog& each : kDialogs) {
        const QStringList foreign = textsOf(each);
        const DialogLanguage language;
        const QStringList romanian = textsOf(each);
        EXPECT_GT(romanian.size(), 5) << each.name;
        for (const QString& text : romanian)
            EXPECT_TRUE(isSharedWord(text) || !foreign.contains(text)) << each.name << ": " << text.toStdString();
    }
}

TEST(DialogLanguage, theMenuOfATextFieldIsRomanian) {
    const DialogLanguage language;
    QLineEdit field;
    const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
    QStringList texts;
    for (const QAction* action : menu->actions())
        if (!action->isSeparator()) texts.append(action->text().section(u'\t', 0, 0));
    EXPECT_EQ(texts, (QStringList{u"&Anulează"_s, u"&Refă"_s, u"&Decupează"_s, u"&Copiază"_s, u"&Lipește"_s,
                                  u"Șterge"_s, u"Selectează tot"_s}));
}

/// The print dialog as the window opens it asks for nothing that is not done, and cancelling it changes nothing.
TEST(DialogLanguage, thePrintDialogIsRomanianAndCanBeCancelled) {
    PrintRequest request{.printer = u"P"_s, .firstPage = 1, .lastPage = 0};
    QStringList texts;
    const tests::DialogDriver user([&](QDialog& dialog) { texts = TextWalk(dialog).texts; });
    EXPECT_FALSE(choosePrint(nullptr, 7, request));
    ASSERT_TRUE(user.wasOpen());
    for (const char16_t* text : {u"Tipărește raportul", u"Pagini de tipărit", u"Exemplare", u"Renunță", u"&Tipărește"})
        EXPECT_TRUE(texts.contains(QString::fromUtf16(text))) << QString::fromUtf16(text).toStdString();
    EXPECT_FALSE(texts.contains(u"Setul de pagini:"_s)) << "nobody would follow the choice";
    for (const Translation& one : translations()) {
        const bool isRomanian = !texts.contains(one.source) || one.source == one.text || isSharedWord(one.source);
        EXPECT_TRUE(isRomanian) << one.source.toStdString();
    }
    EXPECT_EQ(request.printer, u"P"_s);
}

TEST(Translations, keepPlaceholdersAndMnemonicsAndNoneIsLost) {
    const DialogLanguage language;
    std::set<std::pair<QString, QString>> seen;
    for (const Translation& one : translations()) {
        EXPECT_TRUE(seen.emplace(one.context, one.source).second) << "twice: " << one.source.toStdString();
        EXPECT_EQ(one.source.contains(u"%1"), one.text.contains(u"%1")) << one.source.toStdString();
        EXPECT_EQ(one.source.count(u'&'), one.text.count(u'&')) << one.source.toStdString();
        EXPECT_EQ(QCoreApplication::translate(one.context.toUtf8(), one.source.toUtf8()), one.text);
    }
    EXPECT_GT(seen.size(), 200U);
}

/// A host's translator and a widget of the host that is told of changes of language.
class Host : public QWidget {
public:
    Host() { QCoreApplication::instance()->installEventFilter(this); }
    int changes = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::LanguageChange) ++changes;
        return false;
    }
    void changeEvent(QEvent* event) override {
        if (event->type() == QEvent::LanguageChange) ++changes;
    }
};

class HostTranslator final : public QTranslator {
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* context, const char*, const char*, int) const override {
        return QLatin1String(context) == QLatin1String("Host") ? u"text al gazdei"_s : QString();
    }
};

TEST(DialogLanguage, leavesTheHostsLanguageAlone) {
    HostTranslator translator;
    QCoreApplication::installTranslator(&translator);
    const auto cancel = [] { return QCoreApplication::translate("QPlatformTheme", "Cancel"); };
    Host host;
    {
        const DialogLanguage language;
        const DialogLanguage nested;
        EXPECT_EQ(cancel(), u"Renunță"_s);
        EXPECT_EQ(QCoreApplication::translate("Host", "Cancel"), u"text al gazdei"_s);
        EXPECT_EQ(QCoreApplication::translate("Other", "Cancel"), u"Cancel"_s);
    }
    EXPECT_EQ(cancel(), u"Cancel"_s);
    QCoreApplication::processEvents();
    EXPECT_EQ(host.changes, 0);
    QCoreApplication::removeTranslator(&translator);
    EXPECT_GT(host.changes, 0) << "the host's own changes still reach it";
}

}  // namespace
}  // namespace velcoran::dialogs
