#pragma once

#include "context.h"
#include "form/rules/movement.h"
#include "report_keys.h"

namespace velcoran::form {

class FilterPanel;

/// Walks the window by keys: asks the tables of the movement and does what they say.
class Keyboard {
public:
    /// @param openLookup  Enter in a lookup field
    Keyboard(const Context& context, FilterPanel& panel, std::function<void(filters::LookupField)> openLookup);

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

    const Context& m_context;
    FilterPanel& m_panel;
    std::function<void(filters::LookupField)> m_openLookup;
    ReportKeys m_reportKeys;
};

}  // namespace velcoran::form
