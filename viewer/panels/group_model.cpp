#include "group_model.h"

#include "report/layout/document.h"

#include <QSize>

namespace velcoran::viewer {

void GroupModel::setDocument(std::shared_ptr<const report::Document> document) {
    beginResetModel();
    m_document = std::move(document);
    endResetModel();
}

int GroupModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() || !m_document ? 0 : static_cast<int>(m_document->groupCount());
}

QVariant GroupModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || !m_document) return {};
    if (role == Qt::DisplayRole) return m_document->groupText(index.row());
    if (role == Qt::ToolTipRole)
        return QStringLiteral("%1 · pagina %2")
            .arg(m_document->groupText(index.row()))
            .arg(m_document->pageOfGroup(index.row()).value);
    if (role == Qt::SizeHintRole) return QSize(0, m_rowHeight);
    return {};
}

}  // namespace velcoran::viewer
