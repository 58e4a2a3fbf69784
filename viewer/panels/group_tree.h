#pragma once

#include <QListView>

#include <memory>

namespace velcoran::report {
class Document;
}

namespace velcoran::viewer {

class GroupModel;

/// The groups of the shown report as a list beside its pages; the one that is chosen is gone to.
class GroupTree : public QListView {
    Q_OBJECT

public:
    explicit GroupTree(QWidget* parent);

    void setDocument(std::shared_ptr<const report::Document> document);
    /// Marks the group of the page that the user is on, unless the user is in the tree. @param page  from 1, or 0
    void followPage(int page);

signals:
    void pageChosen(int page);

private:
    void goTo(const QModelIndex& group);

    GroupModel* m_groups;
    std::shared_ptr<const report::Document> m_document;
};

}  // namespace velcoran::viewer
