#include "window_input.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QMimeData>
#include <QThread>
#include <QWidget>

#include <memory>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

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

/// An open list that lies over the place is put away first: the click is meant for the control.
void clickPoint(QWidget& control, const QPoint& point, ClickKind kind) {
    const QPoint place = control.mapToGlobal(point);
    if (!hasMouse(*control.window(), place)) return;
    const QWidget* popup = QApplication::activePopupWidget();
    const bool isCovered = popup != nullptr && popup->geometry().contains(place);
    if (isCovered || !isReachable(control)) closePopups();
    if (isReachable(control)) clickScreen(*control.window(), place, kind);
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
    const QPoint place = control.mapToGlobal(control.rect().center());
    if (!hasMouse(*control.window(), place)) return false;
    closePopups();
    if (!isReachable(control)) return false;
    QWidget* target = focusTargetAt(*control.window(), place);
    const bool isOwn = target != nullptr && (target == &control || control.isAncestorOf(target));
    if (isOwn) target->setFocus(Qt::MouseFocusReason);
    return isOwn;
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

void clickControl(QWidget& control, ClickKind kind) { clickPoint(control, control.rect().center(), kind); }

bool clickCell(QWidget& grid, int row, int column, ClickKind kind) {
    QRect place;
    QMetaObject::invokeMethod(&grid, "cellRect", Q_RETURN_ARG(QRect, place), Q_ARG(int, row), Q_ARG(int, column));
    if (place.isEmpty()) return false;
    clickPoint(grid, place.center(), kind);
    return true;
}

bool clickOpenRow(QWidget& list, int row, ClickKind kind) {
    QRect place;
    QMetaObject::invokeMethod(&list, "openRowRect", Q_RETURN_ARG(QRect, place), Q_ARG(int, row));
    if (place.isEmpty()) return false;
    clickScreen(*list.window(), place.center(), kind);
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
    QRect place;
    QMetaObject::invokeMethod(&list, "rowRect", Q_RETURN_ARG(QRect, place), Q_ARG(int, index));
    if (place.isEmpty()) return false;
    clickPoint(list, place.center(), {});
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
