#include "page_view.h"

#include "report/layout/document.h"

#include <QAbstractScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace velcoran::viewer {

namespace {

constexpr int kLineStep = 40;
constexpr int kPageOverlap = 40;
constexpr int kGlideMs = 160;
// Scroll bars count in int; a report that is higher is scrolled in coarser steps.
constexpr qint64 kMaxBarRange = 1'000'000'000;
constexpr double kMarginInView = 24;

}  // namespace

PageView::PageView(QAbstractScrollArea& area) : m_area(area), m_glide(area.verticalScrollBar(), "value") {
    area.verticalScrollBar()->setSingleStep(kLineStep);
    area.horizontalScrollBar()->setSingleStep(kLineStep);
    m_glide.setDuration(kGlideMs);
    m_glide.setEasingCurve(QEasingCurve::OutCubic);
}

void PageView::setDocument(const report::Document* document) {
    m_glide.stop();
    m_layout = document == nullptr ? PageLayout()
                                   : PageLayout(document->pageCount(),
                                                QSizeF(document->pageWidth().value, document->pageHeight().value),
                                                m_area.logicalDpiX());
    // A bar that came and went with the width would make the fitted width swing.
    m_area.setVerticalScrollBarPolicy(document == nullptr ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAlwaysOn);
    m_layout.setPercent(m_layout.percentFor(m_zoom, m_area.viewport()->size()));
    updateBars();
}

PageView::Range PageView::visiblePages() const {
    if (pageCount() == 0) return {};
    return {pageAt({0, 0}), pageAt({0, m_area.viewport()->height()})};
}

int PageView::pageInMiddle() const { return pageAt({0, m_area.viewport()->height() / 2}); }

QRect PageView::pageRect(int page) const {
    if (pageCount() == 0) return {};
    const QSize size = m_layout.pageSize();
    const int x = std::max(PageLayout::kGap, (m_area.viewport()->width() - size.width()) / 2) -
                  m_area.horizontalScrollBar()->value();
    const qint64 y = m_layout.top(page) - position();
    return {QPoint(x, static_cast<int>(std::clamp<qint64>(y, -kMaxBarRange, kMaxBarRange))), size};
}

QPointF PageView::toTwips(int page, QPoint place) const {
    return QPointF(place - pageRect(page).topLeft()) / m_layout.pixelsPerTwip();
}

QRectF PageView::placeOf(int page, const QRectF& place) const {
    const double scale = m_layout.pixelsPerTwip();
    const QRectF scaled(place.topLeft() * scale, place.size() * scale);
    return scaled.translated(pageRect(page).topLeft());
}

qint64 PageView::position() const { return static_cast<qint64>(m_area.verticalScrollBar()->value()) * m_barUnit; }

void PageView::scrollTo(qint64 position, bool isGliding) {
    m_glide.stop();
    QScrollBar* bar = m_area.verticalScrollBar();
    const auto value = static_cast<int>(std::clamp<qint64>(position / m_barUnit, 0, bar->maximum()));
    const int distance = std::abs(value - bar->value());
    if (!isGliding || distance > 2 * m_area.viewport()->height()) return bar->setValue(value);
    m_glide.setStartValue(bar->value());
    m_glide.setEndValue(value);
    m_glide.start();
}

void PageView::scrollToPage(int page, bool isGliding) { scrollTo(m_layout.top(page) - PageLayout::kGap, isGliding); }

void PageView::drag(QPoint way) {
    scrollTo(position() - way.y());
    m_area.horizontalScrollBar()->setValue(m_area.horizontalScrollBar()->value() - way.x());
}

void PageView::bringIntoView(int page, const QRectF& place) {
    const QRectF target = placeOf(page, place);
    const QRectF view =
        QRectF(m_area.viewport()->rect()).adjusted(kMarginInView, kMarginInView, -kMarginInView, -kMarginInView);
    if (target.top() < view.top() || target.bottom() > view.bottom())
        scrollTo(position() + qRound64(target.center().y() - view.center().y()));
    const double x =
        target.right() > view.right() ? target.right() - view.right() : std::min(target.left() - view.left(), 0.0);
    m_area.horizontalScrollBar()->setValue(m_area.horizontalScrollBar()->value() + qRound(x));
}

void PageView::scrollLines(Qt::Orientation axis, int lines) {
    QScrollBar* bar = axis == Qt::Vertical ? m_area.verticalScrollBar() : m_area.horizontalScrollBar();
    bar->setValue(bar->value() + lines * bar->singleStep());
}

void PageView::scrollViews(int views) {
    QScrollBar* bar = m_area.verticalScrollBar();
    bar->setValue(bar->value() + views * (std::max(1, m_area.viewport()->height() - kPageOverlap) / m_barUnit));
}

void PageView::setZoom(const Zoom& zoom, QPoint anchor) {
    m_zoom = zoom;
    relayout(anchor);
}

void PageView::relayout(QPoint anchor) {
    m_glide.stop();
    const int page = pageAt(anchor);
    const QRect before = pageRect(page);
    const double x = before.isEmpty() ? 0 : double(anchor.x() - before.x()) / before.width();
    const double y = before.isEmpty() ? 0 : double(anchor.y() - before.y()) / before.height();
    m_layout.setPercent(m_layout.percentFor(m_zoom, m_area.viewport()->size()));
    updateBars();
    const QSize size = m_layout.pageSize();
    scrollTo(m_layout.top(page) + qRound64(y * size.height()) - anchor.y());
    m_area.horizontalScrollBar()->setValue(PageLayout::kGap + qRound(x * size.width()) - anchor.x());
}

void PageView::updateBars() {
    const QSize view = m_area.viewport()->size();
    const qint64 range = std::max<qint64>(0, m_layout.height() - view.height());
    m_barUnit = static_cast<int>(range / kMaxBarRange) + 1;
    QScrollBar* vertical = m_area.verticalScrollBar();
    vertical->setRange(0, static_cast<int>((range + m_barUnit - 1) / m_barUnit));
    vertical->setPageStep(std::max(1, view.height() / m_barUnit));
    QScrollBar* horizontal = m_area.horizontalScrollBar();
    horizontal->setRange(0, pageCount() == 0 ? 0 : std::max(0, m_layout.width() - view.width()));
    horizontal->setPageStep(view.width());
}

}  // namespace velcoran::viewer
