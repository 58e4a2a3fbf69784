#include "page_area.h"

#include "state_pane.h"

#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

namespace velcoran::viewer {

namespace {

constexpr int kLineStep = 40;
constexpr int kGlideMs = 160;
// Scroll bars count in int; a report that is higher is scrolled in coarser steps.
constexpr qint64 kMaxBarRange = 1'000'000'000;
constexpr double kHitMargin = 24;

}  // namespace

PageArea::PageArea(QWidget* parent, PageMarks& marks)
    : QAbstractScrollArea(parent),
      m_marks(marks),
      m_statePane(new StatePane(viewport())),
      m_glide(verticalScrollBar(), "value") {
    setObjectName(QStringLiteral("crwPages"));
    setAccessibleName(QStringLiteral("Paginile raportului"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setObjectName(QStringLiteral("crwPagesViewport"));
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    verticalScrollBar()->setSingleStep(kLineStep);
    horizontalScrollBar()->setSingleStep(kLineStep);
    m_glide.setDuration(kGlideMs);
    m_glide.setEasingCurve(QEasingCurve::OutCubic);
    connect(&m_cache, &PageCache::pictureReady, this, [this](int page) {
        const Visible visible = visiblePages();
        if (page >= visible.first && page <= visible.last) viewport()->update(pageRect(page));
    });
}

void PageArea::setDocument(const std::shared_ptr<const report::Document>& document) {
    install(document);
    m_isWaitingForPictures = true;
    horizontalScrollBar()->setValue(0);
    scrollTo(0);
    noteCurrent(m_layout.pageCount() > 0 ? 1 : 0);
}

void PageArea::replaceDocument(const std::shared_ptr<const report::Document>& document) {
    const int page = currentPage();
    install(document);
    goToPage(page);
}

void PageArea::install(const std::shared_ptr<const report::Document>& document) {
    m_glide.stop();
    m_marks.setDocument(document);
    m_cache.setDocument(document);
    m_layout = document ? PageLayout(document->pageCount(),
                                     QSizeF(document->pageWidth().value, document->pageHeight().value), logicalDpiX())
                        : PageLayout();
    // A bar that came and went with the width would make the fitted width swing.
    setVerticalScrollBarPolicy(document ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    m_layout.setPercent(m_layout.percentFor(m_zoom, viewport()->size()));
    // Not a page: the next one is told even when its number is the same.
    if (m_current != 0) m_current = -1;
    updateBars();
    emit zoomChanged();
    viewport()->update();
}

int PageArea::currentPage() const { return m_current; }

void PageArea::goToPage(int page) {
    if (m_layout.pageCount() == 0) return;
    const int target = std::clamp(page, 1, m_layout.pageCount());
    {
        const QScopedValueRollback jumping(m_isJumping, true);
        scrollTo(m_layout.top(target - 1) - PageLayout::kGap, m_isAnimated);
    }
    noteCurrent(target);
}

void PageArea::ensureVisible(int page, const QRectF& place) {
    if (m_layout.pageCount() == 0) return;
    const QScopedValueRollback jumping(m_isJumping, true);
    const QRectF target = placeOf(page, place);
    const QRectF view = QRectF(viewport()->rect()).adjusted(kHitMargin, kHitMargin, -kHitMargin, -kHitMargin);
    if (target.top() < view.top() || target.bottom() > view.bottom())
        scrollTo(scrollPosition() + qRound64(target.center().y() - view.center().y()));
    const double x =
        target.right() > view.right() ? target.right() - view.right() : std::min(target.left() - view.left(), 0.0);
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + qRound(x));
    noteCurrent(page + 1);
}

void PageArea::refreshMarks() {
    m_marks.forgetHits();
    viewport()->update();
}

void PageArea::setZoom(const Zoom& zoom) { zoomAt(zoom, viewport()->rect().center()); }

void PageArea::stepZoom(bool isIn) { setZoom({Zoom::Kind::Percent, nextZoomStep(qRound(m_layout.percent()), isIn)}); }

void PageArea::zoomAt(const Zoom& zoom, QPoint anchor) {
    m_zoom = zoom;
    relayout(anchor);
    emit zoomChanged();
}

void PageArea::relayout(QPoint anchor) {
    const QScopedValueRollback jumping(m_isJumping, true);
    m_glide.stop();
    const int page = m_layout.pageAt(scrollPosition() + anchor.y());
    const QRect before = pageRect(page);
    const double x = before.isEmpty() ? 0 : double(anchor.x() - before.x()) / before.width();
    const double y = before.isEmpty() ? 0 : double(anchor.y() - before.y()) / before.height();
    m_layout.setPercent(m_layout.percentFor(m_zoom, viewport()->size()));
    updateBars();
    const QSize size = m_layout.pageSize();
    scrollTo(m_layout.top(page) + qRound64(y * size.height()) - anchor.y());
    horizontalScrollBar()->setValue(PageLayout::kGap + qRound(x * size.width()) - anchor.x());
    viewport()->update();
}

void PageArea::updateBars() {
    const QSize view = viewport()->size();
    const qint64 range = std::max<qint64>(0, m_layout.height() - view.height());
    m_barUnit = static_cast<int>(range / kMaxBarRange) + 1;
    verticalScrollBar()->setRange(0, static_cast<int>((range + m_barUnit - 1) / m_barUnit));
    verticalScrollBar()->setPageStep(std::max(1, view.height() / m_barUnit));
    const bool isEmpty = m_layout.pageCount() == 0;
    horizontalScrollBar()->setRange(0, isEmpty ? 0 : std::max(0, m_layout.width() - view.width()));
    horizontalScrollBar()->setPageStep(view.width());
}

qint64 PageArea::scrollPosition() const { return static_cast<qint64>(verticalScrollBar()->value()) * m_barUnit; }

void PageArea::scrollTo(qint64 position, bool isGliding) {
    m_glide.stop();
    const auto value = static_cast<int>(std::clamp<qint64>(position / m_barUnit, 0, verticalScrollBar()->maximum()));
    const int distance = std::abs(value - verticalScrollBar()->value());
    if (!isGliding || distance > 2 * viewport()->height()) return verticalScrollBar()->setValue(value);
    m_glide.setStartValue(verticalScrollBar()->value());
    m_glide.setEndValue(value);
    m_glide.start();
}

void PageArea::noteCurrent(int page) {
    if (page == m_current) return;
    m_current = page;
    emit currentPageChanged(page);
}

PageArea::Visible PageArea::visiblePages() const {
    if (m_layout.pageCount() == 0) return {};
    return {m_layout.pageAt(scrollPosition()), m_layout.pageAt(scrollPosition() + viewport()->height())};
}

QRect PageArea::pageRect(int page) const {
    if (m_layout.pageCount() == 0) return {};
    const QSize size = m_layout.pageSize();
    const int x = std::max(PageLayout::kGap, (viewport()->width() - size.width()) / 2) - horizontalScrollBar()->value();
    const qint64 y = m_layout.top(page) - scrollPosition();
    return {QPoint(x, static_cast<int>(std::clamp<qint64>(y, -kMaxBarRange, kMaxBarRange))), size};
}

QPointF PageArea::toTwips(int page, QPoint place) const {
    return QPointF(place - pageRect(page).topLeft()) / m_layout.pixelsPerTwip();
}

QRectF PageArea::placeOf(int page, const QRectF& place) const {
    const double scale = m_layout.pixelsPerTwip();
    const QRectF scaled(place.topLeft() * scale, place.size() * scale);
    return scaled.translated(pageRect(page).topLeft());
}

void PageArea::scrollContentsBy(int, int) {
    viewport()->update();
    if (m_isJumping || m_layout.pageCount() == 0 || m_glide.state() == QAbstractAnimation::Running) return;
    const int value = verticalScrollBar()->value();
    int page = m_layout.pageAt(scrollPosition() + viewport()->height() / 2);
    if (value == verticalScrollBar()->minimum()) page = 0;
    if (value == verticalScrollBar()->maximum() && value > 0) page = m_layout.pageCount() - 1;
    noteCurrent(page + 1);
}

void PageArea::resizeEvent(QResizeEvent*) {
    m_statePane->setGeometry(viewport()->rect());
    if (m_layout.pageCount() == 0) return;
    const double before = m_layout.percent();
    relayout(QPoint(viewport()->width() / 2, 0));
    // Pages that grow push the user's page out of the view.
    if (m_current > 0 && m_layout.pageAt(scrollPosition() + viewport()->height() / 2) != m_current - 1) {
        const QScopedValueRollback jumping(m_isJumping, true);
        scrollTo(m_layout.top(m_current - 1) - PageLayout::kGap);
    }
    if (m_layout.percent() != before) emit zoomChanged();
}

}  // namespace velcoran::viewer
