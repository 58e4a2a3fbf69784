#pragma once

#include "form/busy/hourglass.h"
#include "form/panel/control_tree.h"

#include <QPointer>

namespace velcoran::form {

/// The wait state of a report run: hourglass, disabled buttons and panel, the wait message.
class WaitState {
public:
    /// Both outlive this.
    WaitState(ControlTree& controls, Hourglass& hourglass) : m_controls(controls), m_hourglass(hourglass) {}

    /// Hourglass; Raport, cmdExit, cmbVizual and the filter panel disabled; the message shown; Command1 and cmdViz
    /// disabled.
    void enter();
    /// The message of the run that reads its rows.
    void showReading();
    /// The way back, and on to the report view. Nothing at all while the picker is open.
    void leave();
    /// The way back to the filters: a preparation was stopped, or a new set-up ends what a failed run left standing.
    /// Nothing happens outside the wait state.
    void leaveStopped();
    /// A failed run restores the pointer and nothing else.
    void restorePointer() { m_hourglass.reset(); }

private:
    void setMessageFont();
    void enableButtons(bool isEnabled);
    void release();

    ControlTree& m_controls;
    Hourglass& m_hourglass;
    QPointer<QWidget> m_focused;  ///< what had the focus when the wait began
};

}  // namespace velcoran::form
