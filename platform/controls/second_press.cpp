#include "platform/controls/second_press.h"

#include <QCoreApplication>
#include <QEvent>

namespace velcoran::controls {

void SecondPressGuard::arm() {
    m_isSwallowed = false;
    QCoreApplication::instance()->installEventFilter(this);
}

void SecondPressGuard::disarm() { QCoreApplication::instance()->removeEventFilter(this); }

bool SecondPressGuard::eventFilter(QObject* object, QEvent* event) {
    // The press is the window's before it is a widget's, which would get the focus with it.
    if (!object->isWidgetType() && !object->isWindowType()) return false;
    switch (event->type()) {
        case QEvent::MouseButtonDblClick:
            m_isSwallowed = true;
            return true;
        case QEvent::MouseButtonPress:
            // The window hears of a plain press before it hears that it was the second of two.
            if (object->isWidgetType()) disarm();
            return false;
        case QEvent::MouseButtonRelease:
            if (!m_isSwallowed) return false;
            disarm();
            return true;
        default:
            return false;
    }
}

}  // namespace velcoran::controls
