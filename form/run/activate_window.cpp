#include "activate_window.h"

#include <QApplication>
#include <QWidget>

namespace velcoran::form {

void activateWindow(QWidget& window) {
    window.activateWindow();
    if (QApplication::activeWindow() == &window || QGuiApplication::focusWindow() != window.windowHandle()) return;
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QApplication::setActiveWindow(&window);
    QT_WARNING_POP
}

}  // namespace velcoran::form
