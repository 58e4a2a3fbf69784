#pragma once

#include "page_drawing.h"
#include "page_marks.h"
#include "page_pointer.h"
#include "page_view.h"

#include <QAbstractScrollArea>

namespace velcoran::viewer {

class StatePane;

/// The pages, one under the other on a neutral ground, and the page that the user is on.
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
    [[nodiscard]] int currentPage() const { return m_current; }
    /// @param page  from 1; the nearest one that exists
    void goToPage(int page);
    /// Moves the pages by a key of theirs: the arrows, a page up or down, the blank. @return false for any other key
    bool scroll(const QKeyEvent& key);
    /// Scrolls as little as it takes to have a place of a page in view. @param page  from 0 @param place  in twips
    void ensureVisible(int page, const QRectF& place);
    /// Draws the marks of search and choice anew.
    void refreshMarks();

    [[nodiscard]] const PageView& view() const { return m_view; }
    void setZoom(const Zoom& zoom);
    void stepZoom(bool isIn);
    void setAnimated(bool isAnimated) { m_isAnimated = isAnimated; }

    /// Brings the object that shows a field into view and raises its double click. @param page  from 0, must exist
    /// @param record  counted as on the page @return false when there is no such object
    [[nodiscard]] bool clickField(int page, const QString& field, int record);

signals:
    void currentPageChanged(int page);
    void zoomChanged();
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
    void mousePressEvent(QMouseEvent* event) override { m_pointer.press(*event); }
    void mouseMoveEvent(QMouseEvent* event) override { m_pointer.move(*event); }
    void mouseReleaseEvent(QMouseEvent* event) override { m_pointer.release(*event); }
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    void install(const std::shared_ptr<const report::Document>& document);
    void zoomAt(const Zoom& zoom, QPoint anchor);
    void noteCurrent(int page);
    void clickObject(const Selection& object, QPoint place);

    PageMarks& m_marks;
    PageView m_view;
    PageDrawing m_drawing;
    PagePointer m_pointer;
    StatePane* m_statePane;
    int m_current = 0;
    bool m_isJumping = false;  ///< the page that the user is on is told by whoever scrolls
    bool m_isAnimated = false;
    int m_wheel = 0;
};

}  // namespace velcoran::viewer
