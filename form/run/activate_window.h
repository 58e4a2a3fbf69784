#pragma once

class QWidget;

namespace velcoran::form {

/// Makes a window the active one, also on a platform that has not noticed that it was hidden, and so takes its
/// activation for nothing new.
void activateWindow(QWidget& window);

}  // namespace velcoran::form
