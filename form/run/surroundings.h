#pragma once

#include <QString>

#include <velcoran/com.h>
#include <velcoran/dialogs.h>
#include <velcoran/mesaje.h>

#include <memory>

class QWidget;

namespace velcoran::form {

class Activity;
class IReportOutput;

/// What the window needs of the process it lives in. Whoever makes the window provides it; it outlives the window.
class Surroundings {
public:
    virtual ~Surroundings() = default;

    /// A new message object: the host's, or the component's own. Never null. @throws Error when it cannot be created
    virtual com::Ref<IMesaje> newMesaje() = 0;
    /// The dialogs: the host's, or the component's own. Null where there is none.
    virtual com::Ref<IExportDialog> newExportDialog() = 0;
    virtual com::Ref<IPrintDialog> newPrintDialog() = 0;
    virtual com::Ref<IPrinterSetupDialog> newPrinterSetupDialog() = 0;
    /// Printing and exporting for one loading of the window; null where the component is built without: the commands
    /// then do nothing.
    /// @param activity  of the window, and lives as long
    virtual std::unique_ptr<IReportOutput> newOutput(QWidget& window, Activity& activity);
    /// The window has been closed. Called in the middle of it: the host is to hear of it later.
    virtual void windowClosed() {}
    /// Whether the host opens the document behind a row of the report.
    [[nodiscard]] virtual bool opensDocuments() const { return false; }
    /// @param kind  the report kind as the host gave it @param partner  its code; may be empty
    virtual void openDocument(const QString& number, const QString& kind, const QString& partner) {
        static_cast<void>(number), static_cast<void>(kind), static_cast<void>(partner);
    }
    /// The platform's plain message box: OK alone, no icon, the application's name for a title.
    virtual void showPlainMessage(QWidget& window, const QString& text);
};

}  // namespace velcoran::form
