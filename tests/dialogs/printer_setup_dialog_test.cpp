#include "dialogs/printer_setup_dialog.h"

#include "report/layout/page_setup.h"
#include "support/test_data.h"

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;

namespace {

/// The dialog, shown, with the focus where it starts.
class SetupByKeys {
public:
    explicit SetupByKeys(const QStringList& printers = {}, const QString& printer = {},
                         const QString& defaultPrinter = {})
        : dialog(nullptr, printers, printer, defaultPrinter, report::pageSetup(u"A4"_s, true)) {
        dialog.show();
        dialog.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : &dialog, key, modifiers);
    }
    /// A button that is pressed by its letter goes down for a moment before it acts.
    void turnUpright() {
        press(Qt::Key_P, Qt::AltModifier);
        EXPECT_TRUE(QTest::qWaitFor([this] { return part<QRadioButton>(u"portrait").isChecked(); }));
    }
    template <class Widget>
    Widget& part(const char16_t* name) {
        return *dialog.findChild<Widget*>(QString::fromUtf16(name));
    }

    PrinterSetupDialog dialog;
};

TEST(PrinterSetupDialog, offersThePrintersThatThereAre) {
    struct Case {
        const char* name;
        QStringList printers;
        QString chosen, byDefault, shown, answer;
    };
    const QStringList two{u"Birou"_s, u"Depozit"_s};
    const Case cases[] = {
        {"none", {}, {}, {}, u"(niciuna)"_s, {}},
        {"none any more", {}, u"Birou"_s, {}, u"(niciuna)"_s, {}},
        {"the system's default", two, {}, u"Depozit"_s, u"Depozit"_s, u"Depozit"_s},
        {"the chosen one", two, u"Birou"_s, u"Depozit"_s, u"Birou"_s, u"Birou"_s},
        {"the chosen one is gone", two, u"Hala"_s, u"Depozit"_s, u"Depozit"_s, u"Depozit"_s},
    };
    for (const Case& each : cases) {
        const PrinterSetupDialog dialog(nullptr, each.printers, each.chosen, each.byDefault,
                                        report::pageSetup(u"A4"_s, true));
        EXPECT_EQ(dialog.findChild<QComboBox*>(u"printer"_s)->currentText(), each.shown) << each.name;
        EXPECT_EQ(dialog.printer(), each.answer) << each.name;
    }
}

TEST(PrinterSetupDialog, isWorkedByKeysAlone) {
    SetupByKeys user;
    EXPECT_EQ(user.dialog.setup(), report::pageSetup(u"A4"_s, true)) << "untouched, the set-up stays to the twip";
    user.press(Qt::Key_H, Qt::AltModifier);
    user.press(Qt::Key_Down);
    EXPECT_EQ(user.part<QComboBox>(u"paper").currentText(), u"A3"_s);
    user.turnUpright();
    user.press(Qt::Key_T, Qt::AltModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), u"12,5"_s);
    user.press(Qt::Key_Return);
    EXPECT_EQ(user.dialog.result(), QDialog::Accepted);
    const report::PageSetup setup = user.dialog.setup();
    EXPECT_EQ(setup.paper, u"A3"_s);
    EXPECT_FALSE(setup.isLandscape);
    EXPECT_LT(setup.width, setup.height);
    EXPECT_EQ(setup.left.value, 709) << "12.5 mm";
    EXPECT_EQ(setup.right.value, 567) << "10 mm";
}

TEST(PrinterSetupDialog, escapeCancels) {
    SetupByKeys user;
    user.press(Qt::Key_Escape);
    EXPECT_FALSE(user.dialog.isVisible());
    EXPECT_EQ(user.dialog.result(), QDialog::Rejected);
}

TEST(PrinterSetupDialog, aSmallerSheetTakesSmallerMargins) {
    SetupByKeys user;
    auto& left = user.part<QDoubleSpinBox>(u"left");
    left.setValue(50);
    user.part<QComboBox>(u"paper").setCurrentText(u"A5"_s);
    user.turnUpright();
    EXPECT_EQ(left.value(), 37) << "a quarter of 148 mm";
    const report::PageSetup setup = user.dialog.setup();
    EXPECT_LE(setup.left.value + setup.right.value, setup.width.value / 2);
}

}  // namespace
}  // namespace velcoran::dialogs
