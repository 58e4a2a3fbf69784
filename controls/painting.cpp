#include "painting.h"

#include "desktop/desktop.h"
#include "desktop/own_style.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>

namespace velcoran::controls {

QPalette systemPalette() {
    QPalette palette(QColor::fromRgb(kFace), QColor::fromRgb(kFace));
    palette.setColor(QPalette::Base, QColor::fromRgb(kWhite));
    palette.setColor(QPalette::AlternateBase, QColor::fromRgb(kWhite));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, QColor::fromRgb(kBlack));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor::fromRgb(kDisabledText));
    palette.setColor(QPalette::Highlight, QColor::fromRgb(kHighlight));
    palette.setColor(QPalette::HighlightedText, QColor::fromRgb(kWhite));
    return desktop::completed(palette);
}

QPalette controlPalette(const QColor& back, const QColor& text, const QColor& line) {
    QPalette palette = systemPalette();
    palette.setColor(QPalette::Base, back);
    palette.setColor(QPalette::Window, back);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::WindowText, line);
    palette.setColor(QPalette::PlaceholderText, text);
    palette.setColor(QPalette::Highlight, text);
    palette.setColor(QPalette::HighlightedText, back);
    return palette;
}

// Filled rectangles rather than pens: a pen's line blurs at densities between the whole ones.
void drawEdge(QPainter& painter, const QRect& place, const QColor& colour) {
    if (place.isEmpty()) return;
    painter.fillRect(QRect(place.left(), place.top(), place.width(), 1), colour);
    painter.fillRect(QRect(place.left(), place.bottom(), place.width(), 1), colour);
    painter.fillRect(QRect(place.left(), place.top(), 1, place.height()), colour);
    painter.fillRect(QRect(place.right(), place.top(), 1, place.height()), colour);
}

void drawRelief(QPainter& painter, const QRect& place, bool isSunken) {
    const QColor light = QColor::fromRgb(isSunken ? kLine : kWhite);
    const QColor dark = QColor::fromRgb(isSunken ? kWhite : kLine);
    drawEdge(painter, place, QColor::fromRgb(kFocusGround));
    const QRect inner = place.adjusted(1, 1, -1, -1);
    if (inner.isEmpty()) return;
    painter.fillRect(QRect(inner.left(), inner.bottom(), inner.width(), 1), dark);
    painter.fillRect(QRect(inner.right(), inner.top(), 1, inner.height()), dark);
    painter.fillRect(QRect(inner.left(), inner.top(), inner.width(), 1), light);
    painter.fillRect(QRect(inner.left(), inner.top(), 1, inner.height()), light);
}

void drawFocusDots(QPainter& painter, const QRect& place, const QColor& colour) {
    if (place.isEmpty()) return;
    for (int x = place.left(); x <= place.right(); x += 2) {
        painter.fillRect(QRect(x, place.top(), 1, 1), colour);
        painter.fillRect(QRect(x, place.bottom(), 1, 1), colour);
    }
    for (int y = place.top(); y <= place.bottom(); y += 2) {
        painter.fillRect(QRect(place.left(), y, 1, 1), colour);
        painter.fillRect(QRect(place.right(), y, 1, 1), colour);
    }
}

void drawArrow(QPainter& painter, const QRect& place, const QColor& colour) {
    const double half = qMax(2.0, qMin(place.width(), place.height()) * 0.25);
    const QPointF middle = QRectF(place).center();
    QPainterPath triangle(middle + QPointF(-half, -half / 2));
    triangle.lineTo(middle + QPointF(half, -half / 2));
    triangle.lineTo(middle + QPointF(0, half / 2 + 1));
    triangle.closeSubpath();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(triangle, colour);
    painter.restore();
}

void drawTickBox(QPainter& painter, const QRect& box, bool isTicked, bool isEnabled) {
    painter.fillRect(box, QColor::fromRgb(isEnabled ? kWhite : kFace));
    drawEdge(painter, box, QColor::fromRgb(isEnabled ? kFocusGround : kLine));
    if (!isTicked) return;
    const QRectF inner = box;
    QPainterPath tick(QPointF(inner.left() + inner.width() * 0.22, inner.top() + inner.height() * 0.52));
    tick.lineTo(inner.left() + inner.width() * 0.42, inner.top() + inner.height() * 0.73);
    tick.lineTo(inner.left() + inner.width() * 0.78, inner.top() + inner.height() * 0.27);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(tick, QPen(QColor::fromRgb(isEnabled ? kBlack : kDisabledText), box.width() / 7.0));
    painter.restore();
}

QString mnemonicText(const QString& caption, QChar letter) {
    const qsizetype position = letter.isNull() ? -1 : caption.indexOf(letter, 0, Qt::CaseInsensitive);
    QString text;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (i == position || caption[i] == u'&') text += u'&';
        text += caption[i];
    }
    return text;
}

void styleScrollBars(QAbstractScrollArea* area) {
    const std::shared_ptr<QStyle> style = desktop::ownStyle();
    for (QScrollBar* bar : {area->horizontalScrollBar(), area->verticalScrollBar()}) {
        desktop::keepStyle(*bar, *style);
        bar->setPalette(systemPalette());
        bar->setCursor(Qt::ArrowCursor);
    }
}

}  // namespace velcoran::controls
