#pragma once

#include "viewer/commands/command_table.h"

#include <QPoint>

#include <functional>
#include <optional>

class QKeyEvent;

namespace velcoran::viewer {

class CommandActions;
class LoadedReport;
class PageMarks;
class ReportSearch;
class ReportViewer;
class ViewerParts;

/// What each command does, and when it can be used.
class ViewerCommands {
public:
    /// All of them outlive this.
    ViewerCommands(ReportViewer& viewer, const ViewerOptions& options, CommandActions& actions, LoadedReport& report,
                   PageMarks& marks, ViewerParts& parts, ReportSearch& search);
    ~ViewerCommands();

    /// Who can open the document behind a row, asked when it matters.
    void setOpensDocuments(std::function<bool()> opensDocuments) { m_opensDocuments = std::move(opensDocuments); }

    [[nodiscard]] bool isUsable(Command command) const;
    /// Runs a command that can be used; does nothing for another.
    void run(Command command) noexcept;
    /// The command of a key press, while it can be used.
    [[nodiscard]] std::optional<Command> usableCommand(const QKeyEvent& event) const;
    /// Lets the actions say which commands can be used.
    void refreshActions() const;
    /// Shows the menu of the chosen object. @param place  on the screen
    void showMenu(QPoint place) const;

private:
    void perform(Command command);
    void copy(const QString& text) const;
    void openDocument();
    void switchPane();
    void showHelp();
    [[nodiscard]] QString helpText() const;
    [[nodiscard]] bool opensDocuments() const { return m_opensDocuments && m_opensDocuments(); }

    ReportViewer& m_viewer;
    const ViewerOptions& m_options;
    CommandActions& m_actions;
    LoadedReport& m_report;
    PageMarks& m_marks;
    ViewerParts& m_parts;
    ReportSearch& m_search;
    std::function<bool()> m_opensDocuments;
};

}  // namespace velcoran::viewer
