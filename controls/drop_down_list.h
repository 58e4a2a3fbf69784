#pragma once

#include "control.h"
#include "controls/input/second_press.h"

#include <QComboBox>

namespace velcoran::controls {

/// A closed list: one of its items is chosen, or none. Typing completes against the items, the arrow shows only while
/// the list has the focus, the wheel does nothing. Up and Down choose the neighbour, F4 or Alt+Down opens the list.
class DropDownList : public ControlOf<QComboBox> {
    Q_OBJECT
    Q_PROPERTY(QVariantMap controlState READ controlState)

public:
    explicit DropDownList(QWidget* parent = nullptr);
    ~DropDownList() override;

    /// Replaces the items and the choice without a change notification. @param index  -1 for none
    void fill(const QStringList& items, int index = -1);
    [[nodiscard]] QStringList items() const;
    /// Position of the chosen item from 0, -1 for none.
    [[nodiscard]] int index() const { return currentIndex(); }
    /// Chooses by code. Positions that the list does not have are ignored.
    void setIndex(int index);
    /// Text of the chosen item, empty for none.
    [[nodiscard]] QString text() const { return currentText(); }

    /// Chooses as the user does in the open list, which closes.
    /// @return false when the list cannot be worked now or has no such item
    Q_INVOKABLE bool choose(int index);

    void showPopup() override;
    void hidePopup() override;
    [[nodiscard]] bool isOpen() const;
    /// Position of the entry that is marked in the open list, -1 for none or while the list is closed.
    [[nodiscard]] int highlight() const;
    /// Place of an entry of the open list on the screen, after scrolling it into view; empty while the list is closed
    /// and for no such entry. A mouse press there goes to the widget of the open list (QApplication::widgetAt).
    Q_INVOKABLE QRect openRowRect(int row);

    /// "items", "index", "text"; "open" and "highlight".
    [[nodiscard]] QVariantMap controlState() const override;

signals:
    /// After every change of the chosen item, by the user or by code; none for the same item.
    void changed(int index);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    class Popup;

    bool moveChoice(int key);
    void completeTyped(const QString& typed);
    [[nodiscard]] int itemThatStarts(const QString& start) const;
    void mark(int row);
    void placePopup();
    void pickHighlighted();
    bool handlePopupKey(QKeyEvent& key);
    void pressOutside(const QMouseEvent& press);

    std::shared_ptr<void> m_accessibility;
    QString m_typed;  ///< start of the chosen item that was typed
    std::unique_ptr<Popup> m_popup;
    SecondPressGuard m_secondPress;
    bool m_isFilling = false;
};

}  // namespace velcoran::controls
