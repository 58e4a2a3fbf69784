#pragma once

#include <QAbstractTableModel>

namespace velcoran::db {
class RowSet;
}

namespace velcoran::lookup {

/// The rows of the picker's grid: those of a row set that pass its filter, read cell by cell as the grid asks. Columns
/// are the data columns; the grid's fixed column 0 is none of them.
class GridModel final : public QAbstractTableModel {
public:
    explicit GridModel(QObject* parent = nullptr);

    /// Shows a row set, which must outlive its showing; null or a closed one shows nothing.
    void setRowSet(const db::RowSet* rows);
    /// Reads the row set again: after its filter has changed, or after it was opened again.
    void refresh();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role = Qt::DisplayRole) const override;

private:
    const db::RowSet* m_rows = nullptr;
    int m_rowCount = 0;
    int m_columnCount = 0;
};

}  // namespace velcoran::lookup
