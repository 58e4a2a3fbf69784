#include "platform/viewer/loader.h"

#include "platform/engine/document.h"
#include "platform/engine/report.h"

#include <mutex>

namespace velcoran::viewer {

namespace {

LoadResult layOut(const engine::RunOutcome& outcome, const engine::ReportTexts& texts, const engine::PageSetup& setup,
                  const QDateTime& printTime) {
    if (!outcome.data) return {nullptr, nullptr, outcome.error, outcome.isCancelled};
    try {
        auto document = std::make_shared<const engine::Document>(outcome.data, texts, setup, printTime);
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
    void post(Call call) noexcept {
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
}

Loader::~Loader() {
    m_mailbox->close();
    abandon();
}

void Loader::start(std::shared_ptr<engine::Report> report, const engine::PageSetup& setup, const QDateTime& printTime) {
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
                 printTime](const engine::RunOutcome& outcome) {
                    const LoadResult result = layOut(outcome, texts, setup, printTime);
                    mailbox->post([run, result](Loader& loader) { loader.takeResult(run, result); });
                },
        });
    } catch (...) {
        m_report.reset();
        throw;
    }
}

void Loader::stop() {
    if (m_report) m_report->cancel();
}

void Loader::abandon() {
    ++m_run;
    if (const std::shared_ptr<engine::Report> report = std::move(m_report)) report->cancelAndWait();
    m_report.reset();
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
    m_report.reset();
    emit ended(result);
}

}  // namespace velcoran::viewer
