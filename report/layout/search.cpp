#include "search.h"

#include "base/error.h"

#include <algorithm>

namespace velcoran::report {

namespace {

void stopIfAsked(const std::atomic_bool& stop) {
    if (stop.load(std::memory_order_relaxed)) throw base::Cancelled();
}

}  // namespace

Search::Search(std::shared_ptr<const Document> document, const QString& text)
    : m_document(std::move(document)), m_text(text) {}

std::vector<SearchHit> Search::hitsOnPage(base::PageNumber number) const {
    std::vector<SearchHit> hits;
    if (m_text.isEmpty() || number.value < 1 || number.value > m_document->pageCount()) return hits;
    const Page page = m_document->page(number);
    for (std::size_t i = 0; i < page.items.size(); ++i) {
        const QString& text = page.items[i].fullText;
        qsizetype at = text.indexOf(m_text, 0, Qt::CaseInsensitive);
        for (; at >= 0; at = text.indexOf(m_text, at + m_text.size(), Qt::CaseInsensitive)) {
            hits.push_back({number, static_cast<qsizetype>(i), at, m_text.size()});
        }
    }
    return hits;
}

std::optional<SearchHit> Search::next(const std::optional<SearchHit>& from, const std::atomic_bool& stop) const {
    const int pages = m_document->pageCount();
    const int start = from ? std::clamp(from->page.value, 1, pages) : 1;
    // The first page comes round once more at the end: for the hits in front of the place.
    for (int step = 0; step <= pages; ++step) {
        stopIfAsked(stop);
        for (const SearchHit& hit : hitsOnPage({(start - 1 + step) % pages + 1})) {
            if (step > 0 || !from || hit > *from) return hit;
        }
    }
    return std::nullopt;
}

std::optional<SearchHit> Search::previous(const std::optional<SearchHit>& from, const std::atomic_bool& stop) const {
    const int pages = m_document->pageCount();
    const int start = from ? std::clamp(from->page.value, 1, pages) : pages;
    for (int step = 0; step <= pages; ++step) {
        stopIfAsked(stop);
        const std::vector<SearchHit> hits = hitsOnPage({(start - 1 + pages - step % pages) % pages + 1});
        for (auto hit = hits.rbegin(); hit != hits.rend(); ++hit) {
            if (step > 0 || !from || *hit < *from) return *hit;
        }
    }
    return std::nullopt;
}

qint64 Search::count(const std::atomic_bool& stop) const {
    qint64 hits = 0;
    if (m_text.isEmpty()) return hits;
    for (int page = 1; page <= m_document->pageCount(); ++page) {
        stopIfAsked(stop);
        hits += static_cast<qint64>(hitsOnPage({page}).size());
    }
    return hits;
}

}  // namespace velcoran::report
