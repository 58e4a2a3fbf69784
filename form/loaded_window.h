#pragma once

#include "form/panel/control_tree.h"
#include "form/panel/filter_panel.h"
#include "form/panel/keyboard.h"
#include "form/panel/picker.h"
#include "form/run/output_commands.h"
#include "form/run/report_run.h"
#include "form/run/viewer_events.h"
#include "form/run/views.h"
#include "form/run/wait_state.h"

#include <memory>

namespace velcoran::form {

struct LastingParts;

/// Everything that exists only while the window is loaded: its controls and what moves them.
class LoadedWindow {
public:
    /// @param window     gets the controls @param density  pixels an inch
    /// @param lasting    outlives this, as the window does
    /// @param closeForm  what Esc and the exit button do
    LoadedWindow(QWidget& window, double density, LastingParts& lasting, const std::function<void()>& closeForm);
    ~LoadedWindow();
    LoadedWindow(const LoadedWindow&) = delete;
    LoadedWindow& operator=(const LoadedWindow&) = delete;

    [[nodiscard]] ControlTree& controls() { return *m_controls; }
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
    void connectButton(Ctl button, HandlerGuard& handlers, const std::function<void()>& handler) const;

    std::unique_ptr<ControlTree> m_controls;
    FilterPanel m_panel;
    Picker m_picker;
    Keyboard m_keyboard;
    WaitState m_waitState;
    ReportRun m_run;
    Views m_views;
    OutputCommands m_output;
    ViewerEvents m_events;
};

}  // namespace velcoran::form
