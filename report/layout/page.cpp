#include "page.h"

#include "report/layout/fonts/font_set.h"
#include "text_geometry.h"

#include <QRectF>

#include <algorithm>
#include <tuple>

namespace velcoran::report {

namespace {

/// A line of a text with the place of its base: what a person takes for one line.
struct Cell {
    int line;
    int left;
    QString text;
};

constexpr int kSameLine = 30;  // twips: base lines this near to each other are one line

std::vector<Cell> cellsOf(const std::vector<const PageItem*>& items, const FontSet& fonts) {
    std::vector<Cell> cells;
    for (const PageItem* item : items) {
        int base = static_cast<int>(baseLine(*item, fonts));
        for (const QString& line : item->text.split(u'\n')) {
            cells.push_back({base, item->rect.left.value, line});
            base += item->lineHeight.value;
        }
    }
    std::stable_sort(cells.begin(), cells.end(),
                     [](const Cell& one, const Cell& other) { return one.line < other.line; });
    int line = cells.empty() ? 0 : cells.front().line;
    for (Cell& cell : cells) {
        if (cell.line - line > kSameLine) line = cell.line;
        cell.line = line;
    }
    std::stable_sort(cells.begin(), cells.end(), [](const Cell& one, const Cell& other) {
        return std::tie(one.line, one.left) < std::tie(other.line, other.left);
    });
    return cells;
}

}  // namespace

QStringList pageLines(const Page& page) {
    std::vector<const PageItem*> texts;
    for (const PageItem& item : page.items) {
        if (item.isCopyable()) texts.push_back(&item);
    }
    QStringList lines;
    int last = 0;
    for (const Cell& cell : cellsOf(texts, *page.fonts)) {
        if (lines.isEmpty() || cell.line != last) {
            lines.append(cell.text);
        } else {
            lines.last() += u'\t' + cell.text;
        }
        last = cell.line;
    }
    return lines;
}

QStringList recordTexts(const Page& page, std::int32_t record) {
    QStringList texts;
    for (const PageItem& item : page.items) {
        if (item.record == record && record > 0 && item.isCopyable()) texts.append(item.fullText);
    }
    return texts;
}

}  // namespace velcoran::report
