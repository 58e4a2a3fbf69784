#pragma once

#include "form/busy/activity.h"
#include "form/busy/call_runner.h"
#include "form/busy/handler_guard.h"
#include "form/busy/hourglass.h"
#include "form/busy/messenger.h"
#include "form/panel/members.h"
#include "form/run/surroundings.h"

#include <QWidget>

namespace velcoran::form {

/// What of the window outlives its controls.
struct LastingParts {
    /// @param idle  called whenever the outermost handler has returned; throws nothing
    LastingParts(QWidget& window, Surroundings& outside, std::function<void()> idle)
        : surroundings(outside),
          activity(window),
          runner(activity),
          messenger(activity, members.objMesaje),
          handlers([this, &window](
                       const base::Error& error) { messenger.show(runFailureMessage(error, window.windowTitle())); },
                   std::move(idle)) {}

    Surroundings& surroundings;
    Members members;
    Activity activity;
    CallRunner runner;
    Messenger messenger;
    HandlerGuard handlers;
    Hourglass hourglass;
};

}  // namespace velcoran::form
