#pragma once

#include <QPoint>
#include <QPointer>
#include <Qt>

class QWidget;

namespace velcoran::host {

/// Which button clicks, and how often.
struct ClickKind {
    Qt::MouseButton button = Qt::LeftButton;
    bool isDouble = false;
};

/// Clicks a place of the screen as a mouse does: an open list or menu gets the press and closes on one outside, the
/// press gives the focus and holds its control until the release, the right button asks for a menu. The second press of
/// a double click goes to whatever lies at the place by then. The window may be smaller than what lies in it: places
/// outside its edges count as its own.
/// @param window  the window that lies there when no list or menu is open; may close meanwhile
void clickScreen(QWidget& window, const QPoint& place, ClickKind kind = {});

/// The widget that a press at a place of the window would give the focus; null for none.
[[nodiscard]] QWidget* focusTargetAt(QWidget& window, const QPoint& place);

/// True when the mouse reaches the window now: nothing that watches the application drops its events.
[[nodiscard]] bool hasMouse(QWidget& window, const QPoint& place);

}  // namespace velcoran::host
