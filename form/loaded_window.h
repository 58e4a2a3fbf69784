#pragma once

#include "form/panel/context.h"
#include "form/panel/filter_panel.h"
#include "form/panel/keyboard.h"
#include "form/panel/picker.h"
#include "form/run/report_run.h"
#include "form/run/viewer_events.h"
#include "form/run/wait_state.h"
#include "setup.h"

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
    /// True while a report loads.
    [[nodiscard]] bool isLoading() const { return m_controls->viewer().isBusy(); }
    /// Stops a report that loads, as the viewer's stop button does.
    void stopReport() { m_controls->viewer().stopLoading(); }
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
