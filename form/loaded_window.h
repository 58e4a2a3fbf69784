#pragma once

#include "form/context.h"
#include "form/filter_panel.h"
#include "form/keyboard.h"
#include "form/picker.h"
#include "form/report_run.h"
#include "form/setup.h"
#include "form/viewer_events.h"
#include "form/wait_state.h"

#include <memory>

namespace velcoran::form {

/// Everything that exists only while the window is loaded: its controls and what moves them.
class LoadedWindow {
public:
    /// @param context  everything but the controls, which are made here
    LoadedWindow(std::unique_ptr<ControlTree> controls, const std::function<Context(ControlTree&)>& makeContext);
    ~LoadedWindow();
    LoadedWindow(const LoadedWindow&) = delete;
    LoadedWindow& operator=(const LoadedWindow&) = delete;

    [[nodiscard]] ControlTree& controls() { return *m_controls; }
    void setUp(const SetupArguments& arguments) { runSetup(m_context, arguments); }
    /// Ends what a call finds standing: a report that loads, with its end-of-loading notification; the picker, as Esc
    /// closes it; the wait state of a failed run.
    void endStanding();
    /// Stops a report that loads, as the viewer's stop button does. @return false when none loads
    bool stopReport();
    /// Stops everything for good, without notifications: the controls stand idle until they are destroyed.
    void detach();

private:
    std::unique_ptr<ControlTree> m_controls;
    Context m_context;
    FilterPanel m_panel;
    Picker m_picker;
    Keyboard m_keyboard;
    WaitState m_waitState;
    ReportRun m_run;
    ViewerEvents m_events;
};

}  // namespace velcoran::form
