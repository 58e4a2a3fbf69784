#include "loaded_window.h"

namespace velcoran::form {

LoadedWindow::LoadedWindow(std::unique_ptr<ControlTree> controls,
                           const std::function<Context(ControlTree&)>& makeContext)
    : m_controls(std::move(controls)),
      m_context(makeContext(*m_controls)),
      m_panel(m_context),
      m_picker(m_context, m_panel),
      m_keyboard(m_context, m_panel, [this](filters::LookupField field) { m_picker.openLookup(field); }),
      m_waitState(m_context),
      m_run(m_context, m_waitState),
      m_events(m_context, m_waitState) {
    m_picker.setKeyboard(m_keyboard);
}

/// The controls go first: what they still say reaches parts that are alive.
LoadedWindow::~LoadedWindow() { m_controls.reset(); }

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
