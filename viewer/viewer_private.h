#pragma once

#include "loader.h"
#include "report/layout/page_setup.h"
#include "report_viewer.h"
#include "viewer/commands/commands.h"
#include "viewer/commands/viewer_options.h"
#include "viewer/pages/page_marks.h"
#include "viewer/pages/searcher.h"
#include "viewer/panels/group_model.h"

#include <QPointer>
#include <QTimer>

class QListView;
class QMenu;
class QSplitter;
class QTabBar;

namespace velcoran::viewer {

class PageArea;
class Toolbar;

/// The viewer's inside: the widgets, the report that is loaded or shown, and the commands that work on it.
class ReportViewer::Private {
public:
    explicit Private(ReportViewer& viewer);
    ~Private();

    // The report.
    void setSource(std::shared_ptr<report::Report> report);
    void load();
    void cancelLoading(bool isNotifying);
    void refresh(bool isServerDataRead);
    void applyOptions();

    // The commands.
    [[nodiscard]] bool isUsable(Command command) const;
    void run(Command command) noexcept;
    /// The command of a key press, while it can be used.
    [[nodiscard]] std::optional<Command> usableCommand(const QKeyEvent& event) const;
    /// @return false when no search was open
    bool closeSearch();
    QVariant searchNow(const QString& text);
    [[nodiscard]] bool clickField(const QVariantMap& arguments);

    ReportViewer& m_viewer;
    ViewerOptions m_options;
    report::PageSetup m_setup;
    std::shared_ptr<report::Report> m_source;
    std::shared_ptr<const report::ReportData> m_data;
    std::shared_ptr<const report::Document> m_document;
    QString m_definition;
    std::optional<base::Error> m_failure;  ///< of the last load
    bool m_isBusy = false;
    bool m_isTreeOpen = true;

    Searcher m_searcher;
    PageMarks m_marks;
    Loader m_loader;
    GroupModel m_groups;
    Toolbar* m_toolbar = nullptr;
    QTabBar* m_tabs = nullptr;
    QSplitter* m_splitter = nullptr;
    QListView* m_tree = nullptr;
    PageArea* m_pages = nullptr;
    QMenu* m_menu = nullptr;
    QTimer m_tick;
    std::function<bool()> m_opensDocuments;

private:
    void perform(Command command);
    void buildWidgets();
    void buildTree();
    void connectToolbar();
    void connectPages();
    void finish(const LoadResult& result);
    std::optional<base::Error> tryToShow(const LoadResult& result) noexcept;
    void showDocument(const LoadResult& result);
    void showProgress();
    void showState(const QString& heading, const QString& text);
    void refreshChrome();
    void followGroup(int page);
    void goToGroup(int group);
    void startSearch(const QString& text);
    void findAgain(bool isForward);
    void showHit(bool isFound);
    void showMenu(QPoint place);
    void showHelp();
    void copyToClipboard(const QString& text) const;
    [[nodiscard]] bool opensDocuments() const;
    void openDocument();
};

}  // namespace velcoran::viewer
