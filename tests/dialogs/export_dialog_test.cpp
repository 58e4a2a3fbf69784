#include "dialogs/export_dialog.h"

#include "dialog_driver.h"
#include "dialogs/dialog_runner.h"
#include "support/test_data.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;

namespace {

const QList<OfferedFormat> kFormats{{31, u"Document PDF"_s, u"pdf"_s}, {36, u"Registru Excel (XLSX)"_s, u"xlsx"_s}};

TEST(WithExtension, changesTheExtensionOfAFormatAlone) {
    struct Case {
        const char16_t *file, *extension, *result;
    };
    const Case cases[] = {
        {u"/d/raport.pdf", u"xlsx", u"/d/raport.xlsx"},
        {u"/d/raport.PDF", u"xlsx", u"/d/raport.xlsx"},
        {u"/d/raport", u"pdf", u"/d/raport.pdf"},
        {u"/d/a SRL. 2026", u"pdf", u"/d/a SRL. 2026.pdf"},
        {u"/d/raport.xlsx", u"xlsx", u"/d/raport.xlsx"},
        {u"", u"pdf", u""},
        {u"/d.pdf/raport.2026", u"xlsx", u"/d.pdf/raport.2026.xlsx"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(withExtension(QString::fromUtf16(each.file), QString::fromUtf16(each.extension), kFormats),
                  QString::fromUtf16(each.result));
}

class ExportDialogTest : public testing::Test {
protected:
    ExportDialogTest() { dialog.show(); }
    [[nodiscard]] QString path(const QString& name) const { return m_folder.filePath(name); }
    void write(const QString& name) {
        QFile old(path(name));
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    }
    /// Presses Enter in the file's field.
    /// @param answer  the button that is pressed in a message; none for Enter
    /// @return        text of the message that came; empty for none
    QString acceptWith(int answer) {
        QString text;
        const tests::DialogDriver user([&](QDialog& box) {
            auto* message = qobject_cast<QMessageBox*>(&box);
            if (message == nullptr) return;
            text = message->text();
            if (answer == QMessageBox::NoButton) return QTest::keyClick(message, Qt::Key_Return);
            message->button(static_cast<QMessageBox::StandardButton>(answer))->click();
        });
        QTest::keyClick(&file, Qt::Key_Return);
        return text;
    }

    QTemporaryDir m_folder;
    ExportDialog dialog{nullptr, kFormats, m_folder.filePath(u"raport.pdf"_s)};
    QLineEdit& file = *dialog.findChild<QLineEdit*>(u"file"_s);
    QListWidget& formats = *dialog.findChild<QListWidget*>(u"formats"_s);
};

TEST_F(ExportDialogTest, theFormatGivesTheExtension) {
    QTest::keyClick(&formats, Qt::Key_Down);
    EXPECT_EQ(file.text(), path(u"raport.xlsx"_s));
    EXPECT_EQ(acceptWith(QMessageBox::Ok), QString());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.type(), 36);
    EXPECT_EQ(dialog.file(), path(u"raport.xlsx"_s));
}

TEST_F(ExportDialogTest, aNameAloneLiesInTheSuggestedFolder) {
    file.setText(u"  iulie  "_s);
    EXPECT_EQ(acceptWith(QMessageBox::Ok), QString());
    EXPECT_EQ(dialog.file(), path(u"iulie.pdf"_s));
}

TEST_F(ExportDialogTest, asksBeforeItReplaces) {
    write(u"raport.pdf"_s);
    for (const auto answer : {QMessageBox::No, QMessageBox::NoButton}) {
        EXPECT_EQ(acceptWith(answer), u"Fișierul „raport.pdf” există deja.\nÎl înlocuiți?"_s);
        EXPECT_TRUE(dialog.isVisible()) << "Enter alone loses no file";
    }
    EXPECT_FALSE(acceptWith(QMessageBox::Yes).isEmpty());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

TEST_F(ExportDialogTest, refusesWhatIsNoFile) {
    QDir(m_folder.path()).mkdir(u"sub"_s);
    struct Case {
        QString typed, words;
    };
    const Case cases[] = {
        {u" "_s, u"Scrieți numele fișierului."_s},
        {path(u"sub"_s), u"„%1” este un dosar. Scrieți și numele fișierului."_s.arg(path(u"sub"_s))},
        {path(u"lipsa/a.pdf"_s), u"Dosarul „%1” nu există."_s.arg(path(u"lipsa"_s))},
    };
    for (const Case& each : cases) {
        file.setText(each.typed);
        EXPECT_EQ(acceptWith(QMessageBox::Ok), each.words);
        EXPECT_TRUE(dialog.isVisible());
    }
}

TEST_F(ExportDialogTest, goesWithItsWindowButNotWhenThatIsMinimised) {
    for (const bool isMinimised : {true, false}) {
        QWidget window;
        window.show();
        ExportDialog asked(&window, kFormats, path(u"raport.pdf"_s));
        QTimer::singleShot(0, &window, [&] {
            if (!isMinimised) {
                window.hide();
                EXPECT_FALSE(asked.isVisible());
                return asked.reject();
            }
            QHideEvent hidden;
            QSpontaneKeyEvent::setSpontaneous(&hidden);  // as the window system tells it
            qApp->notify(&window, &hidden);
            EXPECT_TRUE(asked.isVisible());
            asked.accept();
        });
        EXPECT_EQ(runDialog(asked), isMinimised);
    }
}

}  // namespace
}  // namespace velcoran::dialogs
