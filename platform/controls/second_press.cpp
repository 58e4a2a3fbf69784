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
    if (!object->isWidgetType()) return false;
    switch (event->type()) {
        case QEvent::MouseButtonDblClick:
            m_isSwallowed = true;
            return true;
        case QEvent::MouseButtonPress:
            disarm();
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
