#include "searcher.h"

#include "base/error.h"
#include "viewer/commands/texts.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <numeric>
#include <system_error>

namespace velcoran::viewer {

using report::SearchHit;

/// What the search thread works on. The counts of the pages are kept instead of the hits: a letter may stand in
/// millions of places.
struct Searcher::Task {
    struct Step {
        SearchHit from;
        bool isForward = true;
    };

    Searcher* owner = nullptr;
    quint64 generation = 0;
    std::shared_ptr<const report::Search> search;
    int pageCount = 0;

    std::atomic_bool stop = false;
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<Step> steps;
    std::vector<int> counts;  ///< hits of the pages counted so far

    /// The next step; nothing when the time is free for counting, or at the end.
    std::optional<Step> take() {
        std::unique_lock lock(mutex);
        const auto isReady = [this] { return stop || !steps.empty() || static_cast<int>(counts.size()) < pageCount; };
        changed.wait(lock, isReady);
        if (stop || steps.empty()) return std::nullopt;
        const Step step = steps.front();
        steps.pop_front();
        return step;
    }
    /// Counts the next page. @return true when it was the last one
    bool countPage() {
        const auto page = static_cast<int>(counts.size()) + 1;
        const auto hits = static_cast<int>(search->hitsOnPage({page}).size());
        const std::lock_guard lock(mutex);
        counts.push_back(hits);
        return page == pageCount;
    }
    void push(const Step& step) {
        {
            const std::lock_guard lock(mutex);
            steps.push_back(step);
        }
        changed.notify_one();
    }
    [[nodiscard]] qint64 sum(std::size_t pages) {
        const std::lock_guard lock(mutex);
        return std::accumulate(counts.begin(),
                               counts.begin() + static_cast<std::ptrdiff_t>(std::min(pages, counts.size())), qint64{0});
    }
    [[nodiscard]] bool isCounted(std::size_t pages) {
        const std::lock_guard lock(mutex);
        return counts.size() >= pages;
    }
};

Searcher::Searcher() { setObjectName(QStringLiteral("crwSearcher")); }

Searcher::~Searcher() { stop(); }

void Searcher::stop() {
    ++m_generation;
    if (!m_task) return;
    m_task->stop = true;
    { const std::lock_guard lock(m_task->mutex); }
    m_task->changed.notify_all();
    m_worker.reset();
    m_task.reset();
}

void Searcher::clear() {
    stop();
    m_text.clear();
    m_search.reset();
    m_document.reset();
    m_current.reset();
    m_count.reset();
    m_isNothing = false;
    emit positionChanged();
}

void Searcher::start(const std::shared_ptr<const report::Document>& document, const QString& text,
                     base::PageNumber from) {
    clear();
    if (!document || text.isEmpty()) return;
    m_text = text;
    m_document = document;
    m_search = std::make_shared<const report::Search>(document, text);
    m_task = std::make_shared<Task>();
    m_task->owner = this;
    m_task->generation = m_generation;
    m_task->search = m_search;
    m_task->pageCount = document->pageCount();
    m_task->steps.push_back({startOf(from), true});
    try {
        m_worker.emplace([task = m_task] { run(*task); });
    } catch (const std::system_error&) {
        m_task.reset();
        return findHere(startOf(from), true);
    }
    emit positionChanged();
}

void Searcher::step(bool isForward) {
    if (!m_current) return;
    if (m_task) return m_task->push({*m_current, isForward});
    if (m_search) findHere(*m_current, isForward);
}

/// Without a thread the window searches, and nobody counts.
void Searcher::findHere(const SearchHit& from, bool isForward) {
    const std::atomic_bool stop = false;
    take(m_generation, isForward ? m_search->next(from, stop) : m_search->previous(from, stop));
}

void Searcher::run(Task& task) noexcept {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds kReportEvery{200};
    const auto post = [&task](auto call) { QMetaObject::invokeMethod(task.owner, call, Qt::QueuedConnection); };
    const auto generation = task.generation;
    try {
        Clock::time_point reported = Clock::now();
        while (!task.stop) {
            if (const auto step = task.take()) {
                const auto hit = step->isForward ? task.search->next(step->from, task.stop)
                                                 : task.search->previous(step->from, task.stop);
                post([owner = task.owner, generation, hit] { owner->take(generation, hit); });
                continue;
            }
            if (task.stop) return;
            const bool isWhole = task.countPage();
            if (!isWhole && Clock::now() - reported < kReportEvery) continue;
            reported = Clock::now();
            const qint64 sum = task.sum(task.counts.size());
            post([owner = task.owner, generation, sum, isWhole] { owner->takeCount(generation, sum, isWhole); });
        }
    } catch (const std::exception&) {
        // Stopped, or out of memory: the marks of the pages in view remain, the count stays open.
    }
}

void Searcher::take(quint64 generation, const std::optional<SearchHit>& hit) {
    if (generation != m_generation) return;
    m_isNothing = !hit;
    m_current = hit;
    emit positionChanged();
    emit moved(hit.has_value());
}

void Searcher::takeCount(quint64 generation, qint64 count, bool isWhole) {
    if (generation != m_generation) return;
    if (isWhole) m_count = count;
    emit positionChanged();
}

std::vector<SearchHit> Searcher::hitsOnPage(base::PageNumber page) const {
    return m_search ? m_search->hitsOnPage(page) : std::vector<SearchHit>();
}

void Searcher::setCurrent(const SearchHit& hit) {
    m_current = hit;
    m_isNothing = false;
    emit positionChanged();
}

std::optional<qint64> Searcher::ordinal() const {
    const auto before = static_cast<std::size_t>(m_current->page.value - 1);
    if (!m_task || !m_task->isCounted(before)) return std::nullopt;
    const std::vector<SearchHit> hits = hitsOnPage(m_current->page);
    const auto at = std::ranges::find(hits, *m_current);
    return m_task->sum(before) + (at - hits.begin()) + 1;
}

QString Searcher::positionText() const {
    if (!m_search) return {};
    if (m_isNothing) return QStringLiteral("nicio potrivire");
    if (!m_current) return QStringLiteral("caută…");
    const std::optional<qint64> number = ordinal();
    const QString total = m_count ? groupedNumber(*m_count) : QStringLiteral("…");
    return QStringLiteral("%1 din %2").arg(number ? groupedNumber(*number) : QStringLiteral("…"), total);
}

SearchHit Searcher::startOf(base::PageNumber page) { return {page, -1, 0, 0}; }

}  // namespace velcoran::viewer
