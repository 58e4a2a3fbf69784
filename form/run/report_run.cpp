#include "report_run.h"

#include "form/busy/activity.h"
#include "form/busy/messenger.h"
#include "form/panel/collected_state.h"
#include "form/panel/control_tree.h"
#include "form/panel/members.h"
#include "form/rules/messages.h"
#include "query/hand_over.h"
#include "query/period.h"
#include "query/request.h"
#include "query/statement.h"
#include "query/texts.h"
#include "query/validation.h"
#include "query/viewer_options.h"
#include "wait_state.h"

namespace velcoran::form {

ReportRun::ReportRun(ControlTree& controls, Members& members, Activity& activity, db::ICallRunner& runner,
                     const Messenger& messenger, WaitState& waitState)
    : m_controls(controls),
      m_members(members),
      m_activity(activity),
      m_runner(runner),
      m_messenger(messenger),
      m_waitState(waitState) {}

void ReportRun::run() {
    if (m_activity.isRunning()) return;
    try {
        steps();
    } catch (const base::Cancelled&) {
        // A preparation that the user stopped: the window is as it was before.
        m_waitState.leaveStopped();
    } catch (...) {
        m_waitState.restorePointer();
        m_messenger.show(runFailureMessage(base::currentError(), m_controls.window().windowTitle()));
    }
}

void ReportRun::steps() {
    if (isRefused()) return;
    tidyCodes();
    db::Command cmdRaport = makeCommand();
    m_waitState.enter();
    const filters::FilterState state = collectState(m_members, m_controls);
    cmdRaport.commandText = query::assembleStatement(state, query::buildRequest(state));
    handOver(state, cmdRaport);
    view();
    m_members.bRaportIncarcat = true;
}

/// A run without a connection, or with a closed one, ends here: the window stays as it was.
db::Command ReportRun::makeCommand() const {
    const db::Connection priza = m_members.Priza;
    m_activity.callHost([&priza] { priza.requireOpen(); });
    if (m_activity.isClosing()) throw base::Cancelled();
    db::Command command;
    command.activeConnection = priza;
    return command;
}

bool ReportRun::isRefused() const {
    const auto text = query::modifiedFiltersMessage(collectState(m_members, m_controls));
    if (!text.has_value()) return false;
    m_messenger.show({*text, kStilInformation, query::kModifiedFiltersTitle.toString()});
    return true;
}

void ReportRun::tidyCodes() {
    for (const filters::CodeVariable code : query::tidyCodes(collectState(m_members, m_controls)))
        m_members.codes[code].clear();
}

/// The engine prepares the statement here: on a slow server the window stays alive meanwhile.
void ReportRun::handOver(const filters::FilterState& state, const db::Command& cmdRaport) {
    const query::HandOver plan =
        query::planHandOver(state, query::systemDateSeparator(), m_controls.window().windowTitle());
    const auto made = std::make_shared<std::shared_ptr<report::Report>>();
    try {
        m_runner.run(cmdRaport.activeConnection,
                     [plan, cmdRaport, made] { query::handOver(plan, cmdRaport.activeConnection, cmdRaport, *made); });
    } catch (const base::Cancelled&) {
        throw;  // the worker may still be at it
    } catch (...) {
        m_members.rptFacturi = *made;
        throw;
    }
    m_members.rptFacturi = *made;
}

void ReportRun::view() {
    viewer::ReportViewer& viewer = m_controls.viewer();
    viewer.setReportSource(m_members.rptFacturi);
    for (const query::ViewerOption& option : query::kViewerOptions) viewer.setOption(option.number, option.isOn);
    viewer.viewReport();
}

}  // namespace velcoran::form
