#pragma once

#include "system/work_progress.h"
#include "system/worker.h"

#include <QLocale>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace velcoran::report {

class Document;

/// The format that is proposed first.
constexpr int kPdf = 31;

/// A format as the export dialog offers it.
struct ExportFormat {
    int type = 0;
    QString name;       ///< as the user reads it
    QString extension;  ///< without the point
};

/// All formats in the dialog's order, the engine's own two last. Those two are chosen, never written.
[[nodiscard]] const std::vector<ExportFormat>& exportFormats();
/// The format of a type; null when there is none.
[[nodiscard]] const ExportFormat* exportFormat(int type);
/// True for the formats that are written; false for the engine's own two and for what is no format.
[[nodiscard]] bool isWritten(int type);

/// A name for the file: "Facturi Import Furnizori 2026-03-01 - 2026-03-15.pdf".
/// @param title   what the report is called; what file systems refuse is replaced by "-"
/// @param period  a text with two dates dd/mm/yyyy, whatever their separator; left out where it has no two
/// @param type    without a known type, no extension
[[nodiscard]] QString suggestedFileName(const QString& title, const QString& period, int type);

/// What an export is told, and how far it is. The caller sets the texts before the
/// export and keeps the object until it may wait: its destructor waits for the rest of a stopped export that could not
/// be broken off.
class ExportControl {
public:
    ExportControl() = default;
    ExportControl(const ExportControl&) = delete;
    ExportControl& operator=(const ExportControl&) = delete;

    QLocale locale{QLocale::Romanian};  ///< decimal separator, and with it the separator of CSV
    /// Counts pages of PDF, else rows, of a report of totals groups.
    std::shared_ptr<system::WorkProgress> progress = std::make_shared<system::WorkProgress>();

    /// Takes over work that goes on after a stop.
    void keep(system::Worker rest) { m_rests.push_back(std::move(rest)); }

private:
    std::vector<system::Worker> m_rests;
};

/// Writes a document into a file in a format, for any thread. The file is written beside its place and moved there when
/// whole: after a failure or a stop, what was there stands as it was and nothing else is left. A device or a pipe is
/// written directly.
/// @param file  full path; the folder must exist
/// @throws Error kFormatNotAvailable for an unknown type, for the engine's own two, and for what the format cannot
/// hold;
///         kPathAccess with the path and the system's words when the file cannot be written; Cancelled after a stop
void exportReport(int type, const std::shared_ptr<const Document>& document, const QString& file,
                  ExportControl& control);

}  // namespace velcoran::report
