#include "loader.h"

#include "report/layout/document.h"
#include "report/report.h"

#include "db/keeper.h"

#include <chrono>
#include <mutex>

namespace velcoran::viewer {

namespace {

/// A cancel reaches only what the driver does at that moment: it is repeated until the run ends.
constexpr std::chrono::milliseconds kCancelInterval{50};

LoadResult layOut(const report::RunOutcome& outcome, const report::ReportTexts& texts, const report::PageSetup& setup,
                  const QDateTime& printTime) {
    if (!outcome.data) return {nullptr, nullptr, outcome.error, outcome.isCancelled};
    try {
        auto document = std::make_shared<const report::Document>(outcome.data, texts, setup, printTime);
        return {outcome.data, std::move(document), std::nullopt, false};
    } catch (...) {
        return {nullptr, nullptr, base::currentError(), false};
    }
}

}  // namespace

/// Where the worker leaves its answers. It outlives the loader, which closes it when it goes.
struct Loader::Mailbox {
    std::mutex mutex;
    Loader* loader = nullptr;

    template <class Call>
    void post(Call call) {
        const std::lock_guard lock(mutex);
        if (loader == nullptr) return;
        QMetaObject::invokeMethod(
            loader, [loader = loader, call] { call(*loader); }, Qt::QueuedConnection);
    }
    void close() {
        const std::lock_guard lock(mutex);
        loader = nullptr;
    }
};

Loader::Loader() : m_mailbox(std::make_shared<Mailbox>()) {
    m_mailbox->loader = this;
    setObjectName(QStringLiteral("crwLoader"));
    m_stopping.setInterval(kCancelInterval);
    connect(&m_stopping, &QTimer::timeout, this, [this] { stopAgain(); });
}

Loader::~Loader() {
    m_mailbox->close();
    abandon();
}

void Loader::start(std::shared_ptr<report::Report> report, const report::PageSetup& setup, const QDateTime& printTime) {
    abandon();
    m_rows = 0;
    m_clock.start();
    m_report = std::move(report);
    const quint64 run = m_run;
    try {
        m_report->start({
            .answered = [mailbox = m_mailbox,
                         run] { mailbox->post([run](Loader& loader) { loader.takeAnswer(run); }); },
            .progress =
                [mailbox = m_mailbox, run](qint64 rows) {
                    mailbox->post([run, rows](Loader& loader) { loader.takeRows(run, rows); });
                },
            .finished =
                [mailbox = m_mailbox, run, texts = m_report->snapshot(), setup,
                 printTime](const report::RunOutcome& outcome) {
                    const LoadResult result = layOut(outcome, texts, setup, printTime);
                    mailbox->post([run, result](Loader& loader) { loader.takeResult(run, result); });
                },
        });
    } catch (...) {
        forgetRun();
        throw;
    }
}

void Loader::stop() {
    if (!m_report) return;
    m_report->cancel();
    if (m_stopping.isActive()) return;
    m_sinceStop.start();
    m_stopping.start();
}

void Loader::stopAgain() {
    if (!m_sinceStop.hasExpired(db::kCancelPatience.count())) return m_report->cancel();
    const std::shared_ptr<report::Report> report = m_report;
    forgetRun();
    report->cancelAndWait(std::chrono::milliseconds(0));
    emit ended({nullptr, nullptr, std::nullopt, true});
}

/// What the run still says is dropped.
void Loader::forgetRun() {
    ++m_run;
    m_stopping.stop();
    m_report.reset();
}

void Loader::abandon() {
    const std::shared_ptr<report::Report> report = m_report;
    forgetRun();
    if (report) report->cancelAndWait();
}

void Loader::takeAnswer(quint64 run) {
    if (run == m_run) emit answered();
}

void Loader::takeRows(quint64 run, qint64 rows) {
    if (run != m_run) return;
    m_rows = rows;
    emit progressed();
}

void Loader::takeResult(quint64 run, const LoadResult& result) {
    if (run != m_run) return;
    forgetRun();
    emit ended(result);
}

}  // namespace velcoran::viewer
