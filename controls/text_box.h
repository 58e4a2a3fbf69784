#pragma once

#include "control.h"

#include <QLineEdit>

class QMenu;

namespace velcoran::controls {

/// Decides about one typed character, given by its code point alone: true refuses it.
using RefusedCharacters = std::function<bool(const QString& character)>;

/// One line of text in a flat border. Gaining the focus selects the whole text, by key, by code and by the mouse press
/// that gives it.
class TextBox : public ControlOf<QLineEdit> {
    Q_OBJECT
    Q_PROPERTY(QVariantMap controlState READ controlState)

public:
    explicit TextBox(QWidget* parent = nullptr);

    /// Limits typing, pasting and dropping to a length in code points; an assigned text stands whole. 0 is no limit.
    void setTypingLimit(int limit);
    /// Applies to typed characters (keys, dead keys, input methods), not to pasted, dropped or assigned text.
    void setRefusedCharacters(RefusedCharacters refused) { m_refused = std::move(refused); }

    /// Assigns the text, caret at its start. Nothing happens when it is the text already.
    void setText(const QString& text);
    /// Start of the selection; the caret where nothing is selected.
    [[nodiscard]] int selStart() const;
    [[nodiscard]] int selLength() const;
    /// Selects; the range is cut to the text. Length 0 sets the caret.
    void setSel(int start, int length);

    /// The menu of the text commands, in the language of Qt's own; deletes itself when it closes.
    [[nodiscard]] QMenu* makeEditMenu();

    /// Whether the text was changed after it was picked: kept for the window, which sets it.
    [[nodiscard]] bool isDataChanged() const { return m_isDataChanged; }
    void setDataChanged(bool isChanged) { m_isDataChanged = isChanged; }

    /// "text", "selStart", "selLength" and "dataChanged".
    [[nodiscard]] QVariantMap controlState() const override;

public slots:
    /// Pastes the clipboard over the selection: one change.
    void paste();

signals:
    /// After every actual change of the text, once each, synchronously.
    void changed();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void lookChanged() override;

private:
    struct Range {
        int start = 0;
        int length = 0;
    };

    [[nodiscard]] int room(QStringView replaced) const;
    [[nodiscard]] QString accepted(const QString& typed, QStringView replaced) const;
    [[nodiscard]] QString replacedBy(const QInputMethodEvent& event) const;
    void insertPasted(const QString& text);
    void pressOwnKey(QKeyEvent& event);

    RefusedCharacters m_refused;
    QString m_told;  ///< the text of the last change
    int m_limit = 0;
    bool m_isDataChanged = false;
    bool m_isShownEnabled = true;
    std::optional<QPoint> m_focusPress;    ///< where the press that gave the focus was, until its release
    std::optional<Range> m_dragSelection;  ///< before a text is dragged over the field
};

}  // namespace velcoran::controls
