#pragma once

#include "form/context.h"

namespace velcoran::form {

/// The wait state of a report run: hourglass, disabled buttons and panel, the wait message.
class WaitState {
public:
    explicit WaitState(const Context& context) : m_context(context) {}

    /// Hourglass; Raport, cmdExit, cmbVizual and the filter panel disabled; the message shown; Command1 and cmdViz
    /// disabled.
    void enter();
    /// The message of the run that reads its rows.
    void showReading();
    /// The way back, and on to the report view. Nothing at all while the picker is open.
    void leave();
    /// A failed run restores the pointer and nothing else.
    void restorePointer() { m_context.hourglass.reset(); }

private:
    void setMessageFont();
    void enableButtons(bool isEnabled);

    const Context& m_context;
};

}  // namespace velcoran::form
