#include "host/window_input.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QThread>
#include <QWidget>

#include <memory>

using namespace Qt::StringLiterals;

// Exported by QtGui for QtTest, which declares it in the same way: offers a key to the shortcuts before it is a key
// press.
Q_GUI_EXPORT bool qt_sendShortcutOverrideEvent(QObject* o, ulong timestamp, int k, Qt::KeyboardModifiers mods,
                                               const QString& text = QString(), bool autorep = false, ushort count = 1);

namespace velcoran::host {

namespace {

struct KeyRow {
    const char16_t* name;
    Qt::Key key;
    const char16_t* text;  ///< what a keyboard sends with it
};

constexpr KeyRow kKeys[] = {
    {u"Tab", Qt::Key_Tab, u"\t"},           {u"Enter", Qt::Key_Return, u"\r"},
    {u"Esc", Qt::Key_Escape, u"\u001b"},    {u"Space", Qt::Key_Space, u" "},
    {u"Left", Qt::Key_Left, u""},           {u"Up", Qt::Key_Up, u""},
    {u"Right", Qt::Key_Right, u""},         {u"Down", Qt::Key_Down, u""},
    {u"Delete", Qt::Key_Delete, u"\u007f"}, {u"Backspace", Qt::Key_Backspace, u"\b"},
    {u"Home", Qt::Key_Home, u""},           {u"End", Qt::Key_End, u""},
    {u"PageUp", Qt::Key_PageUp, u""},       {u"PageDown", Qt::Key_PageDown, u""},
};

bool liesAbove(const QWidget& widget, const QPoint& point) {
    const QObjectList& siblings = widget.parentWidget()->children();
    for (qsizetype index = siblings.indexOf(const_cast<QWidget*>(&widget)) + 1; index < siblings.size(); ++index) {
        const auto* sibling = qobject_cast<const QWidget*>(siblings[index]);
        if (sibling == nullptr || sibling->isWindow() || sibling->isHidden()) continue;
        if (sibling->testAttribute(Qt::WA_TransparentForMouseEvents)) continue;
        if (sibling->geometry().contains(point)) return true;
    }
    return false;
}

/// An open list or calendar takes the keys, and closes when the mouse goes elsewhere.
void closePopups() {
    while (QWidget* popup = QApplication::activePopupWidget())
        if (!popup->close()) break;
}

QWidget* keyReceiver() {
    if (QWidget* popup = QApplication::activePopupWidget())
        return popup->focusWidget() != nullptr ? popup->focusWidget() : popup;
    return QApplication::focusWidget();
}

void sendKey(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    QWidget* receiver = keyReceiver();
    if (receiver == nullptr) return;
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    if (!qt_sendShortcutOverrideEvent(receiver, press.timestamp(), key, modifiers, text))
        QApplication::sendEvent(receiver, &press);
    // The press may have moved the focus or closed the window: the release goes to whatever has the focus now.
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    if (QWidget* after = keyReceiver()) QApplication::sendEvent(after, &release);
}

void sendMouse(QWidget& control, QEvent::Type type, const QPoint& point) {
    QWidget* child = control.childAt(point);
    QWidget* target = child != nullptr ? child : &control;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, target->mapFrom(&control, point), control.mapToGlobal(point), Qt::LeftButton, held,
                      Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

/// The widget at a point that takes the focus from a click there: the innermost one, at most the control itself.
QWidget* focusTarget(QWidget& control, const QPoint& point) {
    QWidget* widget = control.childAt(point);
    while (widget != nullptr && widget != &control && (widget->focusPolicy() & Qt::ClickFocus) == 0)
        widget = widget->parentWidget();
    if (widget == nullptr) widget = &control;
    if (widget->focusProxy() != nullptr) widget = widget->focusProxy();
    return (widget->focusPolicy() & Qt::ClickFocus) != 0 && widget->isEnabled() ? widget : nullptr;
}

void clickPoint(QWidget& control, const QPoint& point) {
    const QPointer<QWidget> guard(&control);
    if (QWidget* target = focusTarget(control, point)) target->setFocus(Qt::MouseFocusReason);
    if (guard == nullptr) return;
    sendMouse(control, QEvent::MouseButtonPress, point);
    if (guard != nullptr) sendMouse(control, QEvent::MouseButtonRelease, point);
}

int keyOf(char32_t character) {
    if (character == U'\n' || character == U'\r') return Qt::Key_Return;
    if (character == U'\t') return Qt::Key_Tab;
    if (character == U'\b') return Qt::Key_Backspace;
    const char32_t upper = QChar::toUpper(character);
    return upper >= 0x20 && upper <= 0xFF ? static_cast<int>(upper) : Qt::Key_unknown;
}

}  // namespace

bool isReachable(const QWidget& control) {
    if (!control.isEnabled()) return false;
    QPoint point = control.rect().center();
    for (const QWidget* widget = &control; !widget->isWindow(); widget = widget->parentWidget()) {
        if (widget->isHidden()) return false;
        point = widget->mapToParent(point);
        if (liesAbove(*widget, point)) return false;
    }
    return control.window()->isVisible();
}

bool giveFocus(QWidget& control) {
    closePopups();
    if (!isReachable(control)) return false;
    QWidget* target = focusTarget(control, control.rect().center());
    if (target == nullptr) return false;
    target->setFocus(Qt::MouseFocusReason);
    return true;
}

bool pressKey(const QString& name, bool isShifted) {
    for (const KeyRow& row : kKeys) {
        if (name != row.name) continue;
        // Keyboards send Tab with Shift as a key of its own.
        const bool isBacktab = row.key == Qt::Key_Tab && isShifted;
        sendKey(isBacktab ? Qt::Key_Backtab : row.key, isShifted ? Qt::ShiftModifier : Qt::NoModifier,
                QString::fromUtf16(row.text));
        return true;
    }
    return false;
}

void typeText(const QString& text) {
    for (const char32_t character : text.toUcs4()) {
        const QString typed = QString::fromUcs4(&character, 1);
        const bool isShifted = QChar::isUpper(character);
        sendKey(keyOf(character), isShifted ? Qt::ShiftModifier : Qt::NoModifier, character == U'\n' ? u"\r"_s : typed);
    }
}

void pasteText(const QString& text) {
    QWidget* box = QApplication::focusWidget();
    if (box == nullptr || !box->inherits("QLineEdit")) return;
    QClipboard* clipboard = QApplication::clipboard();
    const QMimeData* held = clipboard->mimeData();
    const bool hadText = held != nullptr && held->hasText();
    const QString old = hadText ? held->text() : QString();
    clipboard->setText(text);
    QMetaObject::invokeMethod(box, "paste");
    if (hadText)
        clipboard->setText(old);
    else
        clipboard->clear();
}

void clickControl(QWidget& control) {
    closePopups();
    if (!isReachable(control)) return;
    clickPoint(control, control.rect().center());
}

bool clickCell(QWidget& grid, int row, int column) {
    closePopups();
    QRect place;
    QMetaObject::invokeMethod(&grid, "cellRect", Q_RETURN_ARG(QRect, place), Q_ARG(int, row), Q_ARG(int, column));
    if (place.isEmpty()) return false;
    if (isReachable(grid)) clickPoint(grid, place.center());
    return true;
}

bool moveToCell(QWidget& grid, int row, int column) {
    bool isDone = false;
    QMetaObject::invokeMethod(&grid, "moveTo", Q_RETURN_ARG(bool, isDone), Q_ARG(int, row), Q_ARG(int, column));
    return isDone;
}

bool chooseEntry(QWidget& list, int index) {
    if (!giveFocus(list)) return true;
    bool isDone = false;
    QMetaObject::invokeMethod(&list, "choose", Q_RETURN_ARG(bool, isDone), Q_ARG(int, index));
    return isDone;
}

bool clickRow(QWidget& list, int index) {
    closePopups();
    QRect place;
    QMetaObject::invokeMethod(&list, "rowRect", Q_RETURN_ARG(QRect, place), Q_ARG(int, index));
    if (place.isEmpty()) return false;
    if (isReachable(list)) clickPoint(list, place.center());
    return true;
}

void enterDate(QWidget& picker, QDate date) {
    if (!giveFocus(picker)) return;
    QMetaObject::invokeMethod(&picker, "enter", Q_ARG(QDate, date));
}

void activateWindow(QWidget& window) {
    constexpr int kPatience = 200;
    if (!window.isVisible() || QApplication::activeWindow() == &window) return;
    window.activateWindow();
    QElapsedTimer elapsed;
    elapsed.start();
    while (QApplication::activeWindow() != &window && elapsed.elapsed() < kPatience) {
        QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(1);
    }
    if (QApplication::activeWindow() != &window) QApplication::setActiveWindow(&window);
}

void resizeWindow(QWidget& window, int width, int height) {
    if (window.isMaximized() || window.isFullScreen() || window.isMinimized()) window.showNormal();
    window.resize(width, height);
}

void deliverEvents() {
    // What one round posts, the next delivers; a loading report goes on by its own notifications.
    constexpr int kRounds = 3;
    for (int round = 0; round < kRounds; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

}  // namespace velcoran::host
