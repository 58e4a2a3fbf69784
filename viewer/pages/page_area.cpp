#include "page_area.h"

#include "state_pane.h"

#include <QBackingStore>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

namespace velcoran::viewer {

namespace {

constexpr int kWheelNotch = 120;

struct ScrollRow {
    Qt::Key key;
    bool isShifted;
    Qt::Orientation axis;
    int lines;  ///< lines to scroll
    int views;  ///< heights of the view to scroll
};

constexpr ScrollRow kScrollKeys[] = {
    {Qt::Key_Up, false, Qt::Vertical, -1, 0},     {Qt::Key_Down, false, Qt::Vertical, 1, 0},
    {Qt::Key_Left, false, Qt::Horizontal, -1, 0}, {Qt::Key_Right, false, Qt::Horizontal, 1, 0},
    {Qt::Key_PageUp, false, Qt::Vertical, 0, -1}, {Qt::Key_PageDown, false, Qt::Vertical, 0, 1},
    {Qt::Key_Space, true, Qt::Vertical, 0, -1},   {Qt::Key_Space, false, Qt::Vertical, 0, 1},
};

}  // namespace

PageArea::PageArea(QWidget* parent, PageMarks& marks)
    : QAbstractScrollArea(parent),
      m_marks(marks),
      m_view(*this),
      m_drawing(*viewport(), m_view, marks),
      m_pointer(*viewport(), m_view, marks),
      m_statePane(new StatePane(viewport())) {
    setObjectName(QStringLiteral("crwPages"));
    setAccessibleName(QStringLiteral("Paginile raportului"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setObjectName(QStringLiteral("crwPagesViewport"));
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
}

void PageArea::setDocument(const std::shared_ptr<const report::Document>& document) {
    install(document);
    m_drawing.waitForPictures();
    horizontalScrollBar()->setValue(0);
    m_view.scrollTo(0);
    noteCurrent(m_view.pageCount() > 0 ? 1 : 0);
}

void PageArea::replaceDocument(const std::shared_ptr<const report::Document>& document) {
    const int page = currentPage();
    install(document);
    goToPage(page);
}

void PageArea::install(const std::shared_ptr<const report::Document>& document) {
    m_marks.setDocument(document);
    m_drawing.setDocument(document);
    // Not a page: the next one is told even when its number is the same.
    if (m_current != 0) m_current = -1;
    m_view.setDocument(document.get());
    emit zoomChanged();
    viewport()->update();
}

void PageArea::goToPage(int page) {
    if (m_view.pageCount() == 0) return;
    const int target = std::clamp(page, 1, m_view.pageCount());
    {
        const QScopedValueRollback jumping(m_isJumping, true);
        m_view.scrollToPage(target - 1, m_isAnimated);
    }
    noteCurrent(target);
}

void PageArea::ensureVisible(int page, const QRectF& place) {
    if (m_view.pageCount() == 0) return;
    const QScopedValueRollback jumping(m_isJumping, true);
    m_view.bringIntoView(page, place);
    noteCurrent(page + 1);
}

void PageArea::refreshMarks() {
    m_marks.forgetHits();
    viewport()->update();
}

void PageArea::setZoom(const Zoom& zoom) { zoomAt(zoom, viewport()->rect().center()); }

void PageArea::stepZoom(bool isIn) { setZoom({Zoom::Kind::Percent, nextZoomStep(qRound(m_view.percent()), isIn)}); }

void PageArea::zoomAt(const Zoom& zoom, QPoint anchor) {
    {
        const QScopedValueRollback jumping(m_isJumping, true);
        m_view.setZoom(zoom, anchor);
    }
    viewport()->update();
    emit zoomChanged();
}

void PageArea::noteCurrent(int page) {
    if (page == m_current) return;
    m_current = page;
    emit currentPageChanged(page);
}

bool PageArea::clickField(int page, const QString& field, int record) {
    const report::Page& objects = m_marks.page(page);
    const std::optional<qsizetype> item = itemOfField(objects, field, record);
    if (!item) return false;
    const QRectF place = rectOf(objects.items[*item]);
    ensureVisible(page, place);
    clickObject({page, *item}, m_view.placeOf(page, place).center().toPoint());
    return true;
}

void PageArea::clickObject(const Selection& object, QPoint place) {
    m_marks.select(object);
    viewport()->update();
    emit objectClicked(viewport()->mapTo(this, place), m_marks.fieldValues(object));
}

void PageArea::paintEvent(QPaintEvent* event) {
    QBackingStore* screen = backingStore();
    m_drawing.draw(*event, screen == nullptr ? nullptr : screen->paintDevice());
}

void PageArea::resizeEvent(QResizeEvent*) {
    m_statePane->setGeometry(viewport()->rect());
    if (m_view.pageCount() == 0) return;
    const double before = m_view.percent();
    const QScopedValueRollback jumping(m_isJumping, true);
    m_view.relayout(QPoint(viewport()->width() / 2, 0));
    // Pages that grow push the user's page out of the view.
    if (m_current > 0 && m_view.pageInMiddle() != m_current - 1) m_view.scrollToPage(m_current - 1);
    viewport()->update();
    if (m_view.percent() != before) emit zoomChanged();
}

void PageArea::scrollContentsBy(int, int) {
    viewport()->update();
    if (m_isJumping || m_view.pageCount() == 0 || m_view.isGliding()) return;
    const QScrollBar* bar = verticalScrollBar();
    int page = m_view.pageInMiddle();
    if (bar->value() == bar->minimum()) page = 0;
    if (bar->value() == bar->maximum() && bar->value() > 0) page = m_view.pageCount() - 1;
    noteCurrent(page + 1);
}

void PageArea::keyPressEvent(QKeyEvent* event) { event->setAccepted(scroll(*event)); }

bool PageArea::scroll(const QKeyEvent& key) {
    const Qt::KeyboardModifiers modifiers = key.modifiers() & ~Qt::KeypadModifier;
    if (m_view.pageCount() == 0 || (modifiers & ~Qt::ShiftModifier) != 0) return false;
    const bool isShifted = modifiers.testFlag(Qt::ShiftModifier);
    const auto* row = std::ranges::find_if(
        kScrollKeys, [&](const ScrollRow& one) { return one.key == key.key() && one.isShifted == isShifted; });
    if (row == std::end(kScrollKeys)) return false;
    if (row->views == 0) {
        m_view.scrollLines(row->axis, row->lines);
    } else if (m_view.zoom().kind == Zoom::Kind::WholePage) {
        // With whole pages in view, a view is a page.
        goToPage(m_current + row->views);
    } else {
        m_view.scrollViews(row->views);
    }
    return true;
}

void PageArea::wheelEvent(QWheelEvent* event) {
    if (!event->modifiers().testFlag(Qt::ControlModifier)) return QAbstractScrollArea::wheelEvent(event);
    event->accept();
    if (m_view.pageCount() == 0) return;
    m_wheel += event->angleDelta().y();
    while (std::abs(m_wheel) >= kWheelNotch) {
        const bool isIn = m_wheel > 0;
        m_wheel += isIn ? -kWheelNotch : kWheelNotch;
        const int percent = nextZoomStep(qRound(m_view.percent()), isIn);
        zoomAt({Zoom::Kind::Percent, percent}, event->position().toPoint());
    }
}

void PageArea::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    if (const std::optional<Selection> object = m_pointer.objectAt(event->pos())) clickObject(*object, event->pos());
}

void PageArea::contextMenuEvent(QContextMenuEvent* event) {
    if (m_view.pageCount() > 0) emit menuRequested(event->globalPos());
}

// Painting and the mouse make pages; when that fails for want of memory, the ground stays and the host lives on.
bool PageArea::viewportEvent(QEvent* event) {
    try {
        if (event->type() != QEvent::ToolTip) return QAbstractScrollArea::viewportEvent(event);
        m_pointer.showFullText(*static_cast<QHelpEvent*>(event));
    } catch (const std::exception&) {
        m_pointer.giveUp();
    }
    return true;
}

}  // namespace velcoran::viewer
