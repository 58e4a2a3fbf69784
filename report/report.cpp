#include "report.h"

#include "report/data/group_rows.h"
#include "report/data/row_reader.h"
#include "report/layout/definition_model.h"
#include "report/layout/document.h"

#include "db/keeper.h"

#include <atomic>
#include <chrono>
#include <mutex>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds kProgressInterval{250};

/// Columns without which documents cannot be grouped or added up.
bool isNeeded(const ColumnRow& column, Grouping grouping) {
    if (isAmount(column.role) || column.role == ColumnRole::Moneda) return true;
    if (grouping == Grouping::Day) return column.role == ColumnRole::DataDoc;
    return column.role == ColumnRole::CodClient || column.role == ColumnRole::NumeClient;
}

/// The text of a string constant of the formula language: between two quotes of one kind, a quote inside written twice.
std::optional<QString> constantText(const QString& source) {
    const QString trimmed = source.trimmed();
    if (trimmed.size() < 2) return std::nullopt;
    const QChar quote = trimmed.front();
    if ((quote != u'\'' && quote != u'"') || trimmed.back() != quote) return std::nullopt;
    QString text;
    for (qsizetype i = 1; i + 1 < trimmed.size(); ++i) {
        if (trimmed[i] == quote) {
            if (i + 2 >= trimmed.size() || trimmed[i + 1] != quote) return std::nullopt;
            ++i;
        }
        text += trimmed[i];
    }
    return text;
}

}  // namespace

struct Report::State {
    std::shared_ptr<const Definition> definition;
    QMap<QString, QString> texts;
    QMap<QString, QString> unboundTexts;
    ReportRequest request;
    db::Connection connection;
    QString commandText;
    db::Statement statement;
    bool isStatementCancelled = false;
    QList<db::Column> columns;
    ColumnBinding binding;
    bool isBound = false;

    [[nodiscard]] const DefinitionObject& object(const QString& name, ObjectKind kind) const {
        const DefinitionObject* found = definition->object(name);
        if (found == nullptr || found->kind != kind) {
            throw base::Error(base::kNoSuchObject, u"Raportul %1 nu are obiectul „%2”."_s.arg(definition->name, name));
        }
        return *found;
    }
};

/// Shared with its worker, which may be left to the keeper and outlive the report.
struct Report::Run {
    std::atomic_bool stop = false;
    std::mutex mutex;  ///< guards the next four; never held while the driver works
    db::Statement statement;
    bool isPreparing = false;
    bool isReading = false;  ///< the statement is in use: a cancel reaches this run and no later one
    bool wasStatementCancelled = false;
    db::Connection connection;
    QString text;
    bool isPreparedAnew = false;  ///< a cancel may still wait in the old statement and would end this run
    ColumnBinding binding;
    Grouping grouping = Grouping::Partner;
    std::function<void()> answered;
    std::function<void(qint64)> progress;
    std::function<void(RunOutcome)> finished;

    void tellAnswered() const {
        if (!answered) return;
        try {
            answered();
        } catch (...) {  // whoever watches must not end the run
        }
    }

    void tellProgress(qint64 rows) const {
        if (!progress) return;
        try {
            progress(rows);
        } catch (...) {  // whoever watches must not end the run
        }
    }

    /// While it lives, a flag says what the driver is doing; it goes down however that ends.
    class Doing {
    public:
        Doing(Run& run, bool& flag) : m_run(run), m_flag(flag) {
            const std::lock_guard guard(m_run.mutex);
            if (m_run.stop) throw base::Cancelled();
            m_flag = true;
        }
        ~Doing() {
            const std::lock_guard guard(m_run.mutex);
            m_flag = false;
        }
        Doing(const Doing&) = delete;
        Doing& operator=(const Doing&) = delete;

    private:
        Run& m_run;
        bool& m_flag;
    };

    void prepareAnew() {
        const Doing preparing(*this, isPreparing);
        db::Statement fresh = connection.prepare(text);
        const std::lock_guard guard(mutex);
        statement = std::move(fresh);
    }

    void cancel() {
        const std::lock_guard guard(mutex);
        stop = true;
        if (isPreparing) connection.cancel();
        if (!isReading) return;
        wasStatementCancelled = true;
        statement.cancel();
    }

    /// The connection while the driver works on it; null before and after.
    [[nodiscard]] const IConnection* driverInUse() {
        const std::lock_guard guard(mutex);
        return isPreparing || isReading ? connection.interface().get() : nullptr;
    }

    void giveBack(db::Statement& last, bool& wasCancelled) {
        const std::lock_guard guard(mutex);
        last = statement;
        wasCancelled = wasStatementCancelled;
    }

    RowStore readRows() {
        RowReader reader(binding);
        auto next = std::chrono::steady_clock::now();
        if (isPreparedAnew) prepareAnew();
        const Doing reading(*this, isReading);
        const db::Rows rows = statement.run();
        const RowBlock* block = rows.fetch();
        tellAnswered();
        for (; block != nullptr; block = rows.fetch()) {
            if (stop) throw base::Cancelled();
            reader.add(*block);
            if (std::chrono::steady_clock::now() < next) continue;
            tellProgress(reader.rowCount());
            next = std::chrono::steady_clock::now() + kProgressInterval;
        }
        tellProgress(reader.rowCount());
        return reader.take();
    }

    RunOutcome outcome() {
        RunOutcome result;
        try {
            if (stop) throw base::Cancelled();
            auto content = groupRows(readRows(), grouping, stop);
            if (stop) throw base::Cancelled();
            result.data = std::make_shared<const ReportData>(std::move(content));
        } catch (const base::Cancelled&) {
            result.isCancelled = true;
        } catch (...) {
            // A statement that was stopped fails with words of its provider; they are no failure.
            result.isCancelled = stop;
            if (!stop) result.error = base::currentError();
        }
        return result;
    }

    void work() noexcept {
        RunOutcome result = outcome();
        try {
            if (finished) finished(std::move(result));
        } catch (...) {  // nobody is left to tell
        }
    }
};

Report::Report(std::shared_ptr<const Definition> definition) : m_state(std::make_unique<State>()) {
    m_state->definition = std::move(definition);
    for (const DefinitionSection& section : m_state->definition->sections) {
        for (const DefinitionObject& object : section.objects) {
            if (object.kind == ObjectKind::Text) m_state->texts.insert(object.name, object.text);
        }
    }
}

Report::~Report() { cancelAndWait(); }

const Definition& Report::definition() const { return *m_state->definition; }
QString Report::name() const { return m_state->definition->name; }

void Report::setText(const QString& object, const QString& text) {
    m_state->texts[m_state->object(object, ObjectKind::Text).name] = text;
}

QString Report::text(const QString& object) const {
    return m_state->texts.value(m_state->object(object, ObjectKind::Text).name);
}

QMap<QString, QString> Report::texts() const { return m_state->texts; }

void Report::addCommand(const db::Connection& connection, const db::Command& command) {
    if (command.commandType != db::kCommandText) {
        throw base::Error(base::kInvalidProcedureCall, u"Numai comenzile de tip text au înregistrări."_s);
    }
    cancelAndWait();
    m_state->isBound = false;
    m_state->statement = connection.prepare(command.commandText);
    m_state->isStatementCancelled = false;
    m_state->connection = connection;
    m_state->commandText = command.commandText;
    m_state->columns = m_state->statement.columns();
}

void Report::bindFields() {
    if (m_state->statement.isNull()) {
        throw base::Error(base::kInvalidProcedureCall, u"Raportul nu are o sursă de date."_s);
    }
    ColumnBinding binding;
    for (int i = 0; i < m_state->columns.size(); ++i) {
        const std::optional<ColumnRole> role = columnOf(m_state->columns[i].name);
        if (role && !binding[*role]) binding[*role] = i;
    }
    for (const ColumnRow& column : kColumns) {
        if (binding[column.role] || !isNeeded(column, m_state->definition->grouping)) continue;
        throw base::Error(base::kNoSuchObject, u"Sursa de date nu are coloana „%1”."_s.arg(column.name));
    }
    m_state->binding = binding;
    m_state->isBound = true;
}

void Report::setUnboundFieldSource(const QString& field, const QString& source) {
    const DefinitionObject& object = m_state->object(field, ObjectKind::Unbound);
    const std::optional<QString> text = constantText(source);
    if (!text) throw base::Error(base::kTypeMismatch, u"Este nevoie de un text constant: %1"_s.arg(source));
    m_state->unboundTexts[object.name] = *text;
}

void Report::setRequest(const ReportRequest& request) { m_state->request = request; }

const ReportRequest& Report::request() const { return m_state->request; }

ReportTexts Report::snapshot() const {
    return {m_state->definition, m_state->texts, m_state->unboundTexts, m_state->request};
}

std::shared_ptr<Report::Run> Report::newRun(RunWatcher watcher) const {
    if (!m_state->isBound) throw base::Error(base::kInvalidProcedureCall, u"Câmpurile raportului nu sunt legate."_s);
    auto run = std::make_shared<Run>();
    run->statement = m_state->statement;
    run->connection = m_state->connection;
    run->text = m_state->commandText;
    run->isPreparedAnew = m_state->isStatementCancelled;
    run->binding = m_state->binding;
    run->grouping = m_state->definition->grouping;
    run->answered = std::move(watcher.answered);
    run->progress = std::move(watcher.progress);
    run->finished = std::move(watcher.finished);
    return run;
}

std::shared_ptr<const ReportData> Report::load() {
    cancelAndWait();
    RunOutcome outcome = newRun({})->outcome();
    if (outcome.error) throw *outcome.error;
    if (outcome.isCancelled) throw base::Cancelled();
    return std::move(outcome.data);
}

void Report::start(RunWatcher watcher) {
    cancelAndWait();
    m_run = newRun(std::move(watcher));
    try {
        m_worker.emplace([run = m_run] { run->work(); });
    } catch (...) {
        m_run.reset();
        throw;
    }
}

void Report::cancel() {
    if (m_run) m_run->cancel();
}

void Report::cancelAndWait(std::chrono::milliseconds patience) {
    if (!m_run) return;
    cancel();
    const bool isEnded = m_worker->waitFor(patience);
    if (!isEnded) db::keeper().keep(std::move(*m_worker), m_run->driverInUse());
    m_run->giveBack(m_state->statement, m_state->isStatementCancelled);
    m_state->isStatementCancelled = m_state->isStatementCancelled || !isEnded;
    m_worker.reset();
    m_run.reset();
}

}  // namespace velcoran::report
