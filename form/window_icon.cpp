#include "window_icon.h"

#include <QPainter>
#include <QPixmap>
#include <QPolygonF>

namespace velcoran::form {

namespace {

constexpr int kGrid = 32;

void drawSheet(QPainter& painter) {
    const QPolygonF sheet{{5, 2}, {19, 2}, {25, 8}, {25, 29}, {5, 29}};
    painter.setPen(QPen(QColor(0, 0, 0), 1));
    painter.setBrush(QColor(255, 255, 255));
    painter.drawPolygon(sheet);
    painter.setBrush(QColor(192, 192, 192));
    painter.drawPolygon(QPolygonF{{19, 2}, {19, 8}, {25, 8}});
    painter.setPen(QPen(QColor(128, 128, 128), 1));
    for (const int y : {12, 15, 18}) painter.drawLine(8, y, 22, y);
}

void drawArrow(QPainter& painter) {
    painter.setPen(QPen(QColor(0, 64, 0), 1));
    painter.setBrush(QColor(0, 192, 0));
    painter.drawPolygon(QPolygonF{{9, 22}, {21, 22}, {21, 19}, {30, 24.5}, {21, 30}, {21, 27}, {9, 27}});
}

}  // namespace

QIcon makeWindowIcon() {
    QIcon icon;
    for (const int size : {16, 32, 48, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing, size != kGrid);
        painter.scale(static_cast<double>(size) / kGrid, static_cast<double>(size) / kGrid);
        drawSheet(painter);
        drawArrow(painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace velcoran::form
