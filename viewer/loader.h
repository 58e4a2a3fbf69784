#pragma once

#include "base/error.h"
#include "report/layout/page_setup.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>

namespace velcoran::report {
class Document;
class Report;
class ReportData;
}  // namespace velcoran::report

namespace velcoran::viewer {

/// How a loading ended.
struct LoadResult {
    std::shared_ptr<const report::ReportData> data;    ///< null unless the run came to its end
    std::shared_ptr<const report::Document> document;  ///< null unless the run came to its end
    std::optional<base::Error> error;                  ///< nothing for a stop
    bool isCancelled = false;
};

/// Runs a report and lays it out, both on the report's worker; the answers come to the thread of this object and carry
/// the run's number, so that those of an earlier run are dropped.
class Loader : public QObject {
    Q_OBJECT

public:
    Loader();
    /// Stops a run and waits for its worker.
    ~Loader() override;

    /// @param setup  what the pages are laid out for @param printTime  what they show as the moment of printing
    /// @throws Error of the report when the run cannot start; nothing is running then
    void start(std::shared_ptr<report::Report> report, const report::PageSetup& setup, const QDateTime& printTime);
    /// Stops the run; ended follows, soon, also when the driver does not answer: the keeper has the run then. Returns
    /// at once.
    void stop();
    /// Stops the run and waits for its worker, or for the keeper to take it; ended does not follow.
    void abandon();

    [[nodiscard]] bool isRunning() const { return m_report != nullptr; }
    [[nodiscard]] qint64 rows() const { return m_rows; }
    [[nodiscard]] qint64 milliseconds() const { return m_clock.isValid() ? m_clock.elapsed() : 0; }

signals:
    /// At most once a run: its statement has brought the first rows, or its end.
    void answered();
    void progressed();
    /// Exactly once a run, unless it was abandoned.
    void ended(const velcoran::viewer::LoadResult& result);

private:
    struct Mailbox;

    void stopAgain();
    void forgetRun();
    void takeAnswer(quint64 run);
    void takeRows(quint64 run, qint64 rows);
    void takeResult(quint64 run, const LoadResult& result);

    quint64 m_run = 0;
    qint64 m_rows = 0;
    QElapsedTimer m_clock;
    QElapsedTimer m_sinceStop;
    QTimer m_stopping;  ///< while a stopped run has not ended
    std::shared_ptr<report::Report> m_report;
    std::shared_ptr<Mailbox> m_mailbox;
};

}  // namespace velcoran::viewer
