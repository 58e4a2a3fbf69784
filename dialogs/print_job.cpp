#include "print_job.h"

#include "system/work_progress.h"

#include "base/error.h"
#include "report/layout/document.h"
#include "report/layout/page.h"
#include "system/durable_file.h"
#include "system/write_signals.h"

#include <QFile>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

#include <algorithm>
#include <utility>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;

namespace {

struct PaperRow {
    const char16_t* name;
    QPageSize::PageSizeId size;
};
constexpr PaperRow kPapers[] = {
    {u"A4", QPageSize::A4},         {u"A3", QPageSize::A3},       {u"A5", QPageSize::A5},
    {u"Letter", QPageSize::Letter}, {u"Legal", QPageSize::Legal},
};

QPageSize sheetOf(const report::PageSetup& setup) {
    const auto row = std::find_if(std::begin(kPapers), std::end(kPapers),
                                  [&setup](const PaperRow& each) { return setup.paper == QStringView(each.name); });
    if (row != std::end(kPapers)) return QPageSize(row->size);
    const auto [narrow, wide] = std::minmax(setup.width, setup.height);
    return QPageSize(QSizeF(narrow.toPoints(), wide.toPoints()), QPageSize::Point, setup.paper);
}

[[noreturn]] void failForPrinter(const QString& name) {
    throw base::Error(base::kInvalidProcedureCall, u"Imprimanta „%1” nu mai există."_s.arg(name));
}

struct PageRange {
    int first, last;
};

PageRange rangeOf(const PrintRequest& request, int pageCount) {
    const PageRange range{std::max(request.firstPage, 1),
                          request.lastPage <= 0 ? pageCount : std::min(request.lastPage, pageCount)};
    if (range.first > range.last)
        throw base::Error(base::kValueOutOfRange,
                          u"Raportul nu are paginile %1 - %2 (ultima pagină este %3)."_s.arg(request.firstPage)
                              .arg(request.lastPage)
                              .arg(pageCount));
    return range;
}

void setUp(QPrinter& printer, const report::Document& document) {
    const report::PageSetup& setup = document.setup();
    printer.setDocName(document.title());
    printer.setCreator(u"Velcoran"_s);
    printer.setFullPage(true);  // the document keeps its own margins
    printer.setPageSize(sheetOf(setup));
    printer.setPageOrientation(setup.isLandscape ? QPageLayout::Landscape : QPageLayout::Portrait);
}

/// @return false when the device takes no more
bool paintPages(QPrinter& printer, const report::Document& document, const std::vector<int>& pages,
                system::WorkProgress& progress) {
    QPainter painter;
    if (!painter.begin(&printer)) return false;
    const double pixelsPerTwip = printer.resolution() / 1440.0;
    int done = 0;
    for (const int number : pages) {
        if (progress.isStopped()) {
            printer.abort();
            throw base::Cancelled();
        }
        if (done > 0 && !printer.newPage()) return false;
        report::paintPage(painter, document.page({number}), pixelsPerTwip);
        ++done;
        progress.tell(done, static_cast<qint64>(pages.size()));
    }
    return painter.end() && printer.printerState() != QPrinter::Error;
}

/// Qt says nothing of a disk that is full: a PDF file that is whole ends with its mark.
bool isWhole(const QString& path) {
    constexpr qint64 kTailBytes = 32;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    file.seek(std::max<qint64>(0, file.size() - kTailBytes));
    return file.readAll().trimmed().endsWith("%%EOF");
}

void printIntoFile(const report::Document& document, const QString& file, PageRange range,
                   system::WorkProgress& progress) {
    const system::WriteSignals held;
    system::DurableFile place(file, system::DurableFile::Use::byPath);
    const QString temporary = QFile::decodeName(place.path());
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(temporary);
    setUp(printer, document);
    if (!paintPages(printer, document, pageSequence(range.first, range.last, 1, true), progress) || !isWhole(temporary))
        system::failToWrite(file, EIO);
    progress.throwIfStopped();
    place.commit();
}

void printOnPaper(const report::Document& document, const PrintRequest& request, PageRange range,
                  system::WorkProgress& progress) {
    requirePrinter(request.printer);
    const QString name = request.printer.isEmpty() ? defaultPrinterName() : request.printer;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::NativeFormat);
    printer.setPrinterName(name);
    // Without a printer behind it Qt's object would write a file that nobody asked for.
    if (printer.outputFormat() != QPrinter::NativeFormat) failForPrinter(name);
    setUp(printer, document);
    int copiesHere = std::max(request.copies, 1);
    if (printer.supportsMultipleCopies()) {
        printer.setCopyCount(std::exchange(copiesHere, 1));
        printer.setCollateCopies(request.isCollated);
    }
    if (!paintPages(printer, document, pageSequence(range.first, range.last, copiesHere, request.isCollated), progress))
        throw base::Error(base::kPrinterError, u"Imprimanta „%1” nu primește paginile."_s.arg(name));
}

}  // namespace

QStringList printerNames() { return QPrinterInfo::availablePrinterNames(); }

QString defaultPrinterName() {
    const QStringList names = printerNames();
    const QString byDefault = QPrinterInfo::defaultPrinterName();
    if (names.isEmpty() || names.contains(byDefault)) return names.isEmpty() ? QString() : byDefault;
    return names.first();
}

void requirePrinter(const QString& name) {
    const QStringList names = printerNames();
    if (names.isEmpty()) throw base::Error(base::kInvalidProcedureCall, u"Nu există nicio imprimantă."_s);
    if (!name.isEmpty() && !names.contains(name)) failForPrinter(name);
}

std::vector<int> pageSequence(int first, int last, int copies, bool isCollated) {
    std::vector<int> pages;
    if (isCollated) {
        for (int copy = 0; copy < copies; ++copy)
            for (int page = first; page <= last; ++page) pages.push_back(page);
    } else {
        for (int page = first; page <= last; ++page) pages.insert(pages.end(), static_cast<std::size_t>(copies), page);
    }
    return pages;
}

void printDocument(const report::Document& document, const PrintRequest& request, system::WorkProgress& progress) {
    const PageRange range = rangeOf(request, document.pageCount());
    if (request.file.isEmpty()) {
        printOnPaper(document, request, range, progress);
    } else {
        printIntoFile(document, request.file, range, progress);
    }
}

}  // namespace velcoran::dialogs
