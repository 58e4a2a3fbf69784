#include "page_layout.h"

#include <algorithm>
#include <cmath>

namespace velcoran::viewer {

namespace {

int tilesAlong(int length) { return (length + kTileSide - 1) / kTileSide; }

}  // namespace

double PageLayout::percentFor(const Zoom& zoom, QSize view) const {
    if (zoom.kind == Zoom::Kind::Percent || m_sheet.isEmpty()) return zoom.percent;
    const double pixels = m_density / 1440.0;
    double fit = (view.width() - 2 * kGap) / (m_sheet.width() * pixels);
    if (zoom.kind == Zoom::Kind::WholePage)
        fit = std::min(fit, (view.height() - 2 * kGap) / (m_sheet.height() * pixels));
    return std::clamp(fit * 100.0, static_cast<double>(kMinPercent), static_cast<double>(kMaxPercent));
}

void PageLayout::setPercent(double percent) {
    m_percent = percent;
    const double pixels = pixelsPerTwip();
    // Rounding down keeps a page that fits the width from asking for a scroll bar.
    m_pageSize = QSize(std::max(1, static_cast<int>(m_sheet.width() * pixels)),
                       std::max(1, static_cast<int>(m_sheet.height() * pixels)));
}

qint64 PageLayout::height() const { return m_pages == 0 ? 0 : top(m_pages); }

int PageLayout::pageAt(qint64 y) const {
    if (m_pages == 0) return 0;
    return static_cast<int>(std::clamp<qint64>((y - kGap / 2) / pitch(), 0, m_pages - 1));
}

int tileCount(QSize picture) { return tilesAlong(picture.width()) * tilesAlong(picture.height()); }

QRect tileRect(QSize picture, int tile) {
    const int columns = tilesAlong(picture.width());
    const QPoint corner(tile % columns * kTileSide, tile / columns * kTileSide);
    return QRect(corner, QSize(kTileSide, kTileSide)) & QRect(QPoint(), picture);
}

}  // namespace velcoran::viewer
