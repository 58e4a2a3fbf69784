#include "report_viewer.h"

#include "loaded_report.h"
#include "report_search.h"
#include "report_values.h"
#include "viewer_commands.h"
#include "viewer_parts.h"

#include "report/export/formats.h"
#include "report/layout/document.h"
#include "viewer/commands/command_actions.h"
#include "viewer/pages/page_area.h"
#include "viewer/pages/searcher.h"
#include "viewer/pages/state_pane.h"
#include "viewer/panels/toolbar.h"

#include <QKeyEvent>
#include <QMetaMethod>

namespace velcoran::viewer {

namespace {

QVariantList formatValues() {
    QVariantList values;
    for (const report::ExportFormat& format : report::exportFormats())
        values.append(QVariantMap{{QStringLiteral("type"), format.type},
                                  {QStringLiteral("name"), format.name},
                                  {QStringLiteral("extension"), format.extension}});
    return values;
}

struct StateText {
    QString heading;
    QString text;
};

/// What stands in the place of the pages.
StateText stateText(const LoadedReport& report) {
    switch (report.state()) {
        case LoadedReport::State::Loading:
            return {QStringLiteral("Se încarcă raportul…"), report.progressText()};
        case LoadedReport::State::Failed:
            return {QStringLiteral("Raportul nu a putut fi încărcat."),
                    QStringLiteral("%1: %2").arg(QString::number(report.failure()->number()),
                                                 report.failure()->description())};
        case LoadedReport::State::Stopped:
            return {QStringLiteral("Încărcarea a fost oprită."), {}};
        default:
            return {};
    }
}

}  // namespace

/// What the viewer is made of, in the order in which it needs each other.
struct ReportViewer::Inside {
    explicit Inside(ReportViewer& viewer);
    ~Inside();

    void applyOptions();
    void refresh();
    void show();

    ViewerOptions options;
    LoadedReport report;
    Searcher searcher;
    PageMarks marks;
    CommandActions actions;
    ViewerParts parts;
    ReportSearch search;
    ViewerCommands commands;
};

ReportViewer::Inside::Inside(ReportViewer& viewer)
    : report([this] { show(); }),
      marks(searcher),
      parts(viewer, actions, marks),
      search(searcher, marks, parts.toolbar(), parts.pages()),
      commands(viewer, options, actions, report, marks, parts, search) {
    QObject::connect(&report, &LoadedReport::changed, &viewer, [this] { refresh(); });
    QObject::connect(&report, &LoadedReport::answered, &viewer, [&viewer] { emit viewer.downloadStarted(0); });
    QObject::connect(&report, &LoadedReport::ended, &viewer, [&viewer] { emit viewer.downloadFinished(0); });
    applyOptions();
}

ReportViewer::Inside::~Inside() {
    report.disconnect();
    report.abandon();
}

void ReportViewer::Inside::applyOptions() {
    parts.setOptions(options);
    refresh();
}

void ReportViewer::Inside::refresh() {
    commands.refreshActions();
    parts.refresh();
    parts.toolbar().setProgress(report.isBusy() ? report.progressText() : QString());
    const StateText state = stateText(report);
    parts.pages().statePane().showMessage(state.heading, state.text);
}

void ReportViewer::Inside::show() {
    parts.keepFocus();
    search.close();
    parts.setDocument(report.document());
}

ReportViewer::ReportViewer(QWidget* parent) : QWidget(parent), m_inside(std::make_unique<Inside>(*this)) {
    setAccessibleName(QStringLiteral("Raport"));
}

ReportViewer::~ReportViewer() = default;

void ReportViewer::setOption(int option, bool isOn) {
    m_inside->options.set(option, isOn);
    m_inside->applyOptions();
}

QVariantMap ReportViewer::options() const { return m_inside->options.toMap(); }

void ReportViewer::setReportSource(std::shared_ptr<report::Report> report) {
    m_inside->report.setSource(std::move(report));
}

void ReportViewer::viewReport() { m_inside->report.load(); }

bool ReportViewer::isBusy() const { return m_inside->report.isBusy(); }

bool ReportViewer::hasReport() const { return document() != nullptr; }

std::shared_ptr<const report::Document> ReportViewer::document() const { return m_inside->report.document(); }

std::shared_ptr<report::Report> ReportViewer::shownReport() const {
    return hasReport() ? m_inside->report.source() : nullptr;
}

QVariant ReportViewer::failure() const {
    const std::optional<base::Error>& failure = m_inside->report.failure();
    if (!failure) return {};
    return QVariantMap{{QStringLiteral("number"), failure->number()},
                       {QStringLiteral("description"), failure->description()}};
}

void ReportViewer::setOpensDocuments(std::function<bool()> opensDocuments) {
    m_inside->commands.setOpensDocuments(std::move(opensDocuments));
}

bool ReportViewer::hasFilterListener() const {
    return isSignalConnected(QMetaMethod::fromSignal(&ReportViewer::filterButtonClicked));
}

void ReportViewer::stopLoading() { m_inside->report.stop(); }

void ReportViewer::setPageSetup(const report::PageSetup& setup) { m_inside->report.setPageSetup(setup); }

const report::PageSetup& ReportViewer::pageSetup() const { return m_inside->report.pageSetup(); }

int ReportViewer::currentPage() const { return m_inside->parts.pages().currentPage(); }

void ReportViewer::refreshEx(bool isServerDataRead) {
    if (isServerDataRead) return m_inside->report.load();
    if (!m_inside->report.layOutAnew()) return m_inside->parts.pages().viewport()->update();
    const QString searched = m_inside->search.text();
    m_inside->search.start({});
    m_inside->parts.replaceDocument(document());
    m_inside->refresh();
    if (!searched.isEmpty()) m_inside->search.start(searched);
}

void ReportViewer::cancelLoading(bool isNotifying) { m_inside->report.cancel(isNotifying); }

QVariant ReportViewer::report() const {
    if (!hasReport()) return {};
    return reportValues(*document(), m_inside->report.definition());
}

QStringList ReportViewer::pageLines(int page) const {
    if (page < 1 || page > pageCount()) return {};
    return document()->pageLines({page});
}

int ReportViewer::pageCount() const { return hasReport() ? document()->pageCount() : 0; }

QVariant ReportViewer::act(const QString& action, const QVariantMap& arguments) {
    const int page = arguments.value(QStringLiteral("page")).toInt();
    if (action == u"goto") {
        m_inside->parts.pages().goToPage(page);
    } else if (action == u"search") {
        if (!hasReport() || !m_inside->options.isOn(Part::Search)) return {};
        const auto found = m_inside->search.findNow(arguments.value(QStringLiteral("text")).toString());
        if (found) return QVariantMap{{QStringLiteral("page"), *found}};
    } else if (action == u"object") {
        return page >= 1 && page <= pageCount() &&
               m_inside->parts.pages().clickField(page - 1, arguments.value(QStringLiteral("field")).toString(),
                                                  arguments.value(QStringLiteral("record")).toInt());
    } else if (action == u"formats") {
        return formatValues();
    } else if (const std::optional<Command> command = commandNamed(action)) {
        m_inside->commands.run(*command);
    }
    return {};
}

// A host's own shortcuts do not take the viewer's keys away while the viewer has the focus.
bool ReportViewer::event(QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride || !m_inside) return QWidget::event(event);
    if (m_inside->commands.usableCommand(*static_cast<QKeyEvent*>(event))) event->accept();
    return event->isAccepted();
}

void ReportViewer::keyPressEvent(QKeyEvent* event) {
    event->ignore();
    if (event->key() == Qt::Key_Escape) return event->setAccepted(m_inside->search.close());
    const std::optional<Command> command = m_inside->commands.usableCommand(*event);
    event->setAccepted(command || m_inside->parts.pages().scroll(*event));
    if (command) m_inside->commands.run(*command);
}

// The pages are the one part of the viewer in the window's tab order.
bool ReportViewer::focusNextPrevChild(bool isNext) {
    PageArea& pages = m_inside->parts.pages();
    if (!pages.hasFocus()) pages.setFocus(isNext ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return QWidget::focusNextPrevChild(isNext);
}

}  // namespace velcoran::viewer
