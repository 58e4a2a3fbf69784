#include "page_marks.h"

#include "searcher.h"

#include <algorithm>

namespace velcoran::viewer {

namespace {

using Kind = report::PageItem::Kind;

constexpr std::size_t kKeptPages = 12;
constexpr std::size_t kKeptHitPages = 64;
// A hairline has to be hit with a mouse.
constexpr double kReach = 30;

}  // namespace

QRectF rectOf(const report::PageItem& item) {
    return {double(item.rect.left.value), double(item.rect.top.value), double(item.rect.width.value),
            double(item.rect.height.value)};
}

std::optional<qsizetype> itemAt(const report::Page& page, QPointF place) {
    std::optional<qsizetype> found;
    for (qsizetype i = 0; i < static_cast<qsizetype>(page.items.size()); ++i) {
        const report::PageItem& item = page.items[i];
        const double reach = item.kind == Kind::Line ? kReach : 0;
        if (item.kind == Kind::Text && !item.isField && item.text.isEmpty()) continue;
        if (!rectOf(item).adjusted(-reach, -reach, reach, reach).contains(place)) continue;
        if (!found || item.kind <= page.items[*found].kind) found = i;
    }
    return found;
}

std::optional<qsizetype> itemOfField(const report::Page& page, const QString& field, int record) {
    const auto at = std::ranges::find_if(page.items, [&](const report::PageItem& item) {
        return item.record == record && item.field.compare(field, Qt::CaseInsensitive) == 0;
    });
    if (at == page.items.end()) return std::nullopt;
    return at - page.items.begin();
}

void PageMarks::setDocument(std::shared_ptr<const report::Document> document) {
    m_document = std::move(document);
    m_pages.clear();
    m_hits.clear();
    m_selection.reset();
}

const report::Page& PageMarks::page(int page) {
    const auto at = std::ranges::find_if(m_pages, [page](const auto& kept) { return kept.number.value == page + 1; });
    if (at != m_pages.end()) return *at;
    if (m_pages.size() >= kKeptPages) m_pages.pop_front();
    m_pages.push_back(m_document->page({page + 1}));
    return m_pages.back();
}

QRectF PageMarks::hitRect(const report::Page& page, const report::SearchHit& hit) const {
    return report::textRect(page, page.items[hit.item], hit.start, hit.length);
}

const std::vector<QRectF>& PageMarks::hits(int page) {
    if (const auto known = m_hits.find(page); known != m_hits.end()) return known->second;
    if (m_hits.size() >= kKeptHitPages) m_hits.clear();
    std::vector<QRectF>& rects = m_hits[page];
    if (!m_document || !m_searcher.isActive()) return rects;
    const report::Page& objects = this->page(page);
    for (const report::SearchHit& hit : m_searcher.hitsOnPage({page + 1})) rects.push_back(hitRect(objects, hit));
    return rects;
}

std::optional<QRectF> PageMarks::currentHit(int page) {
    const std::optional<report::SearchHit>& hit = m_searcher.current();
    if (!m_document || !hit || hit->page.value != page + 1) return std::nullopt;
    return hitRect(this->page(page), *hit);
}

QStringList PageMarks::fieldValues(const Selection& object) {
    if (!page(object.page).items[object.item].isField) return {};
    return {m_document->wholeValue({object.page + 1}, object.item)};
}

QString PageMarks::selectedValue() {
    return m_selection ? page(m_selection->page).items[m_selection->item].fullText : QString();
}

qint64 PageMarks::selectedDataRow() { return m_selection ? page(m_selection->page).items[m_selection->item].row : -1; }

QString PageMarks::selectedRow() {
    if (!m_selection) return {};
    const report::Page& objects = page(m_selection->page);
    const std::int32_t record = objects.items[m_selection->item].record;
    return record == 0 ? QString() : report::recordTexts(objects, record).join(u'\t');
}

}  // namespace velcoran::viewer
