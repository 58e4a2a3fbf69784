#include "viewer_events.h"

#include "activate_window.h"
#include "form/busy/activity.h"
#include "form/rules/messages.h"
#include "surroundings.h"
#include "wait_state.h"

#include <QPointer>

namespace velcoran::form {

using viewer::ReportViewer;

ViewerEvents::ViewerEvents(const Context& context, WaitState& waitState)
    : m_context(context),
      m_waitState(waitState),
      m_output(context.surroundings.newOutput(context.window, context.activity)) {
    connectButtons();
    connectViewer();
}

ViewerEvents::~ViewerEvents() = default;

void ViewerEvents::connectButtons() {
    struct Command {
        Ctl button;
        void (ViewerEvents::*handler)();
    };
    constexpr Command kCommands[] = {{Ctl::cmbVizual, &ViewerEvents::hideFilters},
                                     {Ctl::cmdViz, &ViewerEvents::showFilters},
                                     {Ctl::Command1, &ViewerEvents::setUpPrinter}};
    for (const Command& command : kCommands) {
        controls::Button& button = m_context.controls.button(command.button);
        QObject::connect(&button, &QAbstractButton::clicked, &button,
                         [this, handler = command.handler] { m_context.handlers.run([&] { (this->*handler)(); }); });
    }
    controls::Button& exit = m_context.controls.button(Ctl::cmdExit);
    QObject::connect(&exit, &QAbstractButton::clicked, &exit,
                     [this] { m_context.handlers.run([this] { m_context.closeForm(); }); });
}

void ViewerEvents::connectViewer() {
    ReportViewer* viewer = &m_context.controls.viewer();
    HandlerGuard& handlers = m_context.handlers;
    QObject::connect(viewer, &ReportViewer::printButtonClicked, viewer, [this, &handlers](bool* useDefault) {
        *useDefault = false;
        handlers.run([this] { print(); });
    });
    QObject::connect(viewer, &ReportViewer::exportButtonClicked, viewer, [this, &handlers](bool* useDefault) {
        *useDefault = false;
        handlers.run([this] { exportReport(); });
    });
    QObject::connect(
        viewer, &ReportViewer::objectClicked, viewer,
        [this, &handlers](int, int, const QStringList& fields) { handlers.run([&] { showFieldValue(fields); }); });
    viewer->setOpensDocuments([this] { return m_context.surroundings.opensDocuments(); });
    QObject::connect(viewer, &ReportViewer::documentRequested, viewer,
                     [this, &handlers](const QString& number, const QString& partner) {
                         handlers.run([&] { openDocument(number, partner); });
                     });
    QObject::connect(viewer, &ReportViewer::downloadStarted, viewer,
                     [this, &handlers] { handlers.run([this] { m_waitState.showReading(); }); });
    QObject::connect(viewer, &ReportViewer::downloadFinished, viewer,
                     [this, &handlers] { handlers.run([this] { m_waitState.leave(); }); });
}

bool ViewerEvents::isPickerOpen() const { return !m_context.controls.widget(Ctl::fraGrid).isHidden(); }

/// A screen reader presses buttons while something runs, too.
bool ViewerEvents::isUsable() const { return m_output && !m_context.activity.isRunning(); }

OutputSubject ViewerEvents::subject() const {
    return {m_context.controls.viewer().shownReport(), m_context.controls.viewer()};
}

/// The focus leaves the panel first, so that it does not wander through the controls that go with it.
void ViewerEvents::hideFilters() {
    QWidget& panel = m_context.controls.widget(Ctl::frmEnable);
    const QWidget* focused = m_context.window.focusWidget();
    if (focused == nullptr || panel.isAncestorOf(focused)) m_context.controls.viewer().setFocus();
    panel.hide();
    m_secondPress.arm();
}

void ViewerEvents::showFilters() {
    if (isPickerOpen()) return;
    m_context.controls.widget(Ctl::frmEnable).show();
    m_context.controls.widget(Ctl::cmbTipRaport).setFocus();
}

void ViewerEvents::setUpPrinter() {
    ReportViewer& viewer = m_context.controls.viewer();
    if (viewer.isBusy() || !m_context.members.bRaportIncarcat || isPickerOpen() || !isUsable()) return;
    m_output->printerSetup(subject());
    if (m_context.activity.isClosing()) return;
    viewer.refreshEx(false);
}

void ViewerEvents::print() {
    if (!isUsable()) return;
    try {
        m_output->printOut(subject());
    } catch (const base::Cancelled&) {
        // The user gave up, or stopped it.
    } catch (...) {
        const base::Error error = base::currentError();
        if (m_context.activity.isClosing()) return;
        if (isPrinterSetupNeeded(error)) return setUpPrinter();
        showPlainMessage(printFailureText(error));
    }
}

/// The plain box gives the focus back to what had it; not every platform does that by itself.
void ViewerEvents::showPlainMessage(const QString& text) {
    const QPointer<QWidget> focused = m_context.window.focusWidget();
    m_context.activity.callHost([&] { m_context.surroundings.showPlainMessage(m_context.window, text); });
    if (m_context.activity.isClosing() || !focused) return;
    activateWindow(m_context.window);
    focused->setFocus();
}

void ViewerEvents::exportReport() {
    if (!isUsable()) return;
    try {
        exportChosen();
    } catch (const base::Cancelled&) {
        m_output->resetExportOptions();
    } catch (...) {
        m_output->resetExportOptions();
        const Message message = exportFailureMessage(base::currentError());
        m_context.show(message.text, message.style, message.title);
    }
}

void ViewerEvents::exportChosen() {
    m_output->resetExportOptions();
    m_output->promptForExportOptions(subject());
    if (isRefusedFormat(m_output->formatType())) return m_output->resetExportOptions();
    m_output->exportReport(subject());
}

void ViewerEvents::openDocument(const QString& number, const QString& partner) {
    const auto report = m_context.controls.viewer().shownReport();
    if (!report || m_context.activity.isRunning()) return;
    m_context.activity.callHost([&] { m_context.surroundings.openDocument(number, report->request().kind, partner); });
}

/// The viewer's own answer to the click stays as it set it.
void ViewerEvents::showFieldValue(const QStringList& fields) {
    const auto message = fieldValueMessage(fields, m_context.window.windowTitle());
    if (message.has_value()) m_context.show(message->text, message->style, message->title);
}

}  // namespace velcoran::form
