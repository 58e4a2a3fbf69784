#include "loaded_report.h"

#include "report/layout/document.h"
#include "report/report.h"
#include "viewer/commands/texts.h"

#include <QPointer>

namespace velcoran::viewer {

namespace {

constexpr int kTickMs = 250;

}  // namespace

LoadedReport::LoadedReport(std::function<void()> show)
    : m_show(std::move(show)), m_setup(report::pageSetup(QStringLiteral("A4"), true)) {
    m_tick.setInterval(kTickMs);
    connect(&m_tick, &QTimer::timeout, this, &LoadedReport::changed);
    connect(&m_loader, &Loader::progressed, this, &LoadedReport::changed);
    connect(&m_loader, &Loader::answered, this, &LoadedReport::answered);
    connect(&m_loader, &Loader::ended, this, [this](const LoadResult& result) {
        end(result);
        emit ended();
    });
}

void LoadedReport::abandon() {
    m_loader.disconnect();
    m_loader.abandon();
}

void LoadedReport::setSource(std::shared_ptr<report::Report> source) {
    const QPointer<LoadedReport> self(this);
    cancel(true);
    if (!self) return;
    m_source = std::move(source);
    take({});
    change(State::Nothing);
}

void LoadedReport::load() {
    const QPointer<LoadedReport> self(this);
    cancel(true);
    if (!self || !m_source) return;
    take({});
    m_failure.reset();
    m_state = State::Loading;
    try {
        m_loader.start(m_source, m_setup, QDateTime::currentDateTime());
        m_tick.start();
        change(State::Loading);
    } catch (...) {
        end({nullptr, nullptr, base::currentError(), false});
        emit ended();
    }
}

void LoadedReport::stop() {
    if (isBusy()) m_loader.stop();
}

void LoadedReport::cancel(bool isNotifying) {
    if (!isBusy()) return;
    m_loader.abandon();
    end({nullptr, nullptr, std::nullopt, true});
    if (isNotifying) emit ended();
}

void LoadedReport::end(const LoadResult& result) {
    m_tick.stop();
    m_state = State::Stopped;
    const std::optional<base::Error> failure = tryToTake(result);
    if (failure) m_failure = failure;
    change(m_document ? State::Shown : failure ? State::Failed : State::Stopped);
}

// What goes wrong here - no memory for the pages - is a failure of the load like any other.
std::optional<base::Error> LoadedReport::tryToTake(const LoadResult& result) noexcept {
    try {
        take(result);
        return result.error;
    } catch (...) {
        m_document.reset();
        m_data.reset();
        return base::currentError();
    }
}

void LoadedReport::take(const LoadResult& result) {
    m_data = result.data;
    m_document = result.document;
    m_definition = m_document ? m_source->name() : QString();
    m_show();
}

bool LoadedReport::layOutAnew() {
    if (!m_document || m_document->setup() == m_setup) return false;
    m_document =
        std::make_shared<const report::Document>(m_data, m_document->texts(), m_setup, QDateTime::currentDateTime());
    return true;
}

void LoadedReport::change(State state) {
    m_state = state;
    emit changed();
}

QString LoadedReport::progressText() const {
    return QStringLiteral("%1 · %2").arg(rowsText(m_loader.rows()), durationText(m_loader.milliseconds()));
}

}  // namespace velcoran::viewer
