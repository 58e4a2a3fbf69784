#include "print_dialog.h"

#include "desktop/own_look.h"
#include "dialog_language.h"
#include "dialog_runner.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QStandardPaths>
#include <QTabWidget>

#include <algorithm>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;

namespace {

/// Parts of Qt's dialog that ask for what PrintRequest does not hold: they would promise what is not done.
constexpr const char16_t* kUnused[] = {u"properties",   u"reverse",          u"pageSetCombo",
                                       u"pageSetLabel", u"pagesRadioButton", u"pagesLineEdit"};

/// The dialog shows some of its parts again for another printer: in a hidden place they stay unseen.
void hideUnused(QDialog& dialog) {
    auto* place = new QWidget(&dialog);
    place->hide();
    for (const char16_t* name : kUnused)
        if (auto* part = dialog.findChild<QWidget*>(QString::fromUtf16(name))) part->setParent(place);
    for (auto* tabs : dialog.findChildren<QTabWidget*>())
        for (int index = 1; index < tabs->count(); ++index) tabs->setTabVisible(index, false);
}

/// Pages and copies are what people come for: they stand open from the start.
void openOptions(const QDialog& dialog) {
    const QString caption = QCoreApplication::translate("QPrintDialog", "&Options >>");
    for (auto* button : dialog.findChildren<QPushButton*>())
        if (button->text() == caption) return button->click();
}

QString suggestedFile() {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(QFileInfo(documents).isDir() ? documents : QDir::homePath()).filePath(u"raport.pdf"_s);
}

void prepare(QPrintDialog& dialog, int pageCount) {
    dialog.setWindowTitle(u"Tipărește raportul"_s);
    dialog.setLocale(QLocale(QLocale::Romanian, QLocale::Romania));
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintPageRange |
                      QAbstractPrintDialog::PrintCollateCopies);
    dialog.setMinMax(1, pageCount);
    dialog.setFromTo(1, pageCount);
}

void readChoice(const QPrinter& printer, const QPrintDialog& dialog, PrintRequest& request) {
    const bool isFile = printer.outputFormat() == QPrinter::PdfFormat || !printer.outputFileName().isEmpty();
    request.file = isFile ? QFileInfo(printer.outputFileName()).absoluteFilePath() : QString();
    request.printer = isFile ? request.printer : printer.printerName();
    const bool isRange = dialog.printRange() == QAbstractPrintDialog::PageRange;
    request.firstPage = isRange ? dialog.fromPage() : 1;
    request.lastPage = isRange ? dialog.toPage() : 0;
    request.copies = printer.copyCount();
    request.isCollated = printer.collateCopies();
}

}  // namespace

bool choosePrint(QWidget* window, int pageCount, PrintRequest& request) {
    const DialogLanguage language;
    QPrinter printer(QPrinter::HighResolution);
    const QString name = request.printer.isEmpty() ? defaultPrinterName() : request.printer;
    if (name.isEmpty()) {
        // Without a printer the dialog can only print into a file.
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(suggestedFile());
    } else {
        printer.setPrinterName(name);
    }
    printer.setCopyCount(std::max(request.copies, 1));
    printer.setCollateCopies(request.isCollated);
    QPrintDialog dialog(&printer, window);  // reads the copies here
    const desktop::OwnLook look(dialog);
    prepare(dialog, pageCount);
    openOptions(dialog);
    hideUnused(dialog);
    if (!runDialog(dialog)) return false;
    readChoice(printer, dialog, request);
    return true;
}

}  // namespace velcoran::dialogs
