#include "dialogs/default_dialogs.h"

#include "com/error_information.h"
#include "dialog_driver.h"
#include "support/scripted_printers.h"
#include "support/test_data.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include <gtest/gtest.h>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;

namespace {

/// What a choice says in its texts; they are freed.
QString taken(com::Bstr& text) {
    const QString words = com::toQString(text);
    com::freeText(std::exchange(text, nullptr));
    return words;
}

template <class Part>
Part& partOf(const QDialog& dialog, const char16_t* name) {
    auto* part = dialog.findChild<Part*>(QString::fromUtf16(name));
    if (part == nullptr) throw std::runtime_error("no part " + QString::fromUtf16(name).toStdString());
    return *part;
}

class DefaultDialogs : public testing::Test {
protected:
    DefaultDialogs() {
        tests::scriptedPrinters() = {.names = {u"Birou"_s, u"Depozit"_s}, .byDefault = u"Birou"_s, .jobs = {}};
        window.show();
    }
    ~DefaultDialogs() override { tests::scriptedPrinters() = {}; }
    [[nodiscard]] std::uintptr_t handle() const { return static_cast<std::uintptr_t>(window.internalWinId()); }

    QWidget window;
};

TEST_F(DefaultDialogs, theExportDialogGivesTypeAndFile) {
    const ExportFormat formats[] = {{31, u"Document PDF", u"pdf"}, {36, u"Registru Excel (XLSX)", u"xlsx"}};
    const auto suggested = com::toText(u"/tmp/raport.pdf"_s);
    for (const bool isAccepted : {true, false}) {
        const tests::DialogDriver user([&](QDialog& dialog) {
            EXPECT_EQ(dialog.parentWidget(), &window);
            EXPECT_EQ(partOf<QLineEdit>(dialog, u"file").text(), u"/tmp/raport.pdf"_s);
            partOf<QListWidget>(dialog, u"formats").setCurrentRow(1);
            partOf<QLineEdit>(dialog, u"file").setText(u"/tmp/niciunul/../velcoran-nou.xlsx"_s);
            partOf<QPushButton>(dialog, isAccepted ? u"ok" : u"cancel").click();
        });
        std::int32_t type = 0;
        com::Bstr file = nullptr;
        const com::HResult result = makeExportDialog()->Choose(handle(), formats, 2, suggested.get(), &type, &file);
        EXPECT_EQ(result, isAccepted ? com::kOk : com::kFalse);
        EXPECT_EQ(type, isAccepted ? 36 : 0);
        EXPECT_EQ(taken(file), isAccepted ? u"/tmp/velcoran-nou.xlsx"_s : QString());
    }
    std::int32_t type = 0;
    com::Bstr file = nullptr;
    EXPECT_EQ(makeExportDialog()->Choose(handle(), formats, 0, suggested.get(), &type, &file), com::kInvalidArgument);
}

TEST_F(DefaultDialogs, thePrintDialogGivesPrinterPagesAndCopies) {
    for (const bool isAccepted : {true, false}) {
        PrintChoice choice{com::toText(u"Depozit"_s).release(), nullptr, 1, 0, 3, 0};
        const tests::DialogDriver user([&](QDialog& dialog) {
            EXPECT_EQ(partOf<QComboBox>(dialog, u"printers").currentText(), u"Depozit"_s);
            partOf<QComboBox>(dialog, u"printers").setCurrentText(u"Birou"_s);
            EXPECT_EQ(partOf<QSpinBox>(dialog, u"copies").value(), 3);
            EXPECT_FALSE(partOf<QCheckBox>(dialog, u"collate").isChecked());
            partOf<QCheckBox>(dialog, u"collate").click();
            EXPECT_EQ(partOf<QSpinBox>(dialog, u"to").maximum(), 7);
            partOf<QRadioButton>(dialog, u"printRange").click();
            partOf<QSpinBox>(dialog, u"from").setValue(2);
            partOf<QSpinBox>(dialog, u"to").setValue(5);
            isAccepted ? dialog.accept() : dialog.reject();
        });
        EXPECT_EQ(makePrintDialog()->Choose(handle(), 7, &choice), isAccepted ? com::kOk : com::kFalse);
        EXPECT_EQ(taken(choice.printer), isAccepted ? u"Birou"_s : u"Depozit"_s);
        EXPECT_EQ(taken(choice.file), QString());
        EXPECT_EQ(choice.firstPage, isAccepted ? 2 : 1);
        EXPECT_EQ(choice.lastPage, isAccepted ? 5 : 0);
        EXPECT_EQ(choice.copies, 3);
        EXPECT_EQ(choice.isCollated, isAccepted ? 1 : 0);
    }
    EXPECT_EQ(makePrintDialog()->Choose(handle(), 7, nullptr), com::kNullPointer);
}

TEST_F(DefaultDialogs, thePrinterSetUpGivesPrinterAndSheet) {
    for (const bool isAccepted : {true, false}) {
        PrinterSetup setup{nullptr, com::toText(u"A4"_s).release(), kLandscape, 100, 200, 300, 400};
        const tests::DialogDriver user([&](QDialog& dialog) {
            EXPECT_EQ(partOf<QComboBox>(dialog, u"printer").currentText(), u"Birou"_s);
            partOf<QComboBox>(dialog, u"printer").setCurrentText(u"Depozit"_s);
            partOf<QComboBox>(dialog, u"paper").setCurrentText(u"A3"_s);
            partOf<QRadioButton>(dialog, u"portrait").click();
            isAccepted ? dialog.accept() : dialog.reject();
        });
        EXPECT_EQ(makePrinterSetupDialog()->Choose(handle(), &setup), isAccepted ? com::kOk : com::kFalse);
        EXPECT_EQ(taken(setup.printer), isAccepted ? u"Depozit"_s : QString());
        EXPECT_EQ(taken(setup.paper), isAccepted ? u"A3"_s : u"A4"_s);
        EXPECT_EQ(setup.orientation, isAccepted ? kPortrait : kLandscape);
        const int sides[] = {setup.left, setup.top, setup.right, setup.bottom};
        for (int side = 0; side < 4; ++side)
            EXPECT_NEAR(sides[side], 100 * (side + 1), 3) << "to a tenth of a millimetre";
    }
    EXPECT_EQ(makePrinterSetupDialog()->Choose(handle(), nullptr), com::kNullPointer);
}

}  // namespace
}  // namespace velcoran::dialogs
