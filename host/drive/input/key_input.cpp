#include "key_input.h"

#include "window_input.h"
#include "window_view.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

#include <optional>

using namespace Qt::StringLiterals;

// Exported by QtGui for QtTest, which declares it in the same way: a key as the window system reports it, with the
// window's shortcuts, its open list and its focus.
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow* window, QEvent::Type t, int k, Qt::KeyboardModifiers mods,
                                    const QString& text = QString(), bool autorep = false, ushort count = 1);

namespace velcoran::host {

namespace {

struct Key {
    int code = 0;
    QString text;  ///< what a keyboard sends with it
};

struct KeyRow {
    const char16_t* name;
    Qt::Key key;
    const char16_t* text;
};

constexpr KeyRow kKeys[] = {
    {u"Tab", Qt::Key_Tab, u"\t"},
    {u"Enter", Qt::Key_Return, u"\r"},
    {u"Esc", Qt::Key_Escape, u"\u001b"},
    {u"Space", Qt::Key_Space, u" "},
    {u"Left", Qt::Key_Left, u""},
    {u"Up", Qt::Key_Up, u""},
    {u"Right", Qt::Key_Right, u""},
    {u"Down", Qt::Key_Down, u""},
    {u"Delete", Qt::Key_Delete, u"\u007f"},
    {u"Backspace", Qt::Key_Backspace, u"\b"},
    {u"Home", Qt::Key_Home, u""},
    {u"End", Qt::Key_End, u""},
    {u"PageUp", Qt::Key_PageUp, u""},
    {u"PageDown", Qt::Key_PageDown, u""},
    {u"Menu", Qt::Key_Menu, u""},
    {u"Plus", Qt::Key_Plus, u"+"},
    {u"Minus", Qt::Key_Minus, u"-"},
    {u"F1", Qt::Key_F1, u""},
    {u"F2", Qt::Key_F2, u""},
    {u"F3", Qt::Key_F3, u""},
    {u"F4", Qt::Key_F4, u""},
    {u"F5", Qt::Key_F5, u""},
    {u"F6", Qt::Key_F6, u""},
    {u"F7", Qt::Key_F7, u""},
    {u"F8", Qt::Key_F8, u""},
    {u"F9", Qt::Key_F9, u""},
    {u"F10", Qt::Key_F10, u""},
    {u"F11", Qt::Key_F11, u""},
    {u"F12", Qt::Key_F12, u""},
};

int codeOf(char32_t character) {
    if (character == U'\n' || character == U'\r') return Qt::Key_Return;
    if (character == U'\t') return Qt::Key_Tab;
    if (character == U'\b') return Qt::Key_Backspace;
    const char32_t upper = QChar::toUpper(character);
    return upper >= 0x20 ? static_cast<int>(upper) : Qt::Key_unknown;
}

/// Ctrl turns a letter into its control character.
QString letterText(char32_t letter, const KeyStroke& stroke) {
    const char32_t upper = QChar::toUpper(letter);
    if (stroke.hasControl && upper >= U'A' && upper <= U'Z') return QString(QChar(static_cast<ushort>(upper & 0x1FU)));
    const char32_t typed = stroke.isShifted ? upper : letter;
    return QString::fromUcs4(&typed, 1);
}

std::optional<Key> keyOf(const KeyStroke& stroke) {
    for (const KeyRow& row : kKeys) {
        if (stroke.name != row.name) continue;
        // Keyboards send Tab with Shift as a key of its own.
        const bool isBacktab = row.key == Qt::Key_Tab && stroke.isShifted;
        return Key{isBacktab ? Qt::Key_Backtab : row.key, QString::fromUtf16(row.text)};
    }
    const auto characters = stroke.name.toUcs4();
    if (characters.size() != 1 || !QChar::isLetterOrNumber(characters.front())) return std::nullopt;
    return Key{codeOf(characters.front()), letterText(characters.front(), stroke)};
}

Qt::KeyboardModifiers modifiersOf(const KeyStroke& stroke) {
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ShiftModifier, stroke.isShifted);
    modifiers.setFlag(Qt::AltModifier, stroke.hasAlt);
    modifiers.setFlag(Qt::ControlModifier, stroke.hasControl);
    return modifiers;
}

/// The window that has the keyboard; asked before each event, because the one before may have closed it.
QWindow* keyWindow() {
    const QWidget* window = loadedWindow();
    return window != nullptr && window->isVisible() ? window->windowHandle() : nullptr;
}

void send(QEvent::Type type, const Key& key, Qt::KeyboardModifiers modifiers, bool isRepeat = false) {
    if (QWindow* window = keyWindow()) qt_handleKeyEvent(window, type, key.code, modifiers, key.text, isRepeat);
}

/// Window systems ask for the menu before they report its key.
void askForMenu(Qt::KeyboardModifiers modifiers) {
    QWindow* window = keyWindow();
    if (window == nullptr) return;
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, window->mapToGlobal(QPoint()), modifiers);
    QCoreApplication::sendEvent(window, &event);
}

}  // namespace

bool pressKey(const KeyStroke& stroke) {
    const std::optional<Key> key = keyOf(stroke);
    if (!key) return false;
    const Qt::KeyboardModifiers modifiers = modifiersOf(stroke);
    if (key->code == Qt::Key_Menu) askForMenu(modifiers);
    send(QEvent::KeyPress, *key, modifiers);
    for (int each = 0; each < stroke.repeats; ++each) {
        deliverEvents();
        send(QEvent::KeyPress, *key, modifiers, true);
    }
    send(QEvent::KeyRelease, *key, modifiers);
    return true;
}

void typeText(const QString& text, bool hasAlt) {
    for (const char32_t character : text.toUcs4()) {
        const Key key{codeOf(character), character == U'\n' ? u"\r"_s : QString::fromUcs4(&character, 1)};
        const bool isShifted = QChar::isUpper(character) && !hasAlt;
        const Qt::KeyboardModifiers modifiers = hasAlt      ? Qt::AltModifier
                                                : isShifted ? Qt::ShiftModifier
                                                            : Qt::NoModifier;
        send(QEvent::KeyPress, key, modifiers);
        send(QEvent::KeyRelease, key, modifiers);
    }
}

}  // namespace velcoran::host
