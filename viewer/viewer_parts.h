#pragma once

#include <QString>

#include <memory>

class QMenu;
class QSplitter;
class QTabBar;
class QWidget;

namespace velcoran::report {
class Document;
}

namespace velcoran::viewer {

class CommandActions;
class GroupTree;
class PageArea;
class PageMarks;
class ReportViewer;
class Toolbar;
class ViewerOptions;

/// The widgets of the viewer: toolbar, tabs, the tree beside the pages, the menu of an object. They stand in the viewer
/// and are destroyed with this.
class ViewerParts {
public:
    /// @param actions, marks  outlive this, as the viewer does
    ViewerParts(ReportViewer& viewer, CommandActions& actions, PageMarks& marks);
    ~ViewerParts();

    [[nodiscard]] Toolbar& toolbar() const { return *m_toolbar; }
    [[nodiscard]] GroupTree& tree() const { return *m_tree; }
    [[nodiscard]] PageArea& pages() const { return *m_pages; }
    [[nodiscard]] QMenu& menu() const { return *m_menu; }

    void setOptions(const ViewerOptions& options);
    /// Shows a document from its first page. Null: nothing. refresh() is to follow, here and when it is replaced.
    void setDocument(const std::shared_ptr<const report::Document>& document);
    /// Shows another layout of the same report, on the page where it was.
    void replaceDocument(const std::shared_ptr<const report::Document>& document);
    void toggleTree();
    /// Takes the focus to the pages where it is on something that is about to be switched off or hidden: it would go to
    /// another control of the window.
    void keepFocus() const;
    /// Shows what belongs to the document, and the boxes of usable commands.
    void refresh();

private:
    void arrange(ReportViewer& viewer) const;
    void connectParts(ReportViewer& viewer) const;

    ReportViewer& m_viewer;
    CommandActions& m_actions;
    std::shared_ptr<const report::Document> m_document;
    bool m_hasTabs = false;
    bool m_isTreeOpen = true;
    Toolbar* m_toolbar;
    QTabBar* m_tabs;
    QSplitter* m_splitter;
    GroupTree* m_tree;
    PageArea* m_pages;
    QMenu* m_menu;
};

}  // namespace velcoran::viewer
