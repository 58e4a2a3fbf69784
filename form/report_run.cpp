#include "form/report_run.h"

#include "db/command.h"
#include "form/wait_state.h"
#include "report/hand_over.h"
#include "report/output.h"
#include "report/period.h"
#include "report/request.h"
#include "report/statement.h"
#include "report/validation.h"
#include "report/viewer_options.h"

namespace velcoran::form {

ReportRun::ReportRun(const Context& context, WaitState& waitState) : m_context(context), m_waitState(waitState) {
    controls::Button& button = context.controls.button(Ctl::Raport);
    QObject::connect(&button, &QAbstractButton::clicked, &button,
                     [this] { m_context.handlers.run([this] { run(); }); });
}

void ReportRun::run() {
    try {
        steps();
    } catch (const base::Cancelled&) {
        m_waitState.restorePointer();
        throw;
    } catch (const base::Error& error) {
        m_waitState.restorePointer();
        const report::Message message = report::runFailureMessage(error, m_context.window.windowTitle());
        m_context.members.show(message.text, message.style, message.title);
    }
}

void ReportRun::steps() {
    if (isRefused()) return;
    tidyCodes();
    m_waitState.enter();
    const filters::FilterState state = collectState(m_context.members, m_context.controls);
    handOver(state, report::assembleStatement(state, report::buildRequest(state)));
    view();
    m_context.members.bRaportIncarcat = true;
}

bool ReportRun::isRefused() const {
    const auto text = report::modifiedFiltersMessage(collectState(m_context.members, m_context.controls));
    if (!text.has_value()) return false;
    m_context.members.show(*text, kStilInformation, report::kModifiedFiltersTitle.toString());
    return true;
}

void ReportRun::tidyCodes() {
    for (const filters::CodeVariable code : report::tidyCodes(collectState(m_context.members, m_context.controls)))
        m_context.members.code(code).clear();
}

/// The engine prepares the statement here: on a slow server the window stays alive meanwhile.
void ReportRun::handOver(const filters::FilterState& state, const QString& sql) {
    const db::Command cmdRaport{.activeConnection = m_context.members.Priza, .commandText = sql};
    const report::HandOver plan = report::planHandOver(state, report::systemDateSeparator());
    std::shared_ptr<engine::Report> made;
    try {
        m_context.runner.run(m_context.members.Priza,
                             [&] { report::handOver(plan, cmdRaport.activeConnection, cmdRaport, made); });
    } catch (...) {
        m_context.members.rptFacturi = std::move(made);
        throw;
    }
    m_context.members.rptFacturi = std::move(made);
}

void ReportRun::view() {
    viewer::ReportViewer& viewer = m_context.controls.viewer();
    viewer.setReportSource(m_context.members.rptFacturi);
    for (const report::ViewerOption& option : report::kViewerOptions) viewer.setOption(option.number, option.isOn);
    viewer.viewReport();
}

}  // namespace velcoran::form
