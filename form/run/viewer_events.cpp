#include "viewer_events.h"

#include "form/busy/activity.h"
#include "form/busy/handler_guard.h"
#include "form/busy/messenger.h"
#include "form/panel/control_tree.h"
#include "form/rules/messages.h"
#include "output_commands.h"
#include "report/report.h"
#include "surroundings.h"
#include "wait_state.h"

namespace velcoran::form {

using viewer::ReportViewer;

ViewerEvents::ViewerEvents(const ControlTree& controls, Activity& activity, HandlerGuard& handlers,
                           Surroundings& surroundings, const Messenger& messenger, OutputCommands& output,
                           WaitState& waitState)
    : m_controls(controls), m_activity(activity), m_surroundings(surroundings), m_messenger(messenger) {
    ReportViewer* viewer = &controls.viewer();
    QObject::connect(viewer, &ReportViewer::printButtonClicked, viewer, [&handlers, &output](bool* useDefault) {
        *useDefault = false;
        handlers.run([&] { output.print(); });
    });
    QObject::connect(viewer, &ReportViewer::exportButtonClicked, viewer, [&handlers, &output](bool* useDefault) {
        *useDefault = false;
        handlers.run([&] { output.exportReport(); });
    });
    QObject::connect(
        viewer, &ReportViewer::objectClicked, viewer,
        [this, &handlers](int, int, const QStringList& fields) { handlers.run([&] { showFieldValue(fields); }); });
    viewer->setOpensDocuments([&surroundings] { return surroundings.opensDocuments(); });
    QObject::connect(viewer, &ReportViewer::documentRequested, viewer,
                     [this, &handlers](const QString& number, const QString& partner) {
                         handlers.run([&] { openDocument(number, partner); });
                     });
    QObject::connect(viewer, &ReportViewer::downloadStarted, viewer,
                     [&handlers, &waitState] { handlers.run([&] { waitState.showReading(); }); });
    QObject::connect(viewer, &ReportViewer::downloadFinished, viewer,
                     [&handlers, &waitState] { handlers.run([&] { waitState.leave(); }); });
}

void ViewerEvents::openDocument(const QString& number, const QString& partner) {
    const auto report = m_controls.viewer().shownReport();
    if (!report || m_activity.isRunning()) return;
    m_activity.callHost([&] { m_surroundings.openDocument(number, report->request().kind, partner); });
}

/// The viewer's own answer to the click stays as it set it.
void ViewerEvents::showFieldValue(const QStringList& fields) {
    if (const auto message = fieldValueMessage(fields, m_controls.window().windowTitle())) m_messenger.show(*message);
}

}  // namespace velcoran::form
