#include "form/held_keys.h"

#include "platform/controls/typed_text.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QWidget>

#include <utility>

namespace velcoran::form {

HeldKeys::HeldKeys(QWidget& window, std::function<bool()> stopLoad)
    : m_window(window), m_stopLoad(std::move(stopLoad)) {
    QCoreApplication::instance()->installEventFilter(this);
}

HeldKeys::~HeldKeys() {
    if (QCoreApplication* application = QCoreApplication::instance()) application->removeEventFilter(this);
}

/// Lists, calendars and dialogs are windows of their own that belong to the window.
bool HeldKeys::isOfWindow(const QObject* object) const {
    if (!object->isWidgetType()) return false;
    for (const auto* widget = static_cast<const QWidget*>(object); widget != nullptr; widget = widget->parentWidget())
        if (widget == &m_window) return true;
    return false;
}

bool HeldKeys::eventFilter(QObject* object, QEvent* event) {
    if (event->type() != QEvent::KeyPress || !isOfWindow(object)) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    const bool isEsc = key.key() == Qt::Key_Escape;
    const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (key.isAutoRepeat() && (isEsc || isEnter)) return true;
    // A menu takes its letters with Alt as without.
    if (controls::isTypedWithAlt(key)) return qobject_cast<QMenu*>(object) == nullptr;
    const bool isInWindow = static_cast<QWidget*>(object)->window() == &m_window;
    return isEsc && isInWindow && key.modifiers() == Qt::NoModifier && m_stopLoad();
}

}  // namespace velcoran::form
