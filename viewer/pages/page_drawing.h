#pragma once

#include "page_cache.h"

class QPaintDevice;
class QPainter;
class QPaintEvent;
class QWidget;

namespace velcoran::viewer {

class PageMarks;
class PageView;

/// Draws the pages in view: their ground, their pictures from the cache, the marks of search and choice. Pictures that
/// are missing are asked for; what the cache has at other sizes stands in for them.
class PageDrawing {
public:
    /// @param viewport  what is drawn on; outlives this, as the view and the marks do
    PageDrawing(QWidget& viewport, const PageView& view, PageMarks& marks);

    void setDocument(const std::shared_ptr<const report::Document>& document) { m_cache.setDocument(document); }
    /// The next drawing makes what is missing at once: the first sight of a report is worth a few milliseconds.
    void waitForPictures() { m_isWaitingForPictures = true; }
    /// @param screen  what the window is painted on; a drawing onto anything else is a picture that somebody takes
    void draw(const QPaintEvent& event, const QPaintDevice* screen);

private:
    [[nodiscard]] QSize pictureSize() const;
    [[nodiscard]] std::vector<PictureKey> tilesInView(int page) const;
    void drawPage(QPainter& painter, int page);
    void drawPictures(QPainter& painter, int page, const QRect& place);
    void drawStandIns(QPainter& painter, int page) const;
    void drawMarks(QPainter& painter, int page);
    void askForPictures();

    QWidget& m_viewport;
    const PageView& m_view;
    PageMarks& m_marks;
    PageCache m_cache;
    bool m_isWaitingForPictures = false;
};

}  // namespace velcoran::viewer
