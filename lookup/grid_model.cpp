#include "grid_model.h"

#include "db/row_set.h"

#include <limits>

namespace velcoran::lookup {

GridModel::GridModel(QObject* parent) : QAbstractTableModel(parent) {}

void GridModel::setRowSet(const db::RowSet* rows) {
    m_rows = rows;
    refresh();
}

void GridModel::refresh() {
    beginResetModel();
    const bool isReadable = m_rows != nullptr && m_rows->isOpen();
    constexpr qsizetype kMostRows = std::numeric_limits<int>::max();
    m_rowCount = isReadable ? static_cast<int>(std::min(m_rows->recordCount(), kMostRows)) : 0;
    m_columnCount = isReadable ? static_cast<int>(m_rows->columns().size()) : 0;
    endResetModel();
}

int GridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_rowCount; }

int GridModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_columnCount; }

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    // A paint may come between a change of the row set and the refresh that follows it.
    if (!m_rows->isOpen() || index.row() >= m_rows->recordCount()) return {};
    if (index.column() >= m_rows->columns().size()) return {};
    return m_rows->cell(index.row(), index.column());
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
    if (section < 0 || section >= m_columnCount || !m_rows->isOpen()) return {};
    return m_rows->columns().value(section);
}

}  // namespace velcoran::lookup
