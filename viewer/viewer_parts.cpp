#include "viewer_parts.h"

#include "report_viewer.h"

#include "report/layout/document.h"
#include "viewer/commands/command_actions.h"
#include "viewer/pages/page_area.h"
#include "viewer/panels/group_tree.h"
#include "viewer/panels/page_box.h"
#include "viewer/panels/search_bar.h"
#include "viewer/panels/toolbar.h"
#include "viewer/panels/zoom_box.h"

#include <QApplication>
#include <QMenu>
#include <QSplitter>
#include <QTabBar>
#include <QVBoxLayout>

namespace velcoran::viewer {

namespace {

constexpr int kTreeWidth = 230;
constexpr int kPagesWidth = 1000;

}  // namespace

ViewerParts::ViewerParts(ReportViewer& viewer, CommandActions& actions, PageMarks& marks)
    : m_viewer(viewer),
      m_actions(actions),
      m_toolbar(new Toolbar(&viewer, actions)),
      m_tabs(new QTabBar(&viewer)),
      m_splitter(new QSplitter(&viewer)),
      m_tree(new GroupTree(m_splitter)),
      m_pages(new PageArea(m_splitter, marks)),
      m_menu(new QMenu(&viewer)) {
    m_tabs->setObjectName(QStringLiteral("crwTabs"));
    m_tabs->setFocusPolicy(Qt::NoFocus);
    m_tabs->setDrawBase(false);
    m_menu->setObjectName(QStringLiteral("crwMenu"));
    arrange(viewer);
    connectParts(viewer);
}

// The widgets go first, while what they refer to still stands, and say nothing more to the viewer. What Qt has tied to
// them stays tied: its accessibility cache forgets a widget when it hears of its end.
ViewerParts::~ViewerParts() {
    QWidget* const widgets[] = {
        m_toolbar, &m_toolbar->pageBox(), &m_toolbar->searchBar(), &m_toolbar->zoomBox(), m_pages, m_tree};
    for (QWidget* widget : widgets)
        for (QObject* listener : std::initializer_list<QObject*>{&m_viewer, m_pages}) widget->disconnect(listener);
    m_viewer.setFocusProxy(nullptr);
    delete m_menu;
    delete m_splitter;
    delete m_tabs;
    delete m_toolbar;
}

void ViewerParts::arrange(ReportViewer& viewer) const {
    m_splitter->setObjectName(QStringLiteral("crwSplitter"));
    m_splitter->setHandleWidth(3);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({kTreeWidth, kPagesWidth});
    auto* column = new QVBoxLayout(&viewer);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_toolbar);
    column->addWidget(m_tabs);
    column->addWidget(m_splitter, 1);
    viewer.setFocusPolicy(Qt::StrongFocus);
    viewer.setFocusProxy(m_pages);
}

void ViewerParts::connectParts(ReportViewer& viewer) const {
    const auto toPages = [this] { m_pages->setFocus(); };
    QObject::connect(&m_toolbar->pageBox(), &PageBox::pageEntered, m_pages, &PageArea::goToPage);
    QObject::connect(&m_toolbar->pageBox(), &PageBox::left, m_pages, toPages);
    QObject::connect(&m_toolbar->zoomBox(), &ZoomBox::zoomChosen, m_pages, &PageArea::setZoom);
    QObject::connect(&m_toolbar->zoomBox(), &ZoomBox::left, m_pages, toPages);
    QObject::connect(m_tree, &GroupTree::pageChosen, m_pages, &PageArea::goToPage);
    QObject::connect(m_pages, &PageArea::zoomChanged, &viewer,
                     [this] { m_toolbar->zoomBox().setZoom(m_pages->view().zoom(), m_pages->view().percent()); });
    QObject::connect(m_pages, &PageArea::currentPageChanged, &viewer, [this](int page) {
        m_toolbar->pageBox().setPage(page, m_document ? m_document->pageCount() : 0);
        m_tree->followPage(page);
        emit m_viewer.currentPageChanged(page);
    });
    QObject::connect(m_pages, &PageArea::objectClicked, &viewer, [this](QPoint place, const QStringList& fields) {
        bool useDefault = true;
        const QPoint at = m_pages->mapTo(&m_viewer, place);
        emit m_viewer.objectClicked(at.x(), at.y(), fields, &useDefault);
    });
}

void ViewerParts::setOptions(const ViewerOptions& options) {
    m_actions.setOptions(options);
    m_toolbar->setOptions(options);
    m_pages->setAnimated(options.isOn(Part::Animation));
    m_isTreeOpen = options.isOn(Part::Tree);
    m_hasTabs = options.isOn(Part::Tabs);
}

void ViewerParts::setDocument(const std::shared_ptr<const report::Document>& document) {
    m_document = document;
    m_tree->setDocument(document);
    // The tree takes its room first, so that the first sight of a page has its right size.
    refresh();
    m_splitter->refresh();
    m_pages->setDocument(document);
}

void ViewerParts::replaceDocument(const std::shared_ptr<const report::Document>& document) {
    m_document = document;
    m_tree->setDocument(document);
    m_pages->replaceDocument(document);
}

void ViewerParts::toggleTree() {
    m_isTreeOpen = !m_isTreeOpen;
    if (m_tree->hasFocus()) m_pages->setFocus();
    refresh();
}

void ViewerParts::keepFocus() const {
    const QWidget* focused = QApplication::focusWidget();
    if (m_toolbar->isAncestorOf(focused) || m_tree->isAncestorOf(focused) || m_tree == focused) m_pages->setFocus();
}

void ViewerParts::refresh() {
    m_toolbar->refresh();
    m_toolbar->pageBox().setPage(m_pages->currentPage(), m_document ? m_document->pageCount() : 0);
    m_actions.of(Command::Tree).setChecked(m_document && m_isTreeOpen);
    m_tree->setVisible(m_document && m_isTreeOpen);
    m_tabs->setVisible(m_document && m_hasTabs);
    if (!m_document || !m_hasTabs) return;
    if (m_tabs->count() == 0) m_tabs->addTab({});
    m_tabs->setTabText(0, m_document->title().replace(u'&', QStringLiteral("&&")));
}

}  // namespace velcoran::viewer
