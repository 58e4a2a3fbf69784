#pragma once

#include <QWidget>

class QLabel;

namespace velcoran::viewer {

/// What stands in the place of the pages while there are none: a heading and a text in the middle of the ground.
class StatePane : public QWidget {
    Q_OBJECT

public:
    explicit StatePane(QWidget* parent);

    /// Shows a message; both empty hides the pane.
    void showMessage(const QString& heading, const QString& text);
    [[nodiscard]] QString heading() const;
    [[nodiscard]] QString text() const;

private:
    QLabel* m_heading;
    QLabel* m_text;
};

}  // namespace velcoran::viewer
