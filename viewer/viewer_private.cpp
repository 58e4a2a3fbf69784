#include "viewer_private.h"

#include "report/report.h"
#include "viewer/commands/texts.h"
#include "viewer/pages/page_area.h"
#include "viewer/pages/state_pane.h"
#include "viewer/panels/search_bar.h"
#include "viewer/panels/toolbar.h"

#include <QApplication>
#include <QListView>
#include <QMenu>
#include <QScopedValueRollback>
#include <QSplitter>
#include <QTabBar>
#include <QVBoxLayout>

namespace velcoran::viewer {

namespace {

constexpr int kTickMs = 250;
constexpr int kTreeWidth = 230;
constexpr int kTreeRowMargin = 7;
constexpr int kPagesWidth = 1000;

}  // namespace

ReportViewer::Private::Private(ReportViewer& viewer)
    : m_viewer(viewer), m_setup(report::pageSetup(QStringLiteral("A4"), true)), m_marks(m_searcher) {
    buildWidgets();
    connectToolbar();
    connectPages();
    QObject::connect(&m_loader, &Loader::answered, &m_viewer, [this] {
        if (m_isBusy) emit m_viewer.downloadStarted(0);
    });
    QObject::connect(&m_loader, &Loader::progressed, &m_viewer, [this] { showProgress(); });
    QObject::connect(&m_loader, &Loader::ended, &m_viewer, [this](const LoadResult& result) { finish(result); });
    m_tick.setInterval(kTickMs);
    QObject::connect(&m_tick, &QTimer::timeout, &m_viewer, [this] { showProgress(); });
    applyOptions();
}

// The widgets go first, while what they refer to still stands, and say nothing more to the viewer. What the toolkit has
// tied to them stays tied: its accessibility cache forgets a widget when it hears of its end.
ReportViewer::Private::~Private() {
    m_loader.disconnect();
    m_loader.abandon();
    m_searcher.disconnect();
    for (QObject* widget : std::initializer_list<QObject*>{m_toolbar, &m_toolbar->searchBar(), m_pages, m_tree})
        widget->disconnect(&m_viewer);
    m_toolbar->disconnect(m_pages);
    m_viewer.setFocusProxy(nullptr);
    delete m_menu;
    delete m_splitter;
    delete m_tabs;
    delete m_toolbar;
}

void ReportViewer::Private::buildWidgets() {
    m_toolbar = new Toolbar(&m_viewer);
    m_tabs = new QTabBar(&m_viewer);
    m_tabs->setObjectName(QStringLiteral("crwTabs"));
    m_tabs->setFocusPolicy(Qt::NoFocus);
    m_tabs->setDrawBase(false);
    m_splitter = new QSplitter(&m_viewer);
    m_splitter->setObjectName(QStringLiteral("crwSplitter"));
    m_splitter->setHandleWidth(3);
    m_splitter->setChildrenCollapsible(false);
    buildTree();
    m_pages = new PageArea(m_splitter, m_marks);
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setSizes({kTreeWidth, kPagesWidth});
    m_menu = new QMenu(&m_viewer);
    m_menu->setObjectName(QStringLiteral("crwMenu"));
    auto* column = new QVBoxLayout(&m_viewer);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_toolbar);
    column->addWidget(m_tabs);
    column->addWidget(m_splitter, 1);
    m_viewer.setFocusPolicy(Qt::StrongFocus);
    m_viewer.setFocusProxy(m_pages);
}

void ReportViewer::Private::buildTree() {
    m_tree = new QListView(m_splitter);
    m_tree->setObjectName(QStringLiteral("crwTree"));
    m_tree->setAccessibleName(QStringLiteral("Grupurile raportului"));
    m_tree->setFrameShape(QFrame::NoFrame);
    m_tree->setFocusPolicy(Qt::ClickFocus);
    m_tree->setMinimumWidth(80);
    m_tree->setUniformItemSizes(true);
    m_tree->setLayoutMode(QListView::SinglePass);
    m_tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_tree->setTextElideMode(Qt::ElideRight);
    m_tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_groups.setRowHeight(m_tree->fontMetrics().height() + kTreeRowMargin);
    m_tree->setModel(&m_groups);
    QObject::connect(m_tree, &QListView::clicked, &m_viewer, [this](const QModelIndex& at) { goToGroup(at.row()); });
    QObject::connect(m_tree->selectionModel(), &QItemSelectionModel::currentChanged, &m_viewer,
                     [this](const QModelIndex& at) {
                         if (at.isValid() && m_tree->hasFocus()) goToGroup(at.row());
                     });
}

void ReportViewer::Private::connectToolbar() {
    QObject::connect(m_toolbar, &Toolbar::triggered, &m_viewer, [this](Command command) {
        const QPointer<ReportViewer> viewer(&m_viewer);
        if (isUsable(command)) run(command);
        // A checkable button has switched itself; and the window may have gone meanwhile.
        if (viewer) refreshChrome();
    });
    QObject::connect(m_toolbar, &Toolbar::pageEntered, m_pages, &PageArea::goToPage);
    QObject::connect(m_toolbar, &Toolbar::zoomChosen, m_pages, &PageArea::setZoom);
    QObject::connect(m_toolbar, &Toolbar::left, m_pages, [this] { m_pages->setFocus(); });
    SearchBar& bar = m_toolbar->searchBar();
    QObject::connect(&bar, &SearchBar::searched, &m_viewer, [this](const QString& text) { startSearch(text); });
    QObject::connect(&bar, &SearchBar::stepped, &m_searcher, &Searcher::step);
    QObject::connect(&bar, &SearchBar::closed, &m_viewer, [this] { closeSearch(); });
    QObject::connect(&m_searcher, &Searcher::positionChanged, &bar,
                     [this, &bar] { bar.setPosition(m_searcher.positionText()); });
    QObject::connect(&m_searcher, &Searcher::moved, &m_viewer, [this](bool isFound) { showHit(isFound); });
}

void ReportViewer::Private::connectPages() {
    QObject::connect(m_pages, &PageArea::currentPageChanged, &m_viewer, [this](int page) {
        m_toolbar->setPage(page, m_document ? m_document->pageCount() : 0);
        followGroup(page);
        emit m_viewer.currentPageChanged(page);
    });
    QObject::connect(m_pages, &PageArea::zoomChanged, &m_viewer,
                     [this] { m_toolbar->setZoom(m_pages->zoom(), m_pages->percent()); });
    QObject::connect(m_pages, &PageArea::objectClicked, &m_viewer, [this](QPoint place, const QStringList& fields) {
        bool useDefault = true;
        const QPoint at = m_pages->mapTo(&m_viewer, place);
        emit m_viewer.objectClicked(at.x(), at.y(), fields, &useDefault);
    });
    QObject::connect(m_pages, &PageArea::menuRequested, &m_viewer, [this](QPoint place) { showMenu(place); });
}

void ReportViewer::Private::setSource(std::shared_ptr<report::Report> report) {
    const QPointer<ReportViewer> viewer(&m_viewer);
    cancelLoading(true);
    if (!viewer) return;
    m_source = std::move(report);
    showDocument({});
    showState({}, {});
}

void ReportViewer::Private::load() {
    const QPointer<ReportViewer> viewer(&m_viewer);
    cancelLoading(true);
    if (!viewer || !m_source) return;
    showDocument({});
    m_isBusy = true;
    m_failure.reset();
    refreshChrome();
    try {
        m_loader.start(m_source, m_setup, QDateTime::currentDateTime());
        m_tick.start();
        showProgress();
    } catch (...) {
        finish({nullptr, nullptr, base::currentError(), false});
    }
}

void ReportViewer::Private::cancelLoading(bool isNotifying) {
    if (!m_isBusy) return;
    m_loader.abandon();
    if (isNotifying) return finish({nullptr, nullptr, std::nullopt, true});
    m_tick.stop();
    m_isBusy = false;
    m_toolbar->setProgress({});
    showState(QStringLiteral("Încărcarea a fost oprită."), {});
    refreshChrome();
}

void ReportViewer::Private::finish(const LoadResult& result) {
    m_tick.stop();
    m_isBusy = false;
    m_toolbar->setProgress({});
    const std::optional<base::Error> failure = tryToShow(result);
    if (m_document) {
        showState({}, {});
    } else if (failure) {
        m_failure = failure;
        showState(QStringLiteral("Raportul nu a putut fi încărcat."),
                  QStringLiteral("%1: %2").arg(QString::number(failure->number()), failure->description()));
    } else {
        showState(QStringLiteral("Încărcarea a fost oprită."), {});
    }
    emit m_viewer.downloadFinished(0);
}

// What goes wrong here - no memory for the pages - is a failure of the loading like any other.
std::optional<base::Error> ReportViewer::Private::tryToShow(const LoadResult& result) noexcept {
    try {
        showDocument(result);
        return result.error;
    } catch (...) {
        m_document.reset();
        m_data.reset();
        return base::currentError();
    }
}

void ReportViewer::Private::showDocument(const LoadResult& result) {
    // What is switched off or hidden below would pass the focus on to another control of the window.
    const QWidget* focused = QApplication::focusWidget();
    if (m_toolbar->isAncestorOf(focused) || m_tree->isAncestorOf(focused) || m_tree == focused) m_pages->setFocus();
    closeSearch();
    m_data = result.data;
    m_document = result.document;
    m_definition = m_document ? m_source->name() : QString();
    m_groups.setDocument(m_document);
    // The tree takes its room first, so that the first sight of a page has its right size.
    refreshChrome();
    m_splitter->refresh();
    m_pages->setDocument(m_document);
    refreshChrome();
}

void ReportViewer::Private::refresh(bool isServerDataRead) {
    if (isServerDataRead) return load();
    if (!m_document) return;
    if (m_document->setup() == m_setup) return m_pages->viewport()->update();
    const QString searched = m_searcher.text();
    m_searcher.clear();
    m_document =
        std::make_shared<const report::Document>(m_data, m_document->texts(), m_setup, QDateTime::currentDateTime());
    m_groups.setDocument(m_document);
    m_pages->replaceDocument(m_document);
    refreshChrome();
    if (!searched.isEmpty()) startSearch(searched);
}

void ReportViewer::Private::showProgress() {
    if (!m_isBusy) return;
    const QString text =
        QStringLiteral("%1 · %2").arg(rowsText(m_loader.rows()), durationText(m_loader.milliseconds()));
    m_toolbar->setProgress(text);
    showState(QStringLiteral("Se încarcă raportul…"), text);
}

void ReportViewer::Private::showState(const QString& heading, const QString& text) {
    m_pages->statePane().showMessage(heading, text);
}

void ReportViewer::Private::applyOptions() {
    m_toolbar->setOptions(m_options);
    m_pages->setAnimated(m_options.isOn(Part::Animation));
    m_isTreeOpen = m_options.isOn(Part::Tree);
    refreshChrome();
}

void ReportViewer::Private::refreshChrome() {
    m_toolbar->setEnabledCommands([this](Command command) { return isUsable(command); });
    m_toolbar->setPage(m_pages->currentPage(), m_document ? m_document->pageCount() : 0);
    m_toolbar->setTreeShown(m_document && m_isTreeOpen);
    m_tree->setVisible(m_document && m_isTreeOpen);
    const bool hasTabs = m_document && m_options.isOn(Part::Tabs);
    m_tabs->setVisible(hasTabs);
    if (!hasTabs) return;
    if (m_tabs->count() == 0) m_tabs->addTab({});
    m_tabs->setTabText(0, m_document->title().replace(u'&', QStringLiteral("&&")));
}

void ReportViewer::Private::followGroup(int page) {
    if (!m_document || page == 0 || m_tree->hasFocus()) return;
    const std::optional<qint64> group = m_document->groupAtPage({page});
    if (group) m_tree->setCurrentIndex(m_groups.index(static_cast<int>(*group)));
}

void ReportViewer::Private::goToGroup(int group) {
    if (m_document) m_pages->goToPage(m_document->pageOfGroup(group).value);
}

}  // namespace velcoran::viewer
