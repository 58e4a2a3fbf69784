#include "page_pointer.h"

#include "page_view.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>

namespace velcoran::viewer {

void PagePointer::press(const QMouseEvent& event) {
    if (event.button() == Qt::RightButton) choose(event.pos());
    if (event.button() != Qt::LeftButton || m_view.pageCount() == 0) return;
    m_pressed = event.pos();
    m_dragFrom = event.pos();
    m_isDragging = false;
}

void PagePointer::move(const QMouseEvent& event) {
    if (!m_pressed) return;
    if (!m_isDragging && (event.pos() - *m_pressed).manhattanLength() < QApplication::startDragDistance()) return;
    if (!m_isDragging) m_viewport.setCursor(Qt::ClosedHandCursor);
    m_isDragging = true;
    const QPoint way = event.pos() - m_dragFrom;
    m_dragFrom = event.pos();
    m_view.drag(way);
}

void PagePointer::release(const QMouseEvent& event) {
    if (event.button() != Qt::LeftButton || !m_pressed) return;
    m_pressed.reset();
    if (!m_isDragging) return choose(event.pos());
    m_isDragging = false;
    m_viewport.unsetCursor();
}

void PagePointer::choose(QPoint place) {
    m_marks.select(objectAt(place));
    m_viewport.update();
}

std::optional<Selection> PagePointer::objectAt(QPoint place) {
    if (m_view.pageCount() == 0) return std::nullopt;
    const int page = m_view.pageAt(place);
    if (!m_view.pageRect(page).contains(place)) return std::nullopt;
    const std::optional<qsizetype> item = itemAt(m_marks.page(page), m_view.toTwips(page, place));
    if (!item) return std::nullopt;
    return Selection{page, *item};
}

void PagePointer::showFullText(const QHelpEvent& help) {
    const std::optional<Selection> object = objectAt(help.pos());
    QString text;
    if (object) {
        const report::PageItem& item = m_marks.page(object->page).items[object->item];
        QString shown = item.text;
        if (shown.replace(u'\n', u' ') != item.fullText.simplified()) text = item.fullText;
    }
    QToolTip::showText(help.globalPos(), text.toHtmlEscaped(), &m_viewport);
}

}  // namespace velcoran::viewer
