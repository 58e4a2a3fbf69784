#include "input_shield.h"

#include <QCoreApplication>
#include <QKeyEvent>

namespace velcoran::system {

namespace {

constexpr std::size_t kMostKept = 10000;

bool isInput(QEvent::Type type) {
    switch (type) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::InputMethod:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::NonClientAreaMouseButtonPress:
        case QEvent::NonClientAreaMouseButtonRelease:
        case QEvent::NonClientAreaMouseButtonDblClick:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::TabletPress:
        case QEvent::TabletRelease:
        case QEvent::TabletMove:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
        case QEvent::NativeGesture:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
        case QEvent::Close:
            return true;
        default:
            return false;
    }
}

bool isDrag(QEvent::Type type) { return type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop; }

}  // namespace

InputShield::InputShield(IWaiting& waiting, Others others) : m_waiting(waiting), m_others(others) {
    QCoreApplication::instance()->installEventFilter(this);
}

InputShield::~InputShield() {
    QCoreApplication* application = QCoreApplication::instance();
    if (application == nullptr) return;  // a host that ends its application inside its own call
    application->removeEventFilter(this);
    for (Kept& kept : m_kept)
        if (kept.receiver) QCoreApplication::postEvent(kept.receiver, kept.event.release());
}

bool InputShield::eventFilter(QObject* receiver, QEvent* event) {
    const bool isQuit = event->type() == QEvent::Quit && receiver == QCoreApplication::instance();
    if (!isQuit && !isInput(event->type())) return false;
    const IWaiting::Part part = isQuit ? IWaiting::Part::others : m_waiting.partOf(*receiver);
    if (part == IWaiting::Part::dialog) return false;
    if (part != IWaiting::Part::others) {
        note(part, *event);
        return true;
    }
    // Whether a key is a shortcut is asked now; the shortcut itself waits like any other input.
    if (m_others == Others::passed || event->type() == QEvent::ShortcutOverride) return false;
    if (isDrag(event->type()))
        event->ignore();  // what is dragged lives only as long as its event
    else
        keep(*receiver, *event);
    if (event->type() == QEvent::Close) event->ignore();
    return true;
}

void InputShield::note(IWaiting::Part part, QEvent& event) {
    if (event.type() == QEvent::ShortcutOverride) return event.accept();  // no key of ours is a host's shortcut
    if (event.type() == QEvent::Close) {
        event.ignore();
        if (part == IWaiting::Part::window) m_waiting.close();
    }
    if (event.type() != QEvent::KeyPress) return;
    const auto& key = static_cast<const QKeyEvent&>(event);
    if (key.key() == Qt::Key_Escape && !key.isAutoRepeat()) m_waiting.stop();
}

void InputShield::keep(QObject& receiver, const QEvent& event) {
    if (m_kept.size() < kMostKept) m_kept.push_back({&receiver, std::unique_ptr<QEvent>(event.clone())});
}

}  // namespace velcoran::system
