#include "held_keys.h"

#include "belongs_to.h"
#include "controls/input/typed_text.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QWidget>

#include <utility>

namespace velcoran::form {

HeldKeys::HeldKeys(QWidget& window, std::function<bool()> isLoading, std::function<void()> stopLoad)
    : m_window(window), m_isLoading(std::move(isLoading)), m_stopLoad(std::move(stopLoad)) {
    QCoreApplication::instance()->installEventFilter(this);
}

HeldKeys::~HeldKeys() {
    if (QCoreApplication* application = QCoreApplication::instance()) application->removeEventFilter(this);
}

/// A dialog of the window keeps its own Esc.
bool HeldKeys::isStop(const QKeyEvent& key, const QWidget& receiver) const {
    return key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier && receiver.window() == &m_window &&
           m_isLoading();
}

bool HeldKeys::eventFilter(QObject* object, QEvent* event) {
    const bool isOverride = event->type() == QEvent::ShortcutOverride;
    if ((event->type() != QEvent::KeyPress && !isOverride) || !object->isWidgetType()) return false;
    if (!belongsTo(*object, m_window)) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    const auto& receiver = static_cast<const QWidget&>(*object);
    if (isOverride) {
        // A host's own Esc for all its windows does not take the stop away.
        if (!isStop(key, receiver)) return false;
        event->accept();
        return true;
    }
    const bool isEsc = key.key() == Qt::Key_Escape;
    const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (key.isAutoRepeat() && (isEsc || isEnter)) return true;
    // A menu takes its letters with Alt as without.
    if (controls::isTypedWithAlt(key)) return qobject_cast<QMenu*>(object) == nullptr;
    if (!isStop(key, receiver)) return false;
    m_stopLoad();
    return true;
}

}  // namespace velcoran::form
