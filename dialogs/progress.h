#pragma once

#include "system/waiting.h"
#include "system/work_progress.h"

#include <QString>

#include <functional>

class QWidget;

namespace velcoran::dialogs {

/// Does a work on a thread of its own while the window stays alive, and returns when it has ended. The window takes no
/// input meanwhile; after half a second a dialog shows how far the work is. Its button, Esc and closing the window ask
/// the work to end; it answers that by throwing Cancelled.
/// @param waiting  what the window waits as; its cancel reaches the work
/// @param what     what is being done, as the dialog says it
/// @throws what the work throws
void runWithProgress(QWidget& window, system::IWaiting& waiting, const QString& what,
                     const system::WorkProgress& progress, const std::function<void()>& work);

}  // namespace velcoran::dialogs
