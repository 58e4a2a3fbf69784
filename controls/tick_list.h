#pragma once

#include "control.h"

#include <QListWidget>

namespace velcoran::controls {

/// A list with a tick box in every row. A click anywhere on a row makes it current and ticks or unticks it; the blank
/// does the same with the current row; a typed letter or digit makes the next row current that starts with it. Moving
/// the current row changes no tick.
class TickList : public ControlOf<QListWidget> {
    Q_OBJECT
    Q_PROPERTY(QVariantMap controlState READ controlState)

public:
    explicit TickList(QWidget* parent = nullptr);

    /// Replaces the rows; none is ticked. @param current  -1 for no current row
    void fill(const QStringList& items, int current = -1);
    [[nodiscard]] QStringList items() const;
    /// Current row from 0, -1 for none.
    [[nodiscard]] int currentIndex() const { return currentRow(); }
    /// Makes a row current and scrolls to it; -1 for none. Rows that the list does not have are ignored.
    void setCurrentIndex(int index);
    [[nodiscard]] bool isTicked(int index) const;
    void setTicked(int index, bool isTicked);
    /// Ticked rows, ascending.
    [[nodiscard]] QList<int> ticked() const;

    /// Place of a row in the control's coordinates, after scrolling it into view; empty for no such row.
    Q_INVOKABLE QRect rowRect(int index);

    /// "items", "index", "ticked".
    [[nodiscard]] QVariantMap controlState() const override;

signals:
    /// After every change of a tick, by the user or by code.
    void tickChanged(int index);
    /// After every change of the current row.
    void currentIndexChanged(int index);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyboardSearch(const QString& search) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void lookChanged() override;

private:
    void toggle(int index);
    void moveToStart(const QString& typed);
};

}  // namespace velcoran::controls
