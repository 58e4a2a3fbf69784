#pragma once

#include <QAbstractListModel>

#include <memory>

namespace velcoran::report {
class Document;
}

namespace velcoran::viewer {

/// The groups of the shown report, read from the document when the view asks for them.
class GroupModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    void setDocument(std::shared_ptr<const report::Document> document);
    /// Height of a row, in pixels.
    void setRowHeight(int height) { m_rowHeight = height; }
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    std::shared_ptr<const report::Document> m_document;
    int m_rowHeight = 20;
};

}  // namespace velcoran::viewer
