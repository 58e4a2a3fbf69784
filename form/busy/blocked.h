#pragma once

class QWidget;

namespace velcoran::form {

/// True while a modal dialog of the host, of widgets or not, keeps all input from a window.
[[nodiscard]] bool isBlocked(const QWidget& window);

}  // namespace velcoran::form
