#include "dialog_output.h"

#include "form/busy/activity.h"
#include "surroundings.h"

#include "base/error.h"
#include "com/error_information.h"
#include "db/connection.h"
#include "dialogs/print_job.h"
#include "dialogs/progress.h"
#include "report/export/formats.h"
#include "report/layout/document.h"
#include "report/report.h"
#include "viewer/report_viewer.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QWidget>

#include <velcoran/dialogs.h>

#include <utility>

namespace velcoran::form {

using namespace Qt::StringLiterals;
using dialogs::PrintRequest;

namespace {

/// A text that goes into a dialog's choice and may come back as another one: whoever replaces it frees the first, and
/// what stands at last is ours.
class ChoiceText {
public:
    ChoiceText(const QString& text, com::Bstr& place) : m_place(place) { m_place = com::toText(text).release(); }
    ~ChoiceText() { com::freeText(m_place); }
    ChoiceText(const ChoiceText&) = delete;
    ChoiceText& operator=(const ChoiceText&) = delete;

    [[nodiscard]] QString text() const { return com::toQString(m_place); }

private:
    com::Bstr& m_place;
};

std::shared_ptr<const report::Document> shownDocument(const OutputSubject& subject) {
    auto document = subject.viewer.document();
    if (!document) throw base::Error(base::kObjectNotSet, u"Nu este niciun raport încărcat."_s);
    return document;
}

void requireSheet(const report::PageSetup& setup) {
    const bool isLeft = setup.left.value >= 0 && setup.top.value >= 0 && setup.right.value >= 0 &&
                        setup.bottom.value >= 0 && setup.left + setup.right < setup.width &&
                        setup.top + setup.bottom < setup.height;
    if (!isLeft) throw base::Error(base::kInvalidProcedureCall, u"Marginile nu lasă loc pe foaie."_s);
}

/// Where a first export is offered to go.
QString documentsFolder() {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

}  // namespace

DialogOutput::DialogOutput(QWidget& window, Activity& activity, Surroundings& surroundings, OutputMemory& memory)
    : m_window(window), m_activity(activity), m_surroundings(surroundings), m_memory(memory) {}

DialogOutput::~DialogOutput() = default;

/// Opens a dialog. @return false when the user cancelled @throws Cancelled when the window is to close by then
template <class Dialog, class Choose>
bool DialogOutput::isChosen(const com::Ref<Dialog>& dialog, Choose choose) const {
    com::HResult result = com::kFalse;
    m_activity.callHost([&] { result = choose(); });
    if (m_activity.isClosing()) throw base::Cancelled();
    if (com::failed(result)) db::throwError(result, dialog.get());
    return result == com::kOk;
}

template <class Dialog>
com::Ref<Dialog> DialogOutput::newDialog(com::Ref<Dialog> (Surroundings::*make)()) const {
    com::Ref<Dialog> dialog;
    m_activity.callHost([&] { dialog = (m_surroundings.*make)(); });
    if (m_activity.isClosing()) throw base::Cancelled();
    return dialog;
}

std::uintptr_t DialogOutput::windowHandle() const { return static_cast<std::uintptr_t>(m_window.internalWinId()); }

void DialogOutput::printOut(const OutputSubject& subject) {
    const auto document = shownDocument(subject);
    if (!m_printer.isEmpty()) dialogs::requirePrinter(m_printer);
    const auto dialog = newDialog(&Surroundings::newPrintDialog);
    if (!dialog) return;
    PrintChoice choice{nullptr, nullptr, 1, 0, 1, 1};
    const ChoiceText printer(m_printer, choice.printer);
    const ChoiceText file(QString(), choice.file);
    if (!isChosen(dialog, [&] { return dialog->Choose(windowHandle(), document->pageCount(), &choice); })) return;
    const PrintRequest request{printer.text(),  file.text(),   choice.firstPage,
                               choice.lastPage, choice.copies, choice.isCollated != 0};
    if (request.file.isEmpty()) dialogs::requirePrinter(request.printer);
    system::WorkProgress progress;
    const Activity::Work work(m_activity, [&progress] { progress.stop(); });
    dialogs::runWithProgress(m_window, m_activity, u"Se tipărește raportul…"_s, progress,
                             [&] { dialogs::printDocument(*document, request, progress); });
}

bool DialogOutput::printerSetup(const OutputSubject& subject) {
    const auto dialog = newDialog(&Surroundings::newPrinterSetupDialog);
    if (!dialog) return false;
    const report::PageSetup& present = subject.viewer.pageSetup();
    PrinterSetup choice{nullptr,
                        nullptr,
                        present.isLandscape ? kLandscape : kPortrait,
                        present.left.value,
                        present.top.value,
                        present.right.value,
                        present.bottom.value};
    const ChoiceText printer(m_printer, choice.printer);
    const ChoiceText paper(present.paper, choice.paper);
    if (!isChosen(dialog, [&] { return dialog->Choose(windowHandle(), &choice); })) return false;
    report::PageSetup setup = report::pageSetup(paper.text(), choice.orientation == kLandscape);
    setup.left = {choice.left};
    setup.top = {choice.top};
    setup.right = {choice.right};
    setup.bottom = {choice.bottom};
    requireSheet(setup);
    m_printer = printer.text();
    subject.viewer.setPageSetup(setup);
    return true;
}

void DialogOutput::resetExportOptions() {
    m_formatType = 0;
    m_file.clear();
}

QString DialogOutput::suggestedFile(const OutputSubject& subject) const {
    const QString period = subject.report ? subject.report->snapshot().text(report::ObjectRole::Period) : QString();
    const QString title = subject.report ? subject.report->request().fileTitle : m_window.windowTitle();
    const QString name = report::suggestedFileName(title, period, report::kPdf);
    return QDir(QFileInfo(m_memory.folder).isDir() ? m_memory.folder : documentsFolder()).filePath(name);
}

void DialogOutput::promptForExportOptions(const OutputSubject& subject) {
    const auto dialog = newDialog(&Surroundings::newExportDialog);
    if (!dialog) throw base::Cancelled();
    std::vector<velcoran::ExportFormat> formats;
    for (const report::ExportFormat& format : report::exportFormats())
        formats.push_back({format.type, reinterpret_cast<const char16_t*>(format.name.utf16()),
                           reinterpret_cast<const char16_t*>(format.extension.utf16())});
    com::Text file;
    std::int32_t type = 0;
    const com::Text suggested = com::toText(suggestedFile(subject));
    const bool hasChosen = isChosen(dialog, [&] {
        return dialog->Choose(windowHandle(), formats.data(), static_cast<std::uint32_t>(formats.size()),
                              suggested.get(), &type, file.receive());
    });
    if (!hasChosen) throw base::Cancelled();
    m_formatType = type;
    m_file = com::toQString(file.get());
}

void DialogOutput::exportReport(const OutputSubject& subject) {
    const auto document = shownDocument(subject);
    auto control = std::make_unique<report::ExportControl>();
    try {
        const Activity::Work work(m_activity, [&progress = *control->progress] { progress.stop(); });
        dialogs::runWithProgress(m_window, m_activity, u"Se exportă raportul…"_s, *control->progress,
                                 [type = m_formatType, file = m_file, &document, &used = *control] {
                                     report::exportReport(type, document, file, used);
                                 });
    } catch (const base::Cancelled&) {
        // What could not be broken off goes on by itself; it is waited for when the window goes.
        m_stopped.push_back(std::move(control));
        throw;
    }
    m_memory.folder = QFileInfo(m_file).absolutePath();
}

}  // namespace velcoran::form
