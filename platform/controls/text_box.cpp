#include "platform/controls/text_box.h"

#include "platform/controls/painting.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>

#include <limits>

using namespace Qt::StringLiterals;

namespace velcoran::controls {

namespace {

constexpr int kNoLimit = std::numeric_limits<int>::max();
constexpr int kTextMargin = 2;

enum class Typing : std::uint8_t {
    none,       ///< a key of the field's own: movement, deleting, shortcuts
    withAlt,    ///< a character with Alt alone held: it types nothing
    character,  ///< also with right Alt, which many layouts need and which arrives as Control with Alt
};

Typing typingOf(const QKeyEvent& key) {
    const QList<uint> characters = key.text().toUcs4();
    if (characters.isEmpty() || !QChar::isPrint(characters.front())) return Typing::none;
    const Qt::KeyboardModifiers modifiers = key.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    if (modifiers == Qt::AltModifier) return Typing::withAlt;
    return modifiers == Qt::ControlModifier ? Typing::none : Typing::character;
}

/// Characters of a text; a surrogate pair is one.
int lengthOf(QStringView text) {
    int pairs = 0;
    for (qsizetype at = 1; at < text.size(); ++at)
        if (text[at].isLowSurrogate() && text[at - 1].isHighSurrogate()) ++pairs;
    return static_cast<int>(text.size()) - pairs;
}

/// The first characters of a text. No surrogate pair is split.
QString firstOf(const QString& text, int count) {
    qsizetype end = 0;
    for (int taken = 0; taken < count && end < text.size(); ++taken) {
        const bool isPair = text[end].isHighSurrogate() && end + 1 < text.size() && text[end + 1].isLowSurrogate();
        end += isPair ? 2 : 1;
    }
    return text.left(end);
}

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
    const QVariant dataChanged = property("dataChanged");
    if (dataChanged.isValid()) state[u"dataChanged"_s] = dataChanged.toBool();
    return state;
}

int TextBox::room() const {
    return m_limit <= 0 ? kNoLimit : qMax(0, m_limit - lengthOf(text()) + lengthOf(selectedText()));
}

QString TextBox::accepted(const QString& typed) const {
    QString kept;
    for (const QChar character : typed)
        if (!m_refused || !m_refused(character)) kept += character;
    return firstOf(kept, room());
}

void TextBox::insertPasted(const QString& pasted) {
    if (isReadOnly()) return;
    QString line = pasted;
    for (QChar& character : line)
        if (character == u'\n' || character == u'\r' || character == u'\t') character = u' ';
    line = firstOf(line, room());
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
    const Typing typing = typingOf(*event);
    if (typing == Typing::withAlt) return event->ignore();
    if (typing == Typing::none) return QLineEdit::keyPressEvent(event);
    const QString kept = accepted(event->text());
    event->accept();
    if (!kept.isEmpty()) insert(kept);
}

void TextBox::inputMethodEvent(QInputMethodEvent* event) {
    if (event->commitString().isEmpty()) {
        QLineEdit::inputMethodEvent(event);
        return;
    }
    QInputMethodEvent kept(event->preeditString(), event->attributes());
    kept.setCommitString(accepted(event->commitString()), event->replacementStart(), event->replacementLength());
    // An input method replaces the selection even with nothing; a refused character leaves it alone.
    if (kept.commitString().isEmpty() && kept.preeditString().isEmpty() && hasSelectedText()) {
        event->accept();
        return;
    }
    QLineEdit::inputMethodEvent(&kept);
    event->setAccepted(kept.isAccepted());
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

// The toolkit drops the selection with the focus; here it stays, unseen, as the state of the field.
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

void TextBox::dropEvent(QDropEvent* event) {
    if (isReadOnly() || !event->mimeData()->hasText()) return;
    deselect();
    setCursorPosition(cursorPositionAt(event->position().toPoint()));
    insertPasted(event->mimeData()->text());
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void TextBox::contextMenuEvent(QContextMenuEvent* event) {
    if (!m_menu) m_menu = new QMenu(this);
    m_menu->clear();
    m_menu->setStyle(controlStyle());
    m_menu->setPalette(systemPalette());
    m_menu->setFont(makeFont({}));
    const bool hasSelection = hasSelectedText();
    const auto add = [this](const QString& text, bool isPossible, auto member) {
        m_menu->addAction(text, this, member)->setEnabled(isPossible);
    };
    add(u"&Anulează"_s, isUndoAvailable(), &QLineEdit::undo);
    m_menu->addSeparator();
    add(u"&Decupează"_s, hasSelection, &QLineEdit::cut);
    add(u"&Copiază"_s, hasSelection, &QLineEdit::copy);
    add(u"&Lipește"_s, !QApplication::clipboard()->text().isEmpty(), &TextBox::paste);
    add(u"Șterge"_s, hasSelection, &QLineEdit::del);
    m_menu->addSeparator();
    add(u"Selectează tot"_s, !text().isEmpty(), &QLineEdit::selectAll);
    m_menu->popup(event->globalPos());
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
