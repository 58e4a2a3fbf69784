#include "report_search.h"

#include "report/layout/document.h"
#include "viewer/pages/page_area.h"
#include "viewer/pages/searcher.h"
#include "viewer/panels/search_bar.h"
#include "viewer/panels/toolbar.h"

#include <QApplication>

#include <algorithm>

namespace velcoran::viewer {

ReportSearch::ReportSearch(Searcher& searcher, PageMarks& marks, Toolbar& toolbar, PageArea& pages)
    : m_searcher(searcher), m_marks(marks), m_toolbar(toolbar), m_bar(toolbar.searchBar()), m_pages(pages) {
    QObject::connect(&m_bar, &SearchBar::searched, &m_searcher, [this](const QString& text) { start(text); });
    QObject::connect(&m_bar, &SearchBar::stepped, &m_searcher, &Searcher::step);
    QObject::connect(&m_bar, &SearchBar::closed, &m_searcher, [this] { close(); });
    QObject::connect(&m_searcher, &Searcher::positionChanged, &m_bar,
                     [this] { m_bar.setPosition(m_searcher.positionText()); });
    QObject::connect(&m_searcher, &Searcher::moved, &m_pages, [this](bool isFound) { showHit(isFound); });
}

ReportSearch::~ReportSearch() {
    m_bar.disconnect(&m_searcher);
    m_searcher.disconnect();
}

void ReportSearch::start(const QString& text) {
    if (text.isEmpty())
        m_searcher.clear();
    else if (m_marks.document())
        m_searcher.start(m_marks.document(), text, {std::max(1, m_pages.currentPage())});
    m_pages.refreshMarks();
}

void ReportSearch::again(bool isForward) {
    if (m_searcher.isActive()) return m_searcher.step(isForward);
    m_toolbar.openSearch();
}

bool ReportSearch::close() {
    const bool isInBox = m_bar.isAncestorOf(QApplication::focusWidget());
    const bool wasOpen = m_searcher.isActive() || isInBox;
    if (isInBox) m_pages.setFocus();
    m_bar.reset();
    m_searcher.clear();
    m_pages.refreshMarks();
    return wasOpen;
}

QString ReportSearch::text() const { return m_searcher.text(); }

std::optional<int> ReportSearch::findNow(const QString& text) {
    m_bar.setText(text);
    const base::PageNumber from{std::max(1, m_pages.currentPage())};
    start(text);
    const std::atomic_bool stop = false;
    const auto hit = report::Search(m_marks.document(), text).next(Searcher::startOf(from), stop);
    if (!hit) return std::nullopt;
    m_searcher.setCurrent(*hit);
    showHit(true);
    return hit->page.value;
}

void ReportSearch::showHit(bool isFound) {
    const std::optional<report::SearchHit> hit = m_searcher.current();
    if (isFound && hit && m_marks.document()) {
        const int page = hit->page.value - 1;
        if (const std::optional<QRectF> place = m_marks.currentHit(page)) m_pages.ensureVisible(page, *place);
    }
    m_pages.refreshMarks();
}

}  // namespace velcoran::viewer
