#include "loaded_window.h"

#include "lasting_parts.h"

namespace velcoran::form {

LoadedWindow::LoadedWindow(QWidget& window, double density, LastingParts& lasting,
                           const std::function<void()>& closeForm)
    : m_controls(std::make_unique<ControlTree>(window, density)),
      m_panel(*m_controls, lasting.members.codes, lasting.handlers),
      m_picker(*m_controls, lasting.members, lasting.handlers, lasting.runner, lasting.messenger, m_panel),
      m_keyboard(
          *m_controls, lasting.handlers, m_panel, [this](filters::LookupField field) { m_picker.openLookup(field); },
          closeForm),
      m_waitState(*m_controls, lasting.hourglass),
      m_run(*m_controls, lasting.members, lasting.activity, lasting.runner, lasting.messenger, m_waitState),
      m_views(*m_controls),
      m_output(*m_controls, lasting.members, lasting.activity, lasting.surroundings, lasting.messenger),
      m_events(*m_controls, lasting.activity, lasting.handlers, lasting.surroundings, lasting.messenger, m_output,
               m_waitState) {
    m_picker.setKeyboard(m_keyboard);
    connectButton(Ctl::Raport, lasting.handlers, [this] { m_run.run(); });
    connectButton(Ctl::cmdExit, lasting.handlers, closeForm);
    connectButton(Ctl::cmbVizual, lasting.handlers, [this] { m_views.showReport(); });
    connectButton(Ctl::cmdViz, lasting.handlers, [this] { m_views.showFilters(); });
    connectButton(Ctl::Command1, lasting.handlers, [this] { m_output.setUpPrinter(); });
}

/// The controls go first: what they still say reaches parts that are alive.
LoadedWindow::~LoadedWindow() { m_controls.reset(); }

void LoadedWindow::connectButton(Ctl button, HandlerGuard& handlers, const std::function<void()>& handler) const {
    controls::Button* pressed = &m_controls->button(button);
    QObject::connect(pressed, &QAbstractButton::clicked, pressed, [&handlers, handler] { handlers.run(handler); });
}

void LoadedWindow::endStanding() {
    m_controls->viewer().cancelLoading(true);
    m_picker.cancel();
    m_waitState.leaveStopped();
}

void LoadedWindow::detach() {
    m_picker.detach();
    m_controls->viewer().cancelLoading(false);
    m_controls->viewer().setReportSource(nullptr);
}

}  // namespace velcoran::form
