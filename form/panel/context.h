#pragma once

#include "control_tree.h"
#include "form/busy/handler_guard.h"
#include "form/busy/hourglass.h"
#include "members.h"

#include "db/connection.h"

#include <functional>

namespace velcoran::form {

class Activity;
class Surroundings;

/// What the parts of a loaded window share. Everything in it outlives them.
struct Context {
    QWidget& window;
    Members& members;
    ControlTree& controls;
    Activity& activity;
    db::ICallRunner& runner;
    Surroundings& surroundings;
    HandlerGuard& handlers;
    Hourglass& hourglass;
    std::function<void()> closeForm;

    /// Shows a message through the window's message object; nothing while there is none.
    void show(const QString& text, std::int16_t style, const QString& title) const;
};

/// What the filter controls and the members hold at this moment.
[[nodiscard]] filters::FilterState collectState(const Members& members, const ControlTree& controls);

}  // namespace velcoran::form
