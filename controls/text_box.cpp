#include "text_box.h"

#include "controls/input/typed_text.h"
#include "desktop/own_style.h"
#include "painting.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>

#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

constexpr int kNoLimit = std::numeric_limits<int>::max();
constexpr int kTextMargin = 2;

bool isLeavingWindow(const QFocusEvent& event) {
    return event.reason() == Qt::PopupFocusReason || event.reason() == Qt::MenuBarFocusReason ||
           event.reason() == Qt::ActiveWindowFocusReason;
}

}  // namespace

TextBox::TextBox(QWidget* parent) : ControlOf(parent) {
    setFrame(false);
    setTextMargins(kTextMargin, 1, kTextMargin, 1);
    // A selection that is replaced by its own text is told as a change, and is none.
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (text == m_told) return;
        m_told = text;
        emit changed();
    });
    TextBox::lookChanged();
}

void TextBox::setTypingLimit(int limit) { m_limit = limit; }

void TextBox::setText(const QString& text) {
    if (text == QLineEdit::text()) return;
    // The caret goes to the start before the change is told: a long text shows its beginning, and a handler of the
    // change that moves the caret has the last word.
    {
        const QSignalBlocker quiet(this);
        QLineEdit::setText(text);
        setCursorPosition(0);
    }
    m_told = text;
    updateMicroFocus();
    update();
    emit changed();
}

int TextBox::selStart() const { return hasSelectedText() ? selectionStart() : cursorPosition(); }

int TextBox::selLength() const { return static_cast<int>(selectedText().size()); }

void TextBox::setSel(int start, int length) {
    const int size = static_cast<int>(text().size());
    const int first = qBound(0, start, size);
    const int count = qBound(0, length, size - first);
    if (count == 0) {
        deselect();
        setCursorPosition(first);
    } else {
        setSelection(first, count);
    }
}

QVariantMap TextBox::controlState() const {
    QVariantMap state = colourState();
    state[u"text"_s] = text();
    state[u"selStart"_s] = selStart();
    state[u"selLength"_s] = selLength();
    state[u"dataChanged"_s] = m_isDataChanged;
    return state;
}

int TextBox::room(QStringView replaced) const {
    return m_limit <= 0 ? kNoLimit : qMax(0, m_limit - characterCount(text()) + characterCount(replaced));
}

QString TextBox::accepted(const QString& typed, QStringView replaced) const {
    QString kept;
    for (const QString& character : charactersOf(typed))
        if (!m_refused || !m_refused(character)) kept += character;
    return firstCharacters(kept, room(replaced));
}

void TextBox::insertPasted(const QString& pasted) {
    if (isReadOnly()) return;
    QString line = pasted;
    for (QChar& character : line)
        if (character == u'\n' || character == u'\r' || character == u'\t') character = u' ';
    line = firstCharacters(line, room(selectedText()));
    if (!line.isEmpty()) insert(line);
}

void TextBox::paste() { insertPasted(QApplication::clipboard()->text()); }

void TextBox::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Paste)) {
        paste();
        event->accept();
        return;
    }
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    const bool isSideways = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    if (isPlain && isSideways && hasSelectedText()) {
        const int edge = event->key() == Qt::Key_Left ? selectionStart() : selectionEnd();
        setSel(edge, 0);
        event->accept();
        return;
    }
    const QString typed = typedText(*event);
    if (typed.isEmpty()) return pressOwnKey(*event);
    const QString kept = accepted(typed, selectedText());
    event->accept();
    if (!kept.isEmpty()) insert(kept);
}

// Movement, deleting, commands. Without its text the key cannot type past the limit.
void TextBox::pressOwnKey(QKeyEvent& event) {
    QKeyEvent bare(event.type(), event.key(), event.modifiers(), QString(), event.isAutoRepeat());
    QLineEdit::keyPressEvent(&bare);
    event.setAccepted(bare.isAccepted());
}

void TextBox::inputMethodEvent(QInputMethodEvent* event) {
    if (event->commitString().isEmpty()) {
        QLineEdit::inputMethodEvent(event);
        return;
    }
    QInputMethodEvent kept(event->preeditString(), event->attributes());
    kept.setCommitString(accepted(event->commitString(), replacedBy(*event)), event->replacementStart(),
                         event->replacementLength());
    // An input method replaces the selection even with nothing; a refused character leaves it alone.
    if (kept.commitString().isEmpty() && kept.preeditString().isEmpty() && hasSelectedText()) {
        event->accept();
        return;
    }
    QLineEdit::inputMethodEvent(&kept);
    event->setAccepted(kept.isAccepted());
}

// The selection, and what the input method takes back around the caret that is left then.
QString TextBox::replacedBy(const QInputMethodEvent& event) const {
    QString rest = text();
    rest.remove(selStart(), selLength());
    const int start = qBound(0, selStart() + event.replacementStart(), static_cast<int>(rest.size()));
    return selectedText() + rest.mid(start, event.replacementLength());
}

void TextBox::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    if (!isLeavingWindow(*event)) {
        selectAll();
        if (event->reason() == Qt::MouseFocusReason) m_focusPress = QPoint();
    }
    lookChanged();
    offerFocus(*event);
}

// Qt drops the selection with the focus; here it stays, unseen, as the state of the field.
void TextBox::focusOutEvent(QFocusEvent* event) {
    const int start = selStart();
    const int length = selLength();
    m_focusPress.reset();
    QLineEdit::focusOutEvent(event);
    if (length > 0 && !hasSelectedText()) setSelection(start, length);
    lookChanged();
    offerFocus(*event);
}

void TextBox::mousePressEvent(QMouseEvent* event) {
    if (m_focusPress && event->button() == Qt::LeftButton) {
        m_focusPress = event->position().toPoint();
        event->accept();
        return;
    }
    m_focusPress.reset();
    QLineEdit::mousePressEvent(event);
}

// The press that gives the focus keeps the whole text selected, unless the mouse is drawn over the text.
void TextBox::mouseMoveEvent(QMouseEvent* event) {
    if (!m_focusPress) {
        QLineEdit::mouseMoveEvent(event);
        return;
    }
    const QPoint way = event->position().toPoint() - *m_focusPress;
    if (way.manhattanLength() < QApplication::startDragDistance()) return;
    QMouseEvent press(QEvent::MouseButtonPress, *m_focusPress, mapToGlobal(*m_focusPress), Qt::LeftButton,
                      event->buttons(), event->modifiers());
    m_focusPress.reset();
    QLineEdit::mousePressEvent(&press);
    QLineEdit::mouseMoveEvent(event);
}

void TextBox::mouseReleaseEvent(QMouseEvent* event) {
    if (m_focusPress && event->button() == Qt::LeftButton) {
        m_focusPress.reset();
        event->accept();
        return;
    }
    if (event->button() == Qt::MiddleButton && QApplication::clipboard()->supportsSelection()) {
        deselect();
        setCursorPosition(cursorPositionAt(event->position().toPoint()));
        insertPasted(QApplication::clipboard()->text(QClipboard::Selection));
        event->accept();
        return;
    }
    QLineEdit::mouseReleaseEvent(event);
}

// While a text is dragged over the field, its caret moves along and the selection goes.
void TextBox::dragEnterEvent(QDragEnterEvent* event) {
    m_dragSelection = {selStart(), selLength()};
    QLineEdit::dragEnterEvent(event);
}

void TextBox::dragLeaveEvent(QDragLeaveEvent* event) {
    QLineEdit::dragLeaveEvent(event);
    if (const auto kept = std::exchange(m_dragSelection, std::nullopt)) setSel(kept->start, kept->length);
}

void TextBox::dropEvent(QDropEvent* event) {
    const Range selected = std::exchange(m_dragSelection, std::nullopt).value_or(Range{selStart(), selLength()});
    if (isReadOnly() || !event->mimeData()->hasText()) return;
    const QString dropped = event->mimeData()->text();
    const int place = cursorPositionAt(event->position().toPoint());
    event->setDropAction(Qt::CopyAction);
    event->accept();
    const bool isOverSelection = place >= selected.start && place <= selected.start + selected.length;
    if (isOverSelection && dropped == text().mid(selected.start, selected.length))
        return setSel(selected.start, selected.length);
    deselect();
    setCursorPosition(place);
    insertPasted(dropped);
}

// Qt's own, but pasting within the limit.
QMenu* TextBox::makeEditMenu() {
    QMenu* menu = createStandardContextMenu();
    const QString pasteText = QLineEdit::tr("&Paste");
    for (QAction* action : menu->actions()) {
        if (!action->text().startsWith(pasteText)) continue;
        action->disconnect();
        connect(action, &QAction::triggered, this, &TextBox::paste);
    }
    menu->setAttribute(Qt::WA_DeleteOnClose);
    desktop::keepStyle(*menu, controlStyle());
    menu->setPalette(systemPalette());
    menu->setFont(makeFont({}));
    return menu;
}

void TextBox::contextMenuEvent(QContextMenuEvent* event) {
    makeEditMenu()->popup(event->globalPos());
    event->accept();
}

void TextBox::paintEvent(QPaintEvent* event) {
    if (m_isShownEnabled != isOwnEnabled()) lookChanged();
    QLineEdit::paintEvent(event);
    QPainter painter(this);
    drawEdge(painter, rect(), border(kLine));
}

void TextBox::lookChanged() {
    m_isShownEnabled = isOwnEnabled();
    const QColor ground = back(kWhite);
    const QColor text = textColour(kBlack);
    QPalette palette = controlPalette(ground, text, border(kLine));
    if (!hasFocus()) {
        palette.setColor(QPalette::Highlight, ground);
        palette.setColor(QPalette::HighlightedText, text);
    }
    setPalette(palette);
    Control::lookChanged();
}

}  // namespace velcoran::controls
