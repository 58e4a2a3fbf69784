#pragma once

#include <QLineEdit>

namespace velcoran::viewer {

/// The toolbar's box with the page, "3 din 57"; a number typed there is gone to.
class PageBox : public QLineEdit {
    Q_OBJECT

public:
    explicit PageBox(QWidget* parent);

    /// @param pageCount  0 without a report: the box is empty then
    void setPage(int page, int pageCount);

signals:
    void pageEntered(int page);
    /// The entry is done or given up.
    void left();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void enter();

    QString m_page;
};

}  // namespace velcoran::viewer
