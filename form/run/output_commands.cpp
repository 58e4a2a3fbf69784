#include "output_commands.h"

#include "activate_window.h"
#include "form/busy/activity.h"
#include "form/busy/messenger.h"
#include "form/panel/control_tree.h"
#include "form/panel/members.h"
#include "form/rules/messages.h"
#include "surroundings.h"

#include <QPointer>

namespace velcoran::form {

OutputCommands::OutputCommands(const ControlTree& controls, const Members& members, Activity& activity,
                               Surroundings& surroundings, const Messenger& messenger)
    : m_controls(controls),
      m_members(members),
      m_activity(activity),
      m_surroundings(surroundings),
      m_messenger(messenger),
      m_output(surroundings.newOutput(controls.window(), activity)) {}

void OutputCommands::print() {
    if (!isUsable()) return;
    try {
        m_output->printOut(subject());
    } catch (const base::Cancelled&) {
        // The user gave up, or stopped it.
    } catch (...) {
        const base::Error error = base::currentError();
        if (m_activity.isClosing()) return;
        if (isPrinterSetupNeeded(error)) return setUpPrinter();
        showPlainMessage(printFailureText(error));
    }
}

void OutputCommands::setUpPrinter() {
    viewer::ReportViewer& viewer = m_controls.viewer();
    if (viewer.isBusy() || !m_members.bRaportIncarcat || m_controls.isPickerOpen() || !isUsable()) return;
    m_output->printerSetup(subject());
    if (m_activity.isClosing()) return;
    viewer.refreshEx(false);
}

void OutputCommands::exportReport() {
    if (!isUsable()) return;
    try {
        exportChosen();
    } catch (const base::Cancelled&) {
        m_output->resetExportOptions();
    } catch (...) {
        m_output->resetExportOptions();
        m_messenger.show(exportFailureMessage(base::currentError()));
    }
}

void OutputCommands::exportChosen() {
    m_output->resetExportOptions();
    m_output->promptForExportOptions(subject());
    if (isRefusedFormat(m_output->formatType())) return m_output->resetExportOptions();
    m_output->exportReport(subject());
}

/// The plain box gives the focus back to what had it; not every platform does that by itself.
void OutputCommands::showPlainMessage(const QString& text) {
    const QPointer<QWidget> focused = m_controls.window().focusWidget();
    m_activity.callHost([&] { m_surroundings.showPlainMessage(m_controls.window(), text); });
    if (m_activity.isClosing() || !focused) return;
    activateWindow(m_controls.window());
    focused->setFocus();
}

/// A screen reader presses buttons while something runs, too.
bool OutputCommands::isUsable() const { return m_output && !m_activity.isRunning(); }

OutputSubject OutputCommands::subject() const { return {m_controls.viewer().shownReport(), m_controls.viewer()}; }

}  // namespace velcoran::form
