#include "report_run.h"

#include "form/busy/activity.h"
#include "form/rules/messages.h"
#include "query/hand_over.h"
#include "query/period.h"
#include "query/request.h"
#include "query/statement.h"
#include "query/validation.h"
#include "query/viewer_options.h"
#include "wait_state.h"

namespace velcoran::form {

ReportRun::ReportRun(const Context& context, WaitState& waitState) : m_context(context), m_waitState(waitState) {
    controls::Button& button = context.controls.button(Ctl::Raport);
    QObject::connect(&button, &QAbstractButton::clicked, &button,
                     [this] { m_context.handlers.run([this] { run(); }); });
}

void ReportRun::run() {
    if (m_context.activity.isRunning()) return;
    try {
        steps();
    } catch (const base::Cancelled&) {
        // A preparation that the user stopped: the window is as it was before.
        m_waitState.leaveStopped();
    } catch (...) {
        m_waitState.restorePointer();
        const Message message = runFailureMessage(base::currentError(), m_context.window.windowTitle());
        m_context.show(message.text, message.style, message.title);
    }
}

void ReportRun::steps() {
    if (isRefused()) return;
    tidyCodes();
    db::Command cmdRaport = makeCommand();
    m_waitState.enter();
    const filters::FilterState state = collectState(m_context.members, m_context.controls);
    cmdRaport.commandText = query::assembleStatement(state, query::buildRequest(state));
    handOver(state, cmdRaport);
    view();
    m_context.members.bRaportIncarcat = true;
}

/// A run without a connection, or with a closed one, ends here: the window stays as it was.
db::Command ReportRun::makeCommand() const {
    const db::Connection priza = m_context.members.Priza;
    m_context.activity.callHost([&priza] { priza.requireOpen(); });
    if (m_context.activity.isClosing()) throw base::Cancelled();
    db::Command command;
    command.activeConnection = priza;
    return command;
}

bool ReportRun::isRefused() const {
    const auto text = query::modifiedFiltersMessage(collectState(m_context.members, m_context.controls));
    if (!text.has_value()) return false;
    m_context.show(*text, kStilInformation, query::kModifiedFiltersTitle.toString());
    return true;
}

void ReportRun::tidyCodes() {
    for (const filters::CodeVariable code : query::tidyCodes(collectState(m_context.members, m_context.controls)))
        m_context.members.codes[code].clear();
}

/// The engine prepares the statement here: on a slow server the window stays alive meanwhile.
void ReportRun::handOver(const filters::FilterState& state, const db::Command& cmdRaport) {
    const query::HandOver plan =
        query::planHandOver(state, query::systemDateSeparator(), m_context.window.windowTitle());
    const auto made = std::make_shared<std::shared_ptr<report::Report>>();
    try {
        m_context.runner.run(cmdRaport.activeConnection, [plan, cmdRaport, made] {
            query::handOver(plan, cmdRaport.activeConnection, cmdRaport, *made);
        });
    } catch (const base::Cancelled&) {
        throw;  // the worker may still be at it
    } catch (...) {
        m_context.members.rptFacturi = *made;
        throw;
    }
    m_context.members.rptFacturi = *made;
}

void ReportRun::view() {
    viewer::ReportViewer& viewer = m_context.controls.viewer();
    viewer.setReportSource(m_context.members.rptFacturi);
    for (const query::ViewerOption& option : query::kViewerOptions) viewer.setOption(option.number, option.isOn);
    viewer.viewReport();
}

}  // namespace velcoran::form
