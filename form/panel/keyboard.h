#pragma once

#include "control_tree.h"
#include "form/busy/handler_guard.h"
#include "form/rules/movement.h"
#include "report_keys.h"

#include <functional>

namespace velcoran::form {

class FilterPanel;

/// Walks the window by keys: asks the tables of the movement and does what they say.
class Keyboard {
public:
    /// All of them outlive this. @param openLookup  Enter in a lookup field @param closeForm  Esc
    Keyboard(const ControlTree& controls, HandlerGuard& handlers, FilterPanel& panel,
             std::function<void(filters::LookupField)> openLookup, std::function<void()> closeForm);

    /// Gives the focus to a control, or to the next one in a direction that can take it; otherwise it stays.
    void focus(Ctl target, Direction direction);

private:
    [[nodiscard]] bool onKey(Ctl control, int key);
    void perform(Act act, Ctl control);
    void discard(Ctl control);
    void chooseEntry(Ctl control, Act act);
    void moveOn(Ctl from, Direction direction);
    [[nodiscard]] KeyState stateOf(Ctl control) const;
    [[nodiscard]] ControlTest canTakeFocus() const;

    const ControlTree& m_controls;
    HandlerGuard& m_handlers;
    FilterPanel& m_panel;
    std::function<void(filters::LookupField)> m_openLookup;
    std::function<void()> m_closeForm;
    ReportKeys m_reportKeys;
};

}  // namespace velcoran::form
