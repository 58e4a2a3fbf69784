#pragma once

#include "report/layout/search.h"
#include "system/worker.h"

#include <QObject>

#include <memory>
#include <optional>

namespace velcoran::viewer {

/// Searches a report on a thread of its own: finds a hit from where the user is, then counts them all, and keeps
/// finding the next and the previous one meanwhile. The answers come to the thread of this object.
class Searcher : public QObject {
    Q_OBJECT

public:
    Searcher();
    ~Searcher() override;

    /// Begins a new search at a page; what ran before is stopped.
    void start(const std::shared_ptr<const report::Document>& document, const QString& text, base::PageNumber from);
    /// Goes on to the next or the previous hit.
    void step(bool isForward);
    /// Ends the search. Nothing is marked any more.
    void clear();

    [[nodiscard]] const QString& text() const { return m_text; }
    [[nodiscard]] bool isActive() const { return m_search != nullptr; }
    /// The hit that the user is on.
    [[nodiscard]] const std::optional<report::SearchHit>& current() const { return m_current; }
    /// Hits of a page, for marking them.
    [[nodiscard]] std::vector<report::SearchHit> hitsOnPage(base::PageNumber page) const;
    /// Takes a hit that was found elsewhere as the one that the user is on.
    void setCurrent(const report::SearchHit& hit);
    /// What the search box says: "5 din 117", "caută…", "nicio potrivire".
    [[nodiscard]] QString positionText() const;

    /// The place in front of the first item of a page.
    [[nodiscard]] static report::SearchHit startOf(base::PageNumber page);

signals:
    /// The user's hit has changed. @param isFound  false when there is none in the report
    void moved(bool isFound);
    /// positionText() has changed.
    void positionChanged();

private:
    struct Task;

    void take(quint64 generation, const std::optional<report::SearchHit>& hit);
    void takeCount(quint64 generation, qint64 count, bool isWhole);
    void stop();
    void findHere(const report::SearchHit& from, bool isForward);
    static void run(Task& task) noexcept;
    [[nodiscard]] std::optional<qint64> ordinal() const;

    QString m_text;
    std::shared_ptr<const report::Search> m_search;
    std::shared_ptr<const report::Document> m_document;
    std::optional<report::SearchHit> m_current;
    std::optional<qint64> m_count;
    bool m_isNothing = false;
    quint64 m_generation = 0;
    std::shared_ptr<Task> m_task;
    std::optional<system::Worker> m_worker;
};

}  // namespace velcoran::viewer
