#pragma once

#include "base/error.h"
#include "db/command.h"
#include "db/keeper.h"
#include "report/layout/report_request.h"

#include <QMap>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace velcoran::report {

class Definition;
class ReportData;
struct ReportTexts;

/// How a run ended.
struct RunOutcome {
    std::shared_ptr<const ReportData> data;  ///< null unless the run came to its end
    std::optional<base::Error> error;        ///< nothing for a stop
    bool isCancelled = false;
};

/// Who hears of a run. All three are called on its worker, also after the report has gone when the driver answered a
/// cancel too late: they own what they touch.
struct RunWatcher {
    std::function<void()> answered;            ///< once: the statement has brought its first rows, or its end
    std::function<void(qint64)> progress;      ///< rows read so far, a few times a second at most
    std::function<void(RunOutcome)> finished;  ///< exactly once, last of all
};

/// An instance of a report definition: a copy whose texts, sources and options are its own, with its data source.
///
/// A run: addCommand - bindFields - setUnboundFieldSource, setText, setRequest - start. The report stops its run in its
/// destructor.
class Report {
public:
    explicit Report(std::shared_ptr<const Definition> definition);
    ~Report();
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    [[nodiscard]] const Definition& definition() const;
    /// Name of the definition: "CRFacturiImport".
    [[nodiscard]] QString name() const;

    /// Replaces the text of a text object in this instance. CR LF breaks the line.
    /// @throws Error kNoSuchObject... names the object that the definition lacks
    void setText(const QString& object, const QString& text);
    [[nodiscard]] QString text(const QString& object) const;
    /// All named text objects with their present texts.
    [[nodiscard]] QMap<QString, QString> texts() const;

    /// Sets the data source: prepares the command's text on its connection and describes the columns.
    /// @throws Error of the provider for a bad statement
    void addCommand(const db::Connection& connection, const db::Command& command);
    /// Binds the unbound fields to the source's columns, by name.
    /// @throws Error kInvalidProcedureCall before addCommand, kNoSuchObject without a column that groups or totals need
    void bindFields();
    /// Gives an unbound string field a string constant of the formula language, "'text'".
    /// @throws Error kTypeMismatch when the source is no string constant, kNoSuchObject when there is no such field
    void setUnboundFieldSource(const QString& field, const QString& source);
    /// What was asked for: detailed or totals, who the partners are, what exports put above the rows.
    void setRequest(const ReportRequest& request);
    [[nodiscard]] const ReportRequest& request() const;

    /// What a document is laid out from.
    [[nodiscard]] ReportTexts snapshot() const;

    /// Runs on the calling thread, to the end. What runs is cancelled on its connection.
    /// @throws Error of the provider; kInvalidProcedureCall before bindFields; Cancelled for a stop
    [[nodiscard]] std::shared_ptr<const ReportData> load();
    /// Starts the run on the report's own worker.
    void start(RunWatcher watcher);
    /// Stops a run; finished follows with isCancelled. Returns at once. A driver hears of a cancel only what it does at
    /// that moment: until the run has ended, every further call reaches it again.
    void cancel();
    /// Stops a run and waits for the worker's end; a worker whose driver does not answer is left to the keeper.
    /// @param patience  how long is waited for the driver
    void cancelAndWait(std::chrono::milliseconds patience = db::kCancelPatience);

private:
    struct Run;
    struct State;
    [[nodiscard]] std::shared_ptr<Run> newRun(RunWatcher watcher) const;

    std::unique_ptr<State> m_state;
    std::shared_ptr<Run> m_run;
    std::optional<system::Worker> m_worker;  ///< of m_run
};

}  // namespace velcoran::report
