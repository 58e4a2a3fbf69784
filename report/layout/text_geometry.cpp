#include "text_geometry.h"

#include "report/layout/fonts/font_set.h"

#include <QRectF>

namespace velcoran::report {

namespace {

constexpr double kTwipsAPoint = 20;

double emOf(const PageItem& item) { return static_cast<double>(item.fontSize) * kTwipsAPoint; }

/// The comma stands so that the kept places end at the right edge; longer fractions and texts without one end there
/// themselves.
double decimalStart(const PageItem& item, QStringView line, const FontSet& fonts) {
    const double right = item.rect.left.value + item.rect.width.value;
    const double width = fonts.width(line, item.isBold) * emOf(item);
    const qsizetype comma = line.lastIndexOf(u',');
    if (comma < 0) return right - width;
    const QString zeros(item.places - (line.size() - comma - 1), u'0');
    const double kept = fonts.width(zeros, item.isBold) * emOf(item);
    return std::max(right - width - kept, static_cast<double>(item.rect.left.value));
}

}  // namespace

double baseLine(const PageItem& item, const FontSet& fonts) {
    const double leading = item.lineHeight.value - (fonts.ascent() + fonts.descent()) * emOf(item);
    return item.rect.top.value + leading / 2 + fonts.ascent() * emOf(item);
}

double lineStart(const PageItem& item, QStringView line, const FontSet& fonts) {
    const double left = item.rect.left.value;
    if (item.alignment == Alignment::Left) return left;
    if (item.alignment == Alignment::Decimal) return decimalStart(item, line, fonts);
    const double spare = item.rect.width.value - fonts.width(line, item.isBold) * emOf(item);
    return item.alignment == Alignment::Centre ? left + spare / 2 : left + spare;
}

QRectF textRect(const Page& page, const PageItem& item, qsizetype start, qsizetype length) {
    const QRectF whole(item.rect.left.value, item.rect.top.value, item.rect.width.value, item.rect.height.value);
    const qsizetype lineFrom = start == 0 ? 0 : item.text.lastIndexOf(u'\n', start - 1) + 1;
    qsizetype lineTo = item.text.indexOf(u'\n', lineFrom);
    if (lineTo < 0) lineTo = item.text.size();
    if (length <= 0 || start + length > lineTo || item.text.mid(start, length) != item.fullText.mid(start, length)) {
        return whole;
    }
    const QStringView line = QStringView(item.text).mid(lineFrom, lineTo - lineFrom);
    const FontSet& fonts = *page.fonts;
    const double left = lineStart(item, line, fonts);
    const double before = fonts.width(line.left(start - lineFrom), item.isBold) * emOf(item);
    const double width = fonts.width(line.mid(start - lineFrom, length), item.isBold) * emOf(item);
    const double top =
        item.rect.top.value + item.lineHeight.value * static_cast<double>(item.text.left(start).count(u'\n'));
    return {left + before, top, width, static_cast<double>(item.lineHeight.value)};
}

}  // namespace velcoran::report
