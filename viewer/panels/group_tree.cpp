#include "group_tree.h"

#include "group_model.h"

#include "report/layout/document.h"

namespace velcoran::viewer {

namespace {

constexpr int kRowMargin = 7;
constexpr int kMinWidth = 80;

}  // namespace

GroupTree::GroupTree(QWidget* parent) : QListView(parent), m_groups(new GroupModel(this)) {
    setObjectName(QStringLiteral("crwTree"));
    setAccessibleName(QStringLiteral("Grupurile raportului"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::ClickFocus);
    setMinimumWidth(kMinWidth);
    setUniformItemSizes(true);
    setLayoutMode(QListView::SinglePass);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_groups->setRowHeight(fontMetrics().height() + kRowMargin);
    setModel(m_groups);
    connect(this, &QListView::clicked, this, &GroupTree::goTo);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& group) {
        if (group.isValid() && hasFocus()) goTo(group);
    });
}

void GroupTree::setDocument(std::shared_ptr<const report::Document> document) {
    m_document = std::move(document);
    m_groups->setDocument(m_document);
}

void GroupTree::followPage(int page) {
    if (!m_document || page == 0 || hasFocus()) return;
    const std::optional<qint64> group = m_document->groupAtPage({page});
    if (group) setCurrentIndex(m_groups->index(static_cast<int>(*group)));
}

void GroupTree::goTo(const QModelIndex& group) {
    if (m_document) emit pageChosen(m_document->pageOfGroup(group.row()).value);
}

}  // namespace velcoran::viewer
