#pragma once

#include "zoom.h"

#include <QPointF>
#include <QRect>
#include <QSize>
#include <QSizeF>
#include <QtGlobal>

namespace velcoran::viewer {

/// Pages one under the other on a ground, in widget pixels: every place is computed, none is stored.
class PageLayout {
public:
    static constexpr int kGap = 12;

    PageLayout() = default;
    /// @param sheet    size of a page in twips
    /// @param density  pixels an inch at 100 %
    PageLayout(int pageCount, QSizeF sheet, double density) : m_pages(pageCount), m_sheet(sheet), m_density(density) {}

    /// The percentage that a zoom comes to in a view of a size.
    [[nodiscard]] double percentFor(const Zoom& zoom, QSize view) const;
    void setPercent(double percent);

    [[nodiscard]] int pageCount() const { return m_pages; }
    [[nodiscard]] double percent() const { return m_percent; }
    [[nodiscard]] QSize pageSize() const { return m_pageSize; }
    /// Pixels of one twip.
    [[nodiscard]] double pixelsPerTwip() const { return m_density * m_percent / 100.0 / 1440.0; }
    /// Height of all pages with the gaps around them.
    [[nodiscard]] qint64 height() const;
    [[nodiscard]] int width() const { return m_pageSize.width() + 2 * kGap; }
    /// Top of a page. @param page  from 0
    [[nodiscard]] qint64 top(int page) const { return kGap + static_cast<qint64>(page) * pitch(); }
    /// The page at a height or the nearest one, from 0; 0 without pages.
    [[nodiscard]] int pageAt(qint64 y) const;

private:
    [[nodiscard]] int pitch() const { return m_pageSize.height() + kGap; }

    int m_pages = 0;
    QSizeF m_sheet;
    double m_density = 96;
    double m_percent = 100;
    QSize m_pageSize;
};

/// The pieces in which a page of a size is drawn: a large page at a high zoom is never one picture.
constexpr int kTileSide = 1024;
[[nodiscard]] int tileCount(QSize picture);
/// @param tile  0 to tileCount() - 1, row by row
[[nodiscard]] QRect tileRect(QSize picture, int tile);

}  // namespace velcoran::viewer
