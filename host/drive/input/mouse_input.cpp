#include "mouse_input.h"

#include "window_input.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>

namespace velcoran::host {

namespace {

/// Notes whether an event for a window gets past those who watch the application, and keeps it from the window, which
/// knows nothing of places outside its edges.
class Door final : public QObject {
public:
    bool eventFilter(QObject*, QEvent*) override { return m_isPassed = true; }
    [[nodiscard]] bool isPassed() const { return m_isPassed; }

private:
    bool m_isPassed = false;
};

bool passes(QWindow* window, QEvent& event) {
    if (window == nullptr) return false;
    Door door;
    window->installEventFilter(&door);
    QCoreApplication::sendEvent(window, &event);
    return door.isPassed();
}

/// The innermost widget at a place within another; the other one where none lies there.
QWidget* innermostAt(QWidget& widget, const QPoint& point) {
    const QObjectList& children = widget.children();
    for (auto each = children.crbegin(); each != children.crend(); ++each) {
        auto* child = qobject_cast<QWidget*>(*each);
        if (child == nullptr || child->isWindow() || child->isHidden()) continue;
        if (child->testAttribute(Qt::WA_TransparentForMouseEvents)) continue;
        if (child->geometry().contains(point)) return innermostAt(*child, child->mapFromParent(point));
    }
    return &widget;
}

QWidget* focusTargetFrom(QWidget* widget) {
    for (; widget != nullptr; widget = widget->parentWidget()) {
        QWidget* taker = widget->focusProxy() != nullptr ? widget->focusProxy() : widget;
        if (widget->isEnabled() && (taker->focusPolicy() & Qt::ClickFocus) != 0) return taker;
        if (widget->isWindow() || taker->hasFocus()) break;
    }
    return nullptr;
}

/// One button of the mouse at one place, from the first press to the last release.
class Mouse {
public:
    Mouse(QWidget& window, const QPoint& place, Qt::MouseButton button)
        : m_window(&window), m_place(place), m_button(button) {}

    void press(QEvent::Type type) {
        // Qt tells the window of a plain press before a double one; it reaches no widget.
        if (type == QEvent::MouseButtonDblClick) tellWindow();
        if (QWidget* popup = QApplication::activePopupWidget())
            pressPopup(*popup, type);
        else
            pressWindow(type);
    }

    void release() {
        QPointer<QWidget> receiver = m_down;
        QWidget* popup = QApplication::activePopupWidget();
        // A list that has opened under the press takes the release.
        if (popup != nullptr && (popup != m_downPopup || !receiver)) receiver = &childOf(*popup);
        m_down = nullptr;
        m_downPopup = nullptr;
        if (!receiver || !receiver->isVisible()) return;
        if (reaches(*receiver, QEvent::MouseButtonRelease)) send(*receiver, QEvent::MouseButtonRelease);
    }

private:
    [[nodiscard]] QWidget& childOf(QWidget& popup) const {
        const QPoint point = popup.mapFromGlobal(m_place);
        return popup.rect().contains(point) ? *innermostAt(popup, point) : popup;
    }
    [[nodiscard]] QMouseEvent eventFor(QEvent::Type type, const QPointF& local, const QPointF& inWindow) const {
        const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : m_button;
        return {type, local, inWindow, m_place, m_button, held, Qt::NoModifier};
    }
    [[nodiscard]] bool reaches(const QWidget& widget, QEvent::Type type) const {
        const QPointF inWindow = widget.window()->mapFromGlobal(m_place);
        QMouseEvent event = eventFor(type, inWindow, inWindow);
        return passes(widget.window()->windowHandle(), event);
    }
    void tellWindow() const {
        const QWidget* popup = QApplication::activePopupWidget();
        const QWidget* told = popup != nullptr ? popup : m_window.data();
        if (told != nullptr) static_cast<void>(reaches(*told, QEvent::MouseButtonPress));
    }
    void send(QWidget& widget, QEvent::Type type) const {
        QMouseEvent event = eventFor(type, widget.mapFromGlobal(m_place), widget.window()->mapFromGlobal(m_place));
        QCoreApplication::sendEvent(&widget, &event);
    }
    void askForMenu(const QPointer<QWidget>& widget) const {
        if (m_button != Qt::RightButton || !widget) return;
        QContextMenuEvent event(QContextMenuEvent::Mouse, widget->mapFromGlobal(m_place), m_place, Qt::NoModifier);
        QCoreApplication::sendEvent(widget, &event);
    }

    void pressPopup(QWidget& popup, QEvent::Type type) {
        if (!reaches(popup, type)) return;
        const QPointer<QWidget> guard(&popup);
        const QPointer<QWidget> receiver(&childOf(popup));
        const bool isOutside = !popup.rect().contains(popup.mapFromGlobal(m_place));
        m_down = receiver;
        m_downPopup = guard;
        send(*receiver, type);
        if (QApplication::activePopupWidget() == guard) return askForMenu(receiver);
        m_down = nullptr;
        // A press outside that closed the list is meant for what lies there, unless the list says otherwise; the second
        // press of a double click is not.
        const bool isKept = guard && guard->testAttribute(Qt::WA_NoMouseReplay);
        if (isOutside && !isKept && type == QEvent::MouseButtonPress) press(type);
    }

    void pressWindow(QEvent::Type type) {
        if (!m_window || !m_window->isVisible() || !reaches(*m_window, type)) return;
        const QPointer<QWidget> receiver(innermostAt(*m_window, m_window->mapFromGlobal(m_place)));
        m_down = receiver;
        if (QWidget* target = focusTargetFrom(receiver)) target->setFocus(Qt::MouseFocusReason);
        if (receiver) send(*receiver, type);
        askForMenu(receiver);
    }

    QPointer<QWidget> m_window;
    QPoint m_place;
    Qt::MouseButton m_button;
    QPointer<QWidget> m_down;  ///< what the press went to, and gets the release
    QPointer<QWidget> m_downPopup;
};

}  // namespace

void clickScreen(QWidget& window, const QPoint& place, ClickKind kind) {
    Mouse mouse(window, place, kind.button);
    mouse.press(QEvent::MouseButtonPress);
    mouse.release();
    if (!kind.isDouble) return;
    deliverEvents();
    mouse.press(QEvent::MouseButtonDblClick);
    mouse.release();
}

QWidget* focusTargetAt(QWidget& window, const QPoint& place) {
    return focusTargetFrom(innermostAt(window, window.mapFromGlobal(place)));
}

bool hasMouse(QWidget& window, const QPoint& place) {
    const QPointF inWindow = window.mapFromGlobal(place);
    QMouseEvent move(QEvent::MouseMove, inWindow, inWindow, place, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    return passes(window.windowHandle(), move);
}

}  // namespace velcoran::host
