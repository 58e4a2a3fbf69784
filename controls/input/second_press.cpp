#include "second_press.h"

#include <QCoreApplication>
#include <QEvent>

namespace velcoran::controls {

void SecondPressGuard::arm() {
    m_isSwallowed = false;
    if (QCoreApplication* application = QCoreApplication::instance()) application->installEventFilter(this);
}

void SecondPressGuard::armAfterPress() {
    QMetaObject::invokeMethod(
        this, [this] { arm(); }, Qt::QueuedConnection);
}

void SecondPressGuard::disarm() {
    if (QCoreApplication* application = QCoreApplication::instance()) application->removeEventFilter(this);
}

// The second press reaches the window of the window system first, where it would give the focus to the widget under it.
// Such a window gets a plain press besides, which is passed on to no widget; a press that reaches a widget is a new
// one.
bool SecondPressGuard::eventFilter(QObject* object, QEvent* event) {
    if (!object->isWidgetType() && !object->isWindowType()) return false;
    switch (event->type()) {
        case QEvent::MouseButtonDblClick:
            m_isSwallowed = true;
            event->accept();
            return true;
        case QEvent::MouseButtonPress:
            if (object->isWidgetType()) disarm();
            return false;
        case QEvent::MouseButtonRelease:
            if (!m_isSwallowed || !object->isWidgetType()) return false;
            disarm();
            event->accept();
            return true;
        default:
            return false;
    }
}

}  // namespace velcoran::controls
