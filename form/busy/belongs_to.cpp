#include "belongs_to.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace velcoran::form {

namespace {

const QWidget* widgetShownIn(const QWindow& window) {
    const QWindow* top = &window;
    while (top->parent() != nullptr) top = top->parent();
    for (const QWidget* widget : QApplication::topLevelWidgets())
        if (widget->windowHandle() == top) return widget;
    return nullptr;
}

const QWidget* widgetOf(const QObject& object) {
    if (object.isWindowType()) return widgetShownIn(static_cast<const QWindow&>(object));
    for (const QObject* owner = &object; owner != nullptr; owner = owner->parent())
        if (owner->isWidgetType()) return static_cast<const QWidget*>(owner);
    return nullptr;
}

}  // namespace

bool belongsTo(const QObject& object, const QWidget& window) {
    for (const QWidget* widget = widgetOf(object); widget != nullptr; widget = widget->parentWidget())
        if (widget == &window) return true;
    return false;
}

bool isInDialog(const QObject& object, const QWidget& window) {
    for (const QWidget* widget = widgetOf(object); widget != nullptr && widget != &window;
         widget = widget->parentWidget())
        if (widget->windowType() == Qt::Dialog || (widget->isWindow() && widget->isModal())) return true;
    return false;
}

}  // namespace velcoran::form
