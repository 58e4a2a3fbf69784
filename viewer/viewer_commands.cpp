#include "viewer_commands.h"

#include "loaded_report.h"
#include "report_search.h"
#include "report_viewer.h"
#include "viewer_parts.h"

#include "report/data/report_content.h"
#include "report/layout/document.h"
#include "viewer/commands/command_actions.h"
#include "viewer/pages/page_area.h"
#include "viewer/panels/group_tree.h"
#include "viewer/panels/toolbar.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPointer>

namespace velcoran::viewer {

ViewerCommands::ViewerCommands(ReportViewer& viewer, const ViewerOptions& options, CommandActions& actions,
                               LoadedReport& report, PageMarks& marks, ViewerParts& parts, ReportSearch& search)
    : m_viewer(viewer),
      m_options(options),
      m_actions(actions),
      m_report(report),
      m_marks(marks),
      m_parts(parts),
      m_search(search) {
    QObject::connect(&m_actions, &CommandActions::triggered, &m_viewer, [this](Command command) {
        const QPointer<ReportViewer> alive(&m_viewer);
        run(command);
        // A checkable button has switched itself; and the window may have gone meanwhile.
        if (!alive) return;
        refreshActions();
        m_parts.refresh();
    });
    QObject::connect(&m_parts.pages(), &PageArea::menuRequested, &m_viewer, [this](QPoint place) { showMenu(place); });
}

ViewerCommands::~ViewerCommands() { m_actions.disconnect(&m_viewer); }

bool ViewerCommands::isUsable(Command command) const {
    const CommandRow& row = rowOf(command);
    if (row.part && !m_options.allowsCommands(*row.part)) return false;
    if (command == Command::Filter && !m_viewer.hasFilterListener()) return false;
    switch (row.needs) {
        case Needs::Report:
            return m_report.document() != nullptr;
        case Needs::Loading:
            return m_report.isBusy();
        case Needs::Source:
            return m_report.source() != nullptr && !m_report.isBusy();
        case Needs::Value:
            return m_marks.selection().has_value();
        case Needs::Row:
            return !m_marks.selectedRow().isEmpty();
        case Needs::Document:
            return m_marks.selection().has_value() && opensDocuments();
    }
    return false;
}

/// Enter belongs to the viewer's boxes and buttons while one of them has the focus.
std::optional<Command> ViewerCommands::usableCommand(const QKeyEvent& event) const {
    const std::optional<Command> command = commandOfKey(event.keyCombination());
    const bool isInToolbar = m_parts.toolbar().isAncestorOf(QApplication::focusWidget());
    if (!command || (command == Command::OpenDocument && isInToolbar) || !isUsable(*command)) return std::nullopt;
    return command;
}

void ViewerCommands::run(Command command) noexcept {
    try {
        if (isUsable(command)) perform(command);
    } catch (...) {
        // A page could not be made for want of memory: what was shown stays.
    }
}

void ViewerCommands::perform(Command command) {
    bool useDefault = true;
    PageArea& pages = m_parts.pages();
    switch (command) {
        case Command::Export:
            return emit m_viewer.exportButtonClicked(&useDefault);
        case Command::Print:
            return emit m_viewer.printButtonClicked(&useDefault);
        case Command::Filter:
            return emit m_viewer.filterButtonClicked();
        case Command::Refresh:
            return m_report.load();
        case Command::Stop:
            return m_report.stop();
        case Command::Close:
            return m_report.setSource(nullptr);
        case Command::Help:
            return showHelp();
        case Command::Tree:
            return m_parts.toggleTree();
        case Command::First:
            return pages.goToPage(1);
        case Command::Previous:
            return pages.goToPage(pages.currentPage() - 1);
        case Command::Next:
            return pages.goToPage(pages.currentPage() + 1);
        case Command::Last:
            return pages.goToPage(m_report.document()->pageCount());
        case Command::GoTo:
            return m_parts.toolbar().openPageBox();
        case Command::ZoomOut:
            return pages.stepZoom(false);
        case Command::ZoomIn:
            return pages.stepZoom(true);
        case Command::ZoomReset:
            return pages.setZoom({Zoom::Kind::Percent, 100});
        case Command::Find:
            return m_parts.toolbar().openSearch();
        case Command::FindPrevious:
            return m_search.again(false);
        case Command::FindNext:
            return m_search.again(true);
        case Command::Copy:
            return copy(m_marks.selectedValue());
        case Command::CopyRow:
            return copy(m_marks.selectedRow());
        case Command::OpenDocument:
            return openDocument();
        case Command::SwitchPane:
            return switchPane();
    }
}

void ViewerCommands::refreshActions() const {
    m_actions.setEnabled([this](Command command) { return isUsable(command); });
}

void ViewerCommands::showMenu(QPoint place) const {
    refreshActions();
    // An object may have no value, and be of no row.
    m_actions.of(Command::Copy).setEnabled(!m_marks.selectedValue().isEmpty());
    m_actions.of(Command::OpenDocument).setEnabled(m_marks.selectedDataRow() >= 0);
    QMenu& menu = m_parts.menu();
    menu.clear();
    for (const Command command : {Command::Copy, Command::CopyRow, Command::OpenDocument})
        if (command != Command::OpenDocument || opensDocuments()) menu.addAction(&m_actions.of(command));
    menu.popup(place);
}

void ViewerCommands::copy(const QString& text) const {
    if (!text.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

void ViewerCommands::openDocument() {
    const qint64 row = m_marks.selectedDataRow();
    if (row < 0) return;
    emit m_viewer.documentRequested(m_report.document()->textOfRow(row, report::ColumnRole::NumarFactura),
                                    m_report.document()->textOfRow(row, report::ColumnRole::CodClient));
}

void ViewerCommands::switchPane() {
    const bool goesToTree = m_parts.tree().isVisible() && !m_parts.tree().hasFocus();
    return goesToTree ? m_parts.tree().setFocus() : m_parts.pages().setFocus();
}

void ViewerCommands::showHelp() {
    auto* help = m_viewer.findChild<QLabel*>(QStringLiteral("crwHelpText"));
    if (help == nullptr) {
        help = new QLabel(&m_viewer, Qt::Popup);
        help->setObjectName(QStringLiteral("crwHelpText"));
        help->setMargin(12);
    }
    help->setText(helpText());
    help->adjustSize();
    help->move(m_parts.pages().mapToGlobal(QPoint(24, 24)));
    help->show();
}

QString ViewerCommands::helpText() const {
    QString rows;
    for (const CommandRow& row : commandRows()) {
        if (row.keyText == nullptr || (row.needs == Needs::Document && !opensDocuments())) continue;
        rows += QStringLiteral("<tr><td>%1</td><td>&nbsp;&nbsp;&nbsp;</td><td>%2</td></tr>")
                    .arg(QString::fromUtf16(row.keyText), QString::fromUtf16(row.caption));
    }
    return QStringLiteral("<table>%1</table>").arg(rows);
}

}  // namespace velcoran::viewer
