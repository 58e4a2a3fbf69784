#include "page_area.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

namespace velcoran::viewer {

namespace {

constexpr int kPageOverlap = 40;
constexpr int kWheelNotch = 120;

enum class Axis { Vertical, Horizontal };

struct ScrollRow {
    Qt::Key key;
    bool isShifted;
    Axis axis;
    int lines;  ///< lines to scroll
    int views;  ///< heights of the view to scroll
};

constexpr ScrollRow kScrollKeys[] = {
    {Qt::Key_Up, false, Axis::Vertical, -1, 0},     {Qt::Key_Down, false, Axis::Vertical, 1, 0},
    {Qt::Key_Left, false, Axis::Horizontal, -1, 0}, {Qt::Key_Right, false, Axis::Horizontal, 1, 0},
    {Qt::Key_PageUp, false, Axis::Vertical, 0, -1}, {Qt::Key_PageDown, false, Axis::Vertical, 0, 1},
    {Qt::Key_Space, true, Axis::Vertical, 0, -1},   {Qt::Key_Space, false, Axis::Vertical, 0, 1},
};

}  // namespace

void PageArea::keyPressEvent(QKeyEvent* event) { event->setAccepted(scroll(*event)); }

bool PageArea::scroll(const QKeyEvent& key) {
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    if (m_layout.pageCount() == 0 || (modifiers & ~Qt::ShiftModifier) != 0) return false;
    for (const ScrollRow& row : kScrollKeys) {
        if (row.key != key.key() || row.isShifted != modifiers.testFlag(Qt::ShiftModifier)) continue;
        // With whole pages in view, a view is a page.
        if (row.views != 0 && m_zoom.kind == Zoom::Kind::WholePage) {
            goToPage(m_current + row.views);
            return true;
        }
        QScrollBar* bar = row.axis == Axis::Vertical ? verticalScrollBar() : horizontalScrollBar();
        const int view = std::max(1, viewport()->height() - kPageOverlap) / m_barUnit;
        bar->setValue(bar->value() + row.lines * bar->singleStep() + row.views * view);
        return true;
    }
    return false;
}

void PageArea::wheelEvent(QWheelEvent* event) {
    if (!event->modifiers().testFlag(Qt::ControlModifier)) return QAbstractScrollArea::wheelEvent(event);
    event->accept();
    if (m_layout.pageCount() == 0) return;
    m_wheel += event->angleDelta().y();
    while (std::abs(m_wheel) >= kWheelNotch) {
        const bool isIn = m_wheel > 0;
        m_wheel += isIn ? -kWheelNotch : kWheelNotch;
        const int percent = nextZoomStep(qRound(m_layout.percent()), isIn);
        zoomAt({Zoom::Kind::Percent, percent}, event->position().toPoint());
    }
}

void PageArea::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) {
        m_marks.select(objectAt(event->pos()));
        viewport()->update();
        emit selectionChanged();
    }
    if (event->button() != Qt::LeftButton || m_layout.pageCount() == 0) return;
    m_pressed = event->pos();
    m_dragFrom = event->pos();
    m_isDragging = false;
}

void PageArea::mouseMoveEvent(QMouseEvent* event) {
    if (!m_pressed) return;
    if (!m_isDragging && (event->pos() - *m_pressed).manhattanLength() < QApplication::startDragDistance()) return;
    if (!m_isDragging) viewport()->setCursor(Qt::ClosedHandCursor);
    m_isDragging = true;
    const QPoint way = event->pos() - m_dragFrom;
    m_dragFrom = event->pos();
    scrollTo(scrollPosition() - way.y());
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - way.x());
}

void PageArea::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_pressed) return;
    m_pressed.reset();
    if (m_isDragging) {
        m_isDragging = false;
        return viewport()->unsetCursor();
    }
    m_marks.select(objectAt(event->pos()));
    viewport()->update();
    emit selectionChanged();
}

void PageArea::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    const std::optional<Selection> object = objectAt(event->pos());
    if (object) clickObject(object->page, object->item, event->pos());
}

void PageArea::clickObject(int page, qsizetype item, QPoint place) {
    m_marks.select(Selection{page, item});
    viewport()->update();
    emit selectionChanged();
    const QStringList fields = m_marks.fieldValues({page, item});
    emit objectClicked(viewport()->mapTo(this, place), fields);
}

std::optional<Selection> PageArea::objectAt(QPoint place) {
    if (m_layout.pageCount() == 0) return std::nullopt;
    const int page = m_layout.pageAt(scrollPosition() + place.y());
    if (!pageRect(page).contains(place)) return std::nullopt;
    const std::optional<qsizetype> item = itemAt(m_marks.page(page), toTwips(page, place));
    if (!item) return std::nullopt;
    return Selection{page, *item};
}

void PageArea::contextMenuEvent(QContextMenuEvent* event) {
    if (m_layout.pageCount() > 0) emit menuRequested(event->globalPos());
}

// Painting and the mouse make pages; when that fails for want of memory, the ground stays and the host lives on.
bool PageArea::viewportEvent(QEvent* event) {
    try {
        if (event->type() != QEvent::ToolTip) return QAbstractScrollArea::viewportEvent(event);
        showFullText(*static_cast<QHelpEvent*>(event));
    } catch (const std::exception&) {
        m_pressed.reset();
    }
    return true;
}

// A text that did not fit shows whole when the pointer rests on it.
void PageArea::showFullText(const QHelpEvent& help) {
    const std::optional<Selection> object = objectAt(help.pos());
    QString text;
    if (object) {
        const report::PageItem& item = m_marks.page(object->page).items[object->item];
        QString shown = item.text;
        if (shown.replace(u'\n', u' ') != item.fullText.simplified()) text = item.fullText;
    }
    QToolTip::showText(help.globalPos(), text.toHtmlEscaped(), viewport());
}

}  // namespace velcoran::viewer
