#include "sheet_preview.h"

#include <QPainter>

#include <algorithm>

namespace velcoran::dialogs {

using namespace Qt::StringLiterals;

namespace {

constexpr int kRows = 9;         // lines of text in the picture
constexpr double kShadow = 3.0;  // pixels

}  // namespace

SheetPreview::SheetPreview(QWidget* parent) : QWidget(parent), m_setup(report::pageSetup(u"A4"_s, true)) {
    setObjectName(u"preview"_s);
    setAccessibleName(u"Previzualizarea foii"_s);
    const int side = fontMetrics().height() * 11;
    setMinimumSize(side, side);
}

void SheetPreview::setSheet(const report::PageSetup& setup) {
    m_setup = setup;
    update();
}

void SheetPreview::paintEvent(QPaintEvent*) {
    const double scale =
        std::min((width() - 2 * kShadow) / m_setup.width.value, (height() - 2 * kShadow) / m_setup.height.value);
    const QSizeF size(m_setup.width.value * scale, m_setup.height.value * scale);
    const QRectF sheet(QPointF((width() - size.width()) / 2, (height() - size.height()) / 2), size);
    const QRectF inner = sheet.adjusted(m_setup.left.value * scale, m_setup.top.value * scale,
                                        -m_setup.right.value * scale, -m_setup.bottom.value * scale);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(sheet.translated(kShadow, kShadow), palette().color(QPalette::Mid));
    painter.fillRect(sheet, Qt::white);
    painter.setPen(QPen(Qt::darkGray, 1));
    painter.drawRect(sheet);
    painter.setPen(QPen(Qt::gray, 1, Qt::DashLine));
    painter.drawRect(inner);
    const double step = inner.height() / (kRows + 1);
    for (int row = 1; row <= kRows; ++row) {
        const double width = inner.width() * (row == 1 ? 0.5 : 0.94);
        const QRectF line(inner.left() + inner.width() * 0.03, inner.top() + row * step - step / 6, width, step / 3);
        painter.fillRect(line, row == 1 ? Qt::darkGray : Qt::lightGray);
    }
}

}  // namespace velcoran::dialogs
