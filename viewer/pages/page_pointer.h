#pragma once

#include "page_marks.h"

#include <QPoint>

#include <optional>

class QHelpEvent;
class QMouseEvent;
class QWidget;

namespace velcoran::viewer {

class PageView;

/// What the mouse does on the pages: a click chooses an object, a drag moves the pages, resting shows a text whole.
class PagePointer {
public:
    /// @param viewport  what the mouse is over; outlives this, as the view and the marks do
    PagePointer(QWidget& viewport, PageView& view, PageMarks& marks)
        : m_viewport(viewport), m_view(view), m_marks(marks) {}

    void press(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void release(const QMouseEvent& event);
    /// Forgets a press: what follows it is nothing.
    void giveUp() { m_pressed.reset(); }
    /// The object at a place of the viewport; nothing where there is none.
    [[nodiscard]] std::optional<Selection> objectAt(QPoint place);
    /// A text that did not fit shows whole when the pointer rests on it.
    void showFullText(const QHelpEvent& help);

private:
    void choose(QPoint place);

    QWidget& m_viewport;
    PageView& m_view;
    PageMarks& m_marks;
    std::optional<QPoint> m_pressed;
    QPoint m_dragFrom;
    bool m_isDragging = false;
};

}  // namespace velcoran::viewer
