#pragma once

#include "page_cache.h"
#include "page_layout.h"
#include "page_marks.h"

#include <QAbstractScrollArea>
#include <QPropertyAnimation>

class QHelpEvent;

namespace velcoran::viewer {

class StatePane;

/// The pages, one under the other on a neutral ground: scrolling, zoom, choosing objects.
class PageArea : public QAbstractScrollArea {
    Q_OBJECT

public:
    PageArea(QWidget* parent, PageMarks& marks);

    /// Shows a document from its first page. Null: the empty ground.
    void setDocument(const std::shared_ptr<const report::Document>& document);
    /// Shows another layout of the same report, on the page where it was.
    void replaceDocument(const std::shared_ptr<const report::Document>& document);
    [[nodiscard]] StatePane& statePane() { return *m_statePane; }

    /// The page that the user is on, from 1; 0 without a document.
    [[nodiscard]] int currentPage() const;
    /// @param page  from 1; the nearest one that exists
    void goToPage(int page);
    /// Moves the pages by a key of theirs: the arrows, a page up or down, the blank. @return false for any other key
    bool scroll(const QKeyEvent& key);
    /// Scrolls as little as it takes to have a place of a page in view. @param page  from 0 @param place  in twips
    void ensureVisible(int page, const QRectF& place);
    /// Draws the marks of search and choice anew.
    void refreshMarks();

    [[nodiscard]] const Zoom& zoom() const { return m_zoom; }
    [[nodiscard]] double percent() const { return m_layout.percent(); }
    void setZoom(const Zoom& zoom);
    void stepZoom(bool isIn);
    void setAnimated(bool isAnimated) { m_isAnimated = isAnimated; }

    /// Raises the double click on an object of a page. @param page  from 0
    void clickObject(int page, qsizetype item, QPoint place);
    /// Place of a page on the viewport.
    [[nodiscard]] QRect pageRect(int page) const;
    /// A place of a page, in twips, on the viewport.
    [[nodiscard]] QRectF placeOf(int page, const QRectF& place) const;
    [[nodiscard]] qint64 scrollPosition() const;

signals:
    void currentPageChanged(int page);
    void zoomChanged();
    void selectionChanged();
    /// @param place  on this widget
    void objectClicked(QPoint place, const QStringList& fields);
    /// The user asks for the menu of the chosen object. @param place  on the screen
    void menuRequested(QPoint place);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int x, int y) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    struct Visible {
        int first = 0;
        int last = -1;
    };

    void install(const std::shared_ptr<const report::Document>& document);
    /// Lays the pages out anew; what stands at a place of the viewport stays there.
    void relayout(QPoint anchor);
    void updateBars();
    void scrollTo(qint64 position, bool isGliding = false);
    void zoomAt(const Zoom& zoom, QPoint anchor);
    void noteCurrent(int page);
    [[nodiscard]] Visible visiblePages() const;
    void showFullText(const QHelpEvent& help);
    [[nodiscard]] std::optional<Selection> objectAt(QPoint place);
    [[nodiscard]] QPointF toTwips(int page, QPoint place) const;

    [[nodiscard]] QSize pictureSize() const;
    [[nodiscard]] std::vector<PictureKey> tilesInView(int page) const;
    void drawPage(QPainter& painter, int page);
    void drawPictures(QPainter& painter, int page, const QRect& place);
    void drawMarks(QPainter& painter, int page);
    void askForPictures();

    PageMarks& m_marks;
    PageCache m_cache;
    PageLayout m_layout;
    Zoom m_zoom;
    StatePane* m_statePane;
    QPropertyAnimation m_glide;
    int m_current = 0;
    int m_barUnit = 1;
    bool m_isJumping = false;
    bool m_isAnimated = false;
    /// The next painting draws what is missing at once: the first sight of a report is worth a few milliseconds.
    bool m_isWaitingForPictures = false;
    std::optional<QPoint> m_pressed;
    QPoint m_dragFrom;
    bool m_isDragging = false;
    int m_wheel = 0;
};

}  // namespace velcoran::viewer
