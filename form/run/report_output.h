#pragma once

#include <memory>

namespace velcoran::report {
class Report;
}
namespace velcoran::viewer {
class ReportViewer;
}

namespace velcoran::form {

/// What is printed or exported: the report that is shown, with the filters, the period and the kind that it was made
/// with, whatever the controls say by now.
struct OutputSubject {
    std::shared_ptr<report::Report> report;  ///< null while none is shown
    viewer::ReportViewer& viewer;
};

/// Printing, printer set-up and export as the window's commands use them. A user's cancel is no error: the function
/// returns, or throws Cancelled.
class IReportOutput {
public:
    virtual ~IReportOutput() = default;

    /// Opens the print dialog and prints. @throws Error kInvalidProcedureCall when the printer is missing or gone
    virtual void printOut(const OutputSubject& subject) = 0;
    /// Opens the printer set-up dialog; the viewer's page layout follows it. @return false when cancelled
    virtual bool printerSetup(const OutputSubject& subject) = 0;

    /// Forgets the export options.
    virtual void resetExportOptions() = 0;
    /// Opens the export dialog for format and file. @throws Cancelled when the user gives up
    virtual void promptForExportOptions(const OutputSubject& subject) = 0;
    /// Type of the chosen format; 1 and 33 are the report engine's own two.
    [[nodiscard]] virtual int formatType() const = 0;
    /// Exports with the options as they stand. @throws Error, Cancelled
    virtual void exportReport(const OutputSubject& subject) = 0;
};

}  // namespace velcoran::form
