#include "accessibility.h"

#include "date_picker.h"
#include "drop_down_list.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QKeyEvent>

namespace velcoran::controls {

namespace {

QString valueOf(const DatePicker& picker) { return picker.shown(); }
QString valueOf(const DropDownList& list) { return list.text(); }

/// A control with a list or a calendar behind it: its label is its name, what it shows its value. Qt's own
/// interface of a drop-down list gives the chosen entry as the name.
template <class Control>
class AccessibleDropDown : public QAccessibleWidget {
public:
    explicit AccessibleDropDown(Control* control) : QAccessibleWidget(control, QAccessible::ComboBox) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? valueOf(control()) : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.hasPopup = true;
        state.expandable = true;
        state.expanded = control().isOpen();
        return state;
    }
    QStringList actionNames() const override { return QAccessibleWidget::actionNames() << showMenuAction(); }
    void doAction(const QString& name) override {
        if (name != showMenuAction()) return QAccessibleWidget::doAction(name);
        QKeyEvent open(QEvent::KeyPress, Qt::Key_F4, Qt::NoModifier);
        QCoreApplication::sendEvent(widget(), &open);
    }

private:
    Control& control() const { return *static_cast<Control*>(widget()); }
};

QAccessibleInterface* createAccessible(const QString&, QObject* object) {
    if (auto* picker = qobject_cast<DatePicker*>(object)) return new AccessibleDropDown(picker);
    if (auto* list = qobject_cast<DropDownList*>(object)) return new AccessibleDropDown(list);
    return nullptr;
}

struct Factory {
    Factory() { QAccessible::installFactory(createAccessible); }
    ~Factory() { QAccessible::removeFactory(createAccessible); }
    Factory(const Factory&) = delete;
    Factory& operator=(const Factory&) = delete;
};

}  // namespace

std::shared_ptr<void> holdAccessibility() {
    static std::weak_ptr<Factory> shared;
    std::shared_ptr<Factory> factory = shared.lock();
    if (!factory) {
        factory = std::make_shared<Factory>();
        shared = factory;
    }
    return factory;
}

}  // namespace velcoran::controls
