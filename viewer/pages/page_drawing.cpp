#include "page_drawing.h"

#include "page_marks.h"
#include "page_view.h"

#include <QPaintEngine>
#include <QPainter>
#include <QPaintEvent>
#include <QWidget>

#include <algorithm>

namespace velcoran::viewer {

namespace {

constexpr int kShadowDepth = 6;
constexpr int kShadowReach = 8;
constexpr int kPrefetchTiles = 8;
// Marker colours: found, and found where the user is.
constexpr QRgb kHitColour = 0xFFFFEE88;
constexpr QRgb kCurrentHitColour = 0xFFFFB347;

QColor groundColour(const QPalette& palette) {
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    return window.lightness() > 127 ? window.darker(112) : window.darker(135);
}

void drawShadow(QPainter& painter, const QRect& page) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (int i = 1; i <= kShadowDepth; ++i) {
        painter.setPen(QPen(QColor(0, 0, 0, 30 - 28 * i / kShadowDepth), 1));
        painter.drawRoundedRect(QRectF(page).translated(0, 1).adjusted(-i + 0.5, -i + 0.5, i - 0.5, i - 0.5), i, i);
    }
    painter.restore();
}

// Makes the painter count in device pixels from a place rounded to one, so that a picture of the page is copied as it
// is, at every density.
void toDevicePixels(QPainter& painter, QPointF corner) {
    const QTransform device = painter.deviceTransform();
    const QPointF at = device.map(corner);
    const QTransform place = QTransform::fromTranslate(std::round(at.x()), std::round(at.y()));
    painter.setWorldTransform(place * device.inverted() * painter.worldTransform());
}

}  // namespace

PageDrawing::PageDrawing(QWidget& viewport, const PageView& view, PageMarks& marks)
    : m_viewport(viewport), m_view(view), m_marks(marks) {
    QObject::connect(&m_cache, &PageCache::pictureReady, &viewport, [this](int page) {
        const PageView::Range visible = m_view.visiblePages();
        if (page >= visible.first && page <= visible.last) m_viewport.update(m_view.pageRect(page));
    });
}

void PageDrawing::draw(const QPaintEvent& event, const QPaintDevice* screen) {
    QPainter painter(&m_viewport);
    painter.fillRect(event.rect(), groundColour(m_viewport.palette()));
    // A picture that somebody takes of the window is not painted again later.
    m_isWaitingForPictures = m_isWaitingForPictures || painter.paintEngine()->paintDevice() != screen;
    const PageView::Range visible = m_view.visiblePages();
    const QMargins shadow(kShadowReach, kShadowReach, kShadowReach, kShadowReach);
    for (int page = visible.first; page <= visible.last; ++page)
        if (m_view.pageRect(page).marginsAdded(shadow).intersects(event.rect())) drawPage(painter, page);
    m_isWaitingForPictures = false;
    askForPictures();
}

QSize PageDrawing::pictureSize() const {
    const QSize size = m_view.pageSize();
    const double ratio = m_viewport.devicePixelRatioF();
    return {std::max(1, qRound(size.width() * ratio)), std::max(1, qRound(size.height() * ratio))};
}

std::vector<PictureKey> PageDrawing::tilesInView(int page) const {
    const QSize size = pictureSize();
    const QRect place = m_view.pageRect(page);
    const QRect part = (place & m_viewport.rect()).translated(-place.topLeft());
    const double ratio = m_viewport.devicePixelRatioF();
    const QRectF inView(QPointF(part.topLeft()) * ratio, QSizeF(part.size()) * ratio);
    std::vector<PictureKey> keys;
    for (int tile = 0; tile < tileCount(size); ++tile)
        if (QRectF(tileRect(size, tile)).intersects(inView)) keys.push_back({page, size, tile});
    return keys;
}

void PageDrawing::drawPage(QPainter& painter, int page) {
    const QRect place = m_view.pageRect(page);
    drawShadow(painter, place);
    painter.fillRect(place, Qt::white);
    drawPictures(painter, page, place);
    drawMarks(painter, page);
}

void PageDrawing::drawPictures(QPainter& painter, int page, const QRect& place) {
    const QSize size = pictureSize();
    std::vector<std::pair<PictureKey, QImage>> pictures;
    bool isWhole = true;
    for (const PictureKey& key : tilesInView(page)) {
        QImage image = m_cache.find(key);
        if (image.isNull() && m_isWaitingForPictures) image = m_cache.drawNow(key);
        isWhole = isWhole && !image.isNull();
        if (!image.isNull()) pictures.emplace_back(key, image);
    }
    painter.save();
    painter.setClipRect(place);
    toDevicePixels(painter, place.topLeft());
    if (!isWhole) drawStandIns(painter, page);
    for (const auto& [key, image] : pictures) painter.drawImage(tileRect(size, key.tile).topLeft(), image);
    painter.restore();
}

void PageDrawing::drawStandIns(QPainter& painter, int page) const {
    const QSize size = pictureSize();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const auto& [key, image] : m_cache.standIns(page, size)) {
        const QRectF tile = tileRect(key.size, key.tile);
        const double x = double(size.width()) / key.size.width();
        const double y = double(size.height()) / key.size.height();
        painter.drawImage(QRectF(tile.x() * x, tile.y() * y, tile.width() * x, tile.height() * y), image);
    }
}

void PageDrawing::drawMarks(QPainter& painter, int page) {
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    for (const QRectF& hit : m_marks.hits(page))
        painter.fillRect(m_view.placeOf(page, hit), QColor::fromRgb(kHitColour));
    if (const std::optional<QRectF> hit = m_marks.currentHit(page))
        painter.fillRect(m_view.placeOf(page, *hit), QColor::fromRgb(kCurrentHitColour));
    painter.restore();
    const std::optional<Selection>& selection = m_marks.selection();
    if (!selection || selection->page != page) return;
    const QRectF frame = m_view.placeOf(page, rectOf(m_marks.page(page).items[selection->item]));
    painter.setPen(QPen(m_viewport.palette().color(QPalette::Active, QPalette::Highlight), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(frame.toAlignedRect().adjusted(-2, -1, 1, 0));
}

// Visible pages first, then the next one, then the previous one.
void PageDrawing::askForPictures() {
    const PageView::Range visible = m_view.visiblePages();
    std::vector<PictureKey> keys;
    for (int page = visible.first; page <= visible.last; ++page)
        for (const PictureKey& key : tilesInView(page)) keys.push_back(key);
    const QSize size = pictureSize();
    for (const int page : {visible.last + 1, visible.first - 1}) {
        if (page < 0 || page >= m_view.pageCount()) continue;
        const int tiles = tileCount(size);
        for (int i = 0; i < std::min(tiles, kPrefetchTiles); ++i)
            keys.push_back({page, size, page < visible.first ? tiles - 1 - i : i});
    }
    m_cache.want(keys);
}

}  // namespace velcoran::viewer
