#pragma once

#include "control.h"

#include <QTableView>

namespace velcoran::controls {

/// Characters that reach the grid as a key press, one by one (a surrogate pair is one): typed text, Enter as 13, Esc as
/// 27, Backspace as 8. May hide or destroy the grid.
using KeyPressHandler = std::function<void(const QString& character)>;

/// A read-only grid over the rows of a model that its caller owns. Row 0 is the header with the column names, column 0
/// the fixed row header; data rows and columns count from 1. Every row has the same height, so that any number of rows
/// costs nothing. Tab stays in the grid.
class Grid : public ControlOf<QTableView> {
    Q_OBJECT
    Q_PROPERTY(QVariantMap controlState READ controlState)

public:
    explicit Grid(QWidget* parent = nullptr);
    ~Grid() override;

    /// Shows a model (null: nothing); the cell 1, 1 becomes current. After a reset of the model the first row is
    /// current again in the same column.
    void bind(QAbstractItemModel* model);

    [[nodiscard]] int rows() const;
    [[nodiscard]] int columns() const;
    /// Current cell, from 1; 0 when there is none.
    [[nodiscard]] int row() const;
    [[nodiscard]] int column() const;
    [[nodiscard]] QString cellText(int row, int column) const;
    [[nodiscard]] QString headerText(int column) const;

    /// @param column  0 is the row header. @return false when there is no such column
    bool setColumnWidth(int column, base::Twips width);
    [[nodiscard]] base::Twips columnWidth(int column) const;

    /// Makes a cell current as the grid's own navigation does, and scrolls to it. @return false for no such cell
    Q_INVOKABLE bool moveTo(int row, int column);
    /// Place of a cell in the control's coordinates, after scrolling it into view; empty for no such cell.
    Q_INVOKABLE QRect cellRect(int row, int column);

    void setKeyPressHandler(KeyPressHandler handler) { m_keyPress = std::move(handler); }

    /// "columns", "rows", "row", "column", "widths"; empty while no model is bound.
    [[nodiscard]] QVariantMap controlState() const override;

signals:
    /// A click on a data cell, pressed and released in its row; the pressed cell is current by then.
    void cellClicked(int row, int column);
    void currentCellChanged(int row, int column);

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyboardSearch(const QString& search) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void focusInEvent(QFocusEvent* event) override;
    void lookChanged() override;
    void densityChanged() override;

private:
    [[nodiscard]] QModelIndex indexOf(int row, int column) const;
    void keepCurrent();
    void applyWidths();
    bool navigate(int key);
    void raiseKeyPresses(const QString& characters);

    KeyPressHandler m_keyPress;
    QList<base::Twips> m_widths;
    QPersistentModelIndex m_pressed;
    int m_currentColumn = 1;
};

}  // namespace velcoran::controls
