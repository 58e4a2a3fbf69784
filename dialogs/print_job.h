#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace velcoran::report {
class Document;
}

namespace velcoran::system {
class WorkProgress;
}

namespace velcoran::dialogs {

/// What is printed and where. Pages count from 1.
struct PrintRequest {
    QString printer = {};  ///< empty for the system's default
    QString file = {};     ///< full path of a PDF file; empty for paper
    int firstPage = 1;     ///< smaller ones stand for the first page
    int lastPage = 0;      ///< 0, and numbers beyond the end, stand for the last page
    int copies = 1;        ///< of paper; a file holds its pages once
    bool isCollated = true;
};

/// Names of the printers of this machine; asks the system anew.
[[nodiscard]] QStringList printerNames();
/// Name of the system's default printer; the first one where the system has no default; empty without printers.
[[nodiscard]] QString defaultPrinterName();
/// @param name  empty for the system's default
/// @throws Error kInvalidProcedureCall when there is no such printer, or none at all
void requirePrinter(const QString& name);

/// Numbers of the pages in the order in which they leave a printer that cannot copy by itself.
[[nodiscard]] std::vector<int> pageSequence(int first, int last, int copies, bool isCollated);

/// Prints pages of a document as the screen shows them, on sheets of its page set-up. Any thread. A file is written
/// beside its place and moved there when whole; a stop takes an unfinished job back.
/// @throws Error kInvalidProcedureCall when there is no printer and no file, kPathAccess with the path when the file
///         cannot be written, kValueOutOfRange when no page of the report is meant, kPrinterError when the printer
///         takes no page; Cancelled
void printDocument(const report::Document& document, const PrintRequest& request, system::WorkProgress& progress);

}  // namespace velcoran::dialogs
