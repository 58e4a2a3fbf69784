#pragma once

#include "page_layout.h"

#include <QPropertyAnimation>

class QAbstractScrollArea;

namespace velcoran::report {
class Document;
}

namespace velcoran::viewer {

/// The view of the pages in a scroll area: where each page stands on the viewport, at which zoom, scrolled how far.
/// Places on a page are in twips, places on the viewport in its pixels, pages count from 0.
class PageView {
public:
    struct Range {
        int first = 0;
        int last = -1;
    };

    /// @param area  outlives this
    explicit PageView(QAbstractScrollArea& area);

    /// Takes the pages of a document at the zoom that stands, scrolled as before. Null: no pages.
    void setDocument(const report::Document* document);
    [[nodiscard]] int pageCount() const { return m_layout.pageCount(); }

    [[nodiscard]] Range visiblePages() const;
    /// The page in the middle of the viewport.
    [[nodiscard]] int pageInMiddle() const;
    /// The page at a place of the viewport or the nearest one above or below it.
    [[nodiscard]] int pageAt(QPoint place) const { return m_layout.pageAt(position() + place.y()); }
    [[nodiscard]] QRect pageRect(int page) const;
    [[nodiscard]] QSize pageSize() const { return m_layout.pageSize(); }
    [[nodiscard]] QPointF toTwips(int page, QPoint place) const;
    [[nodiscard]] QRectF placeOf(int page, const QRectF& place) const;

    /// How far down the pages are scrolled, in pixels.
    [[nodiscard]] qint64 position() const;
    /// @param isGliding  the way there is shown, unless it is longer than two views
    void scrollTo(qint64 position, bool isGliding = false);
    void scrollToPage(int page, bool isGliding = false);
    /// Moves the pages with the pointer.
    void drag(QPoint way);
    /// Scrolls as little as it takes to have a place of a page in view.
    void bringIntoView(int page, const QRectF& place);
    /// Lines or heights of the view to go on; less than 0 goes back.
    void scrollLines(Qt::Orientation axis, int lines);
    void scrollViews(int views);
    [[nodiscard]] bool isGliding() const { return m_glide.state() == QAbstractAnimation::Running; }

    [[nodiscard]] const Zoom& zoom() const { return m_zoom; }
    [[nodiscard]] double percent() const { return m_layout.percent(); }
    /// What stands at the anchor, a place of the viewport, stays there.
    void setZoom(const Zoom& zoom, QPoint anchor);
    /// Lays the pages out anew for the viewport's size; what stands at the anchor stays there.
    void relayout(QPoint anchor);

private:
    void updateBars();

    QAbstractScrollArea& m_area;
    PageLayout m_layout;
    Zoom m_zoom;
    QPropertyAnimation m_glide;
    int m_barUnit = 1;  ///< pixels of one step of the vertical bar
};

}  // namespace velcoran::viewer
