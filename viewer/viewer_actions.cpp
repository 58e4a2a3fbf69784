#include "viewer_private.h"

#include "viewer/commands/icons.h"
#include "viewer/pages/page_area.h"
#include "viewer/panels/search_bar.h"
#include "viewer/panels/toolbar.h"

#include "report/data/report_content.h"

#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QMetaMethod>
#include <QVBoxLayout>

namespace velcoran::viewer {

namespace {

struct PartRow {
    Command command;
    Part part;
};

// Commands that a switched-off part takes with it, keys included. The keys that move and enlarge stay.
constexpr PartRow kParts[] = {
    {Command::Export, Part::ExportButton}, {Command::Print, Part::PrintButton}, {Command::Refresh, Part::RefreshButton},
    {Command::Filter, Part::FilterButton}, {Command::Help, Part::HelpButton},   {Command::Close, Part::CloseButton},
    {Command::Tree, Part::TreeButton},     {Command::Find, Part::Search},       {Command::FindNext, Part::Search},
    {Command::FindPrevious, Part::Search}, {Command::Stop, Part::StopButton},
};

QString helpText(bool isDocumentOpened) {
    QString rows;
    for (const CommandRow& row : commandRows()) {
        if (row.key == nullptr || (row.needs == Needs::Document && !isDocumentOpened)) continue;
        rows += QStringLiteral("<tr><td>%1</td><td>&nbsp;&nbsp;&nbsp;</td><td>%2</td></tr>")
                    .arg(QString::fromUtf16(row.key), QString::fromUtf16(row.caption));
    }
    return QStringLiteral("<table>%1</table>").arg(rows);
}

}  // namespace

bool ReportViewer::Private::isUsable(Command command) const {
    for (const PartRow& row : kParts)
        if (row.command == command && !m_options.isOn(row.part)) return false;
    if (command == Command::Filter &&
        !m_viewer.isSignalConnected(QMetaMethod::fromSignal(&ReportViewer::filterButtonClicked)))
        return false;
    switch (rowOf(command).needs) {
        case Needs::Report:
            return m_document != nullptr;
        case Needs::Loading:
            return m_isBusy;
        case Needs::Source:
            return m_source != nullptr && !m_isBusy;
        case Needs::Selection:
            return m_marks.selection().has_value();
        case Needs::Document:
            return m_marks.selection().has_value() && opensDocuments();
    }
    return false;
}

/// Enter belongs to the viewer's boxes and buttons while one of them has the focus.
std::optional<Command> ReportViewer::Private::usableCommand(const QKeyEvent& event) const {
    if (m_toolbar->isAncestorOf(QApplication::focusWidget()) &&
        commandOfKey(event.key(), event.modifiers()) == Command::OpenDocument)
        return std::nullopt;
    const std::optional<Command> command = commandOfKey(event.key(), event.modifiers());
    return command && isUsable(*command) ? command : std::nullopt;
}

void ReportViewer::Private::run(Command command) noexcept {
    try {
        perform(command);
    } catch (...) {
        // A page could not be made for want of memory: what was shown stays.
    }
}

void ReportViewer::Private::perform(Command command) {
    bool useDefault = true;
    const int page = m_pages->currentPage();
    switch (command) {
        case Command::Export:
            return emit m_viewer.exportButtonClicked(&useDefault);
        case Command::Print:
            return emit m_viewer.printButtonClicked(&useDefault);
        case Command::Filter:
            return emit m_viewer.filterButtonClicked();
        case Command::Refresh:
            return load();
        case Command::Stop:
            return m_loader.stop();
        case Command::Close:
            return setSource(nullptr);
        case Command::Help:
            return showHelp();
        case Command::Tree:
            m_isTreeOpen = !m_isTreeOpen;
            if (m_tree->hasFocus()) m_pages->setFocus();
            return refreshChrome();
        case Command::First:
            return m_pages->goToPage(1);
        case Command::Previous:
            return m_pages->goToPage(page - 1);
        case Command::Next:
            return m_pages->goToPage(page + 1);
        case Command::Last:
            return m_pages->goToPage(m_document->pageCount());
        case Command::ZoomOut:
            return m_pages->stepZoom(false);
        case Command::ZoomIn:
            return m_pages->stepZoom(true);
        case Command::ZoomReset:
            return m_pages->setZoom({Zoom::Kind::Percent, 100});
        case Command::GoTo:
            return m_toolbar->openPageBox();
        case Command::Find:
            return m_toolbar->openSearch();
        case Command::FindPrevious:
            return findAgain(false);
        case Command::FindNext:
            return findAgain(true);
        case Command::Copy:
            return copyToClipboard(m_marks.selectedValue());
        case Command::OpenDocument:
            return openDocument();
        case Command::SwitchPane:
            if (m_tree->isVisible() && !m_tree->hasFocus()) return m_tree->setFocus();
            return m_pages->setFocus();
    }
}

void ReportViewer::Private::startSearch(const QString& text) {
    if (text.isEmpty())
        m_searcher.clear();
    else if (m_document)
        m_searcher.start(m_document, text, {std::max(1, m_pages->currentPage())});
    m_pages->refreshMarks();
}

void ReportViewer::Private::findAgain(bool isForward) {
    if (m_searcher.isActive()) return m_searcher.step(isForward);
    m_toolbar->openSearch();
}

void ReportViewer::Private::showHit(bool isFound) {
    const std::optional<report::SearchHit> hit = m_searcher.current();
    if (isFound && hit && m_document) {
        const int page = hit->page.value - 1;
        if (const std::optional<QRectF> place = m_marks.currentHit(page)) m_pages->ensureVisible(page, *place);
    }
    m_pages->refreshMarks();
}

bool ReportViewer::Private::closeSearch() {
    SearchBar& bar = m_toolbar->searchBar();
    const bool wasOpen = m_searcher.isActive() || bar.isAncestorOf(QApplication::focusWidget());
    if (bar.isAncestorOf(QApplication::focusWidget())) m_pages->setFocus();
    bar.reset();
    m_searcher.clear();
    m_pages->refreshMarks();
    return wasOpen;
}

QVariant ReportViewer::Private::searchNow(const QString& text) {
    if (!m_document || !m_options.isOn(Part::Search)) return {};
    m_toolbar->searchBar().setText(text);
    const base::PageNumber from{std::max(1, m_pages->currentPage())};
    startSearch(text);
    const std::atomic_bool stop = false;
    const auto hit = report::Search(m_document, text).next(Searcher::startOf(from), stop);
    if (!hit) return {};
    m_searcher.setCurrent(*hit);
    showHit(true);
    return QVariantMap{{QStringLiteral("page"), hit->page.value}};
}

bool ReportViewer::Private::clickField(const QVariantMap& arguments) {
    const int page = arguments.value(QStringLiteral("page")).toInt();
    const int record = arguments.value(QStringLiteral("record")).toInt();
    if (!m_document || page < 1 || page > m_document->pageCount()) return false;
    const report::Page& objects = m_marks.page(page - 1);
    const auto item = itemOfField(objects, arguments.value(QStringLiteral("field")).toString(), record);
    if (!item) return false;
    const QRectF place = rectOf(objects.items[*item]);
    m_pages->ensureVisible(page - 1, place);
    m_pages->clickObject(page - 1, *item, m_pages->placeOf(page - 1, place).center().toPoint());
    return true;
}

void ReportViewer::Private::showMenu(QPoint place) {
    const QColor colour = m_viewer.palette().color(QPalette::ButtonText);
    m_menu->clear();
    QAction* value = m_menu->addAction(makeIcon(Glyph::Copy, colour), QStringLiteral("Copiază valoarea\tCtrl+C"),
                                       &m_viewer, [this] { copyToClipboard(m_marks.selectedValue()); });
    QAction* row = m_menu->addAction(QStringLiteral("Copiază rândul"), &m_viewer,
                                     [this] { copyToClipboard(m_marks.selectedRow()); });
    value->setEnabled(!m_marks.selectedValue().isEmpty());
    row->setEnabled(!m_marks.selectedRow().isEmpty());
    if (opensDocuments()) {
        QAction* open = m_menu->addAction(QStringLiteral("Deschide documentul\tEnter"), &m_viewer,
                                          [this] { run(Command::OpenDocument); });
        open->setEnabled(m_marks.selectedDataRow() >= 0);
    }
    m_menu->popup(place);
}

bool ReportViewer::Private::opensDocuments() const { return m_opensDocuments && m_opensDocuments(); }

void ReportViewer::Private::openDocument() {
    const qint64 row = m_marks.selectedDataRow();
    if (row < 0) return;
    emit m_viewer.documentRequested(m_document->textOfRow(row, report::ColumnRole::NumarFactura),
                                    m_document->textOfRow(row, report::ColumnRole::CodClient));
}

void ReportViewer::Private::showHelp() {
    auto* help = m_viewer.findChild<QLabel*>(QStringLiteral("crwHelpText"));
    if (help == nullptr) {
        help = new QLabel(&m_viewer, Qt::Popup);
        help->setObjectName(QStringLiteral("crwHelpText"));
        help->setMargin(12);
    }
    help->setText(helpText(opensDocuments()));
    help->adjustSize();
    help->move(m_pages->mapToGlobal(QPoint(24, 24)));
    help->show();
}

void ReportViewer::Private::copyToClipboard(const QString& text) const {
    if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

}  // namespace velcoran::viewer
