#include "page.h"
#include "report/layout/fonts/font_set.h"
#include "text_geometry.h"

#include <QFont>
#include <QPaintDevice>
#include <QPainter>

#include <cmath>

namespace velcoran::report {

namespace {

/// Where a text starts: a base line on a whole pixel, and a place that Qt's 64ths of a pixel hold exactly, so
/// that every picture of a part of the page has the same letters.
QPointF settled(QPointF start) { return {std::round(start.x() * 64) / 64, std::round(start.y())}; }

/// Draws the items of one page; keeps the font while it does not change.
class Painter {
public:
    Painter(QPainter& painter, const Page& page, double pixelsPerTwip)
        : m_painter(painter), m_page(page), m_scale(pixelsPerTwip) {}

    void draw(const PageItem& item) {
        if (item.kind == PageItem::Kind::Text) {
            drawText(item);
        } else {
            drawShape(item);
        }
    }

private:
    void setFont(const PageItem& item) {
        const auto pixels = static_cast<double>(item.fontSize) * 20 * m_scale;
        if (m_hasFont && pixels == m_pixels && item.isBold == m_isBold) return;
        m_hasFont = true;
        m_pixels = pixels;
        m_isBold = item.isBold;
        QFont font(m_page.fonts->family());
        font.setBold(item.isBold);
        // Widths must not depend on the resolution: what was measured for the page holds on every device.
        font.setHintingPreference(QFont::PreferNoHinting);
        font.setKerning(false);
        // Qt rounds a font's size to whole pixels, so the rest of the size is left to the painter.
        const double wholePixels = std::max(1.0, std::round(pixels));
        m_textScale = pixels / wholePixels;
        font.setPixelSize(static_cast<int>(wholePixels));
        // What is left open a painter takes from the application: its italics, lines and letter spacing.
        font.setResolveMask(QFont::AllPropertiesResolved);
        m_painter.setFont(font);
    }
    void drawText(const PageItem& item) {
        if (item.fontSize <= 0) return;
        setFont(item);
        m_painter.setPen(QColor(item.colour.toRgb()));
        double base = baseLine(item, *m_page.fonts);
        for (const QString& line : item.text.split(u'\n')) {
            m_painter.translate(settled(QPointF(lineStart(item, line, *m_page.fonts), base) * m_scale));
            m_painter.scale(m_textScale, m_textScale);
            m_painter.drawText(QPointF(), line);
            m_painter.setWorldTransform(m_world);
            base += item.lineHeight.value;
        }
    }
    /// Strokes are at least a pixel wide and lie on whole pixels, so that thin rules stay even.
    void drawShape(const PageItem& item) {
        const double thickness = std::max(1.0, std::round(item.lineHeight.value * m_scale));
        const QColor colour(item.colour.toRgb());
        const double left = std::round(item.rect.left.value * m_scale);
        const double top = std::round(item.rect.top.value * m_scale);
        const double width = std::round(item.rect.width.value * m_scale);
        const double height = std::round(item.rect.height.value * m_scale);
        const bool isBox = item.kind == PageItem::Kind::Box;
        if (!isBox && width >= height) {
            m_painter.fillRect(QRectF(left, top, width, thickness), colour);
        } else if (!isBox) {
            m_painter.fillRect(QRectF(left, top, thickness, height), colour);
        } else {
            m_painter.fillRect(QRectF(left, top, width, thickness), colour);
            m_painter.fillRect(QRectF(left, top + height - thickness, width, thickness), colour);
            m_painter.fillRect(QRectF(left, top, thickness, height), colour);
            m_painter.fillRect(QRectF(left + width - thickness, top, thickness, height), colour);
        }
    }

    QPainter& m_painter;
    const Page& m_page;
    double m_scale;
    QTransform m_world = m_painter.worldTransform();
    double m_pixels = 0;
    double m_textScale = 1;
    bool m_isBold = false;
    bool m_hasFont = false;
};

}  // namespace

void paintPage(QPainter& painter, const Page& page, double pixelsPerTwip) {
    painter.save();
    painter.setRenderHint(QPainter::TextAntialiasing);
    Painter drawing(painter, page, pixelsPerTwip);
    for (const PageItem& item : page.items) drawing.draw(item);
    painter.restore();
}

}  // namespace velcoran::report
