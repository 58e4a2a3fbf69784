#pragma once

#include "report_output.h"

#include <QString>

#include <velcoran/com.h>

#include <cstdint>
#include <memory>
#include <vector>

class QWidget;

namespace velcoran::report {
class Document;
class ExportControl;
}  // namespace velcoran::report

namespace velcoran::form {

class Activity;
class Surroundings;

/// What the output commands keep from one loading of the window to the next.
struct OutputMemory {
    QString folder;  ///< of the last export; empty before the first
};

/// Printing, printer set-up and export through the dialogs of the surroundings. Both outputs are written on a thread of
/// their own while the window stays alive.
class DialogOutput final : public IReportOutput {
public:
    /// @param memory  outlives this, as the window and the surroundings do
    DialogOutput(QWidget& window, Activity& activity, Surroundings& surroundings, OutputMemory& memory);
    ~DialogOutput() override;

    void printOut(const OutputSubject& subject) override;
    bool printerSetup(const OutputSubject& subject) override;
    void resetExportOptions() override;
    void promptForExportOptions(const OutputSubject& subject) override;
    [[nodiscard]] int formatType() const override { return m_formatType; }
    void exportReport(const OutputSubject& subject) override;

private:
    template <class Dialog, class Choose>
    [[nodiscard]] bool isChosen(const com::Ref<Dialog>& dialog, Choose choose) const;
    template <class Dialog>
    [[nodiscard]] com::Ref<Dialog> newDialog(com::Ref<Dialog> (Surroundings::*make)()) const;
    [[nodiscard]] std::uintptr_t windowHandle() const;
    [[nodiscard]] QString suggestedFile(const OutputSubject& subject) const;

    QWidget& m_window;
    Activity& m_activity;
    Surroundings& m_surroundings;
    OutputMemory& m_memory;
    QString m_printer;  ///< chosen at set-up; empty before, and where there was none
    int m_formatType = 0;
    QString m_file;
    std::vector<std::unique_ptr<report::ExportControl>> m_stopped;  ///< exports whose rest could not be broken off
};

}  // namespace velcoran::form
