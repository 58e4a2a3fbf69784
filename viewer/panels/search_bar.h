#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QTimer;
class QToolButton;

namespace velcoran::viewer {

class CommandActions;

/// The search box with its two buttons and the count of hits.
class SearchBar : public QWidget {
    Q_OBJECT

public:
    explicit SearchBar(QWidget* parent);

    /// Puts the cursor into the box and selects its text.
    void open();
    /// Empties the box without asking for a search.
    void reset();
    /// Sets the text without asking for a search.
    void setText(const QString& text);
    void setPosition(const QString& text);
    /// Takes the pictures of its two commands anew.
    void setIcons(const CommandActions& actions);

signals:
    /// The text has stood still for a moment, or Enter was pressed; empty when it was deleted.
    void searched(const QString& text);
    void stepped(bool isForward);
    /// Esc was pressed.
    void closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void submit();

    QLineEdit* m_box;
    QToolButton* m_previous;
    QToolButton* m_next;
    QLabel* m_position;
    QTimer* m_pause;
    QString m_submitted;
};

}  // namespace velcoran::viewer
