#include "report_viewer.h"

#include "report/export/formats.h"
#include "report_values.h"
#include "viewer/pages/page_area.h"
#include "viewer_private.h"

#include <QKeyEvent>

namespace velcoran::viewer {

ReportViewer::ReportViewer(QWidget* parent) : QWidget(parent), m_private(std::make_unique<Private>(*this)) {
    setAccessibleName(QStringLiteral("Raport"));
}

ReportViewer::~ReportViewer() = default;

void ReportViewer::setOption(int option, bool isOn) {
    m_private->m_options.set(option, isOn);
    m_private->applyOptions();
}

QVariantMap ReportViewer::options() const { return m_private->m_options.toMap(); }

void ReportViewer::setReportSource(std::shared_ptr<report::Report> report) { m_private->setSource(std::move(report)); }

void ReportViewer::viewReport() { m_private->load(); }

bool ReportViewer::isBusy() const { return m_private->m_isBusy; }

bool ReportViewer::hasReport() const { return m_private->m_document != nullptr; }

std::shared_ptr<const report::Document> ReportViewer::document() const { return m_private->m_document; }

std::shared_ptr<report::Report> ReportViewer::shownReport() const {
    return hasReport() ? m_private->m_source : nullptr;
}

QVariant ReportViewer::failure() const {
    const std::optional<base::Error>& failure = m_private->m_failure;
    if (!failure) return {};
    return QVariantMap{{QStringLiteral("number"), failure->number()},
                       {QStringLiteral("description"), failure->description()}};
}

void ReportViewer::stopLoading() {
    if (isBusy()) m_private->m_loader.stop();
}

void ReportViewer::setPageSetup(const report::PageSetup& setup) { m_private->m_setup = setup; }

const report::PageSetup& ReportViewer::pageSetup() const { return m_private->m_setup; }

int ReportViewer::currentPage() const { return m_private->m_pages->currentPage(); }

void ReportViewer::refreshEx(bool isServerDataRead) { m_private->refresh(isServerDataRead); }

void ReportViewer::cancelLoading(bool isNotifying) { m_private->cancelLoading(isNotifying); }

QVariant ReportViewer::report() const {
    if (!hasReport()) return {};
    return reportValues(*m_private->m_document, m_private->m_definition);
}

QStringList ReportViewer::pageLines(int page) const {
    if (!hasReport() || page < 1 || page > pageCount()) return {};
    return m_private->m_document->pageLines({page});
}

int ReportViewer::pageCount() const { return hasReport() ? m_private->m_document->pageCount() : 0; }

namespace {

QVariantList formatValues() {
    QVariantList values;
    for (const report::ExportFormat& format : report::exportFormats())
        values.append(QVariantMap{{QStringLiteral("type"), format.type},
                                  {QStringLiteral("name"), format.name},
                                  {QStringLiteral("extension"), format.extension}});
    return values;
}

}  // namespace

void ReportViewer::setOpensDocuments(std::function<bool()> opensDocuments) {
    m_private->m_opensDocuments = std::move(opensDocuments);
}

QVariant ReportViewer::act(const QString& action, const QVariantMap& arguments) {
    if (action == u"goto") {
        m_private->m_pages->goToPage(arguments.value(QStringLiteral("page")).toInt());
        return {};
    }
    if (action == u"search") return m_private->searchNow(arguments.value(QStringLiteral("text")).toString());
    if (action == u"object") return m_private->clickField(arguments);
    if (action == u"formats") return formatValues();
    const std::optional<Command> command = commandNamed(action);
    if (command && m_private->isUsable(*command)) m_private->run(*command);
    return {};
}

// A host's own shortcuts do not take the viewer's keys away while the viewer has the focus.
bool ReportViewer::event(QEvent* event) {
    if (event->type() != QEvent::ShortcutOverride || !m_private) return QWidget::event(event);
    if (m_private->usableCommand(*static_cast<QKeyEvent*>(event))) event->accept();
    return event->isAccepted();
}

void ReportViewer::keyPressEvent(QKeyEvent* event) {
    event->ignore();
    if (event->key() == Qt::Key_Escape) return event->setAccepted(m_private->closeSearch());
    const std::optional<Command> command = m_private->usableCommand(*event);
    event->setAccepted(command || m_private->m_pages->scroll(*event));
    if (command) m_private->run(*command);
}

// The pages are the one part of the viewer in the window's tab order.
bool ReportViewer::focusNextPrevChild(bool isNext) {
    if (!m_private->m_pages->hasFocus())
        m_private->m_pages->setFocus(isNext ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return QWidget::focusNextPrevChild(isNext);
}

}  // namespace velcoran::viewer
