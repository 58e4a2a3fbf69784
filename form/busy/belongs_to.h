#pragma once

class QObject;
class QWidget;

namespace velcoran::form {

/// True for the window and for everything of its own: controls and what these own, popups, dialogs, and the platform's
/// windows of all of them.
[[nodiscard]] bool belongsTo(const QObject& object, const QWidget& window);

/// True for what lies in a dialog over the window, its popups included.
[[nodiscard]] bool isInDialog(const QObject& object, const QWidget& window);

}  // namespace velcoran::form
