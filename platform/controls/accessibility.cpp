#include "platform/controls/accessibility.h"

#include "platform/controls/date_picker.h"

#include <QAccessible>
#include <QAccessibleWidget>

namespace velcoran::controls {

namespace {

class AccessibleDatePicker : public QAccessibleWidget {
public:
    explicit AccessibleDatePicker(DatePicker* picker) : QAccessibleWidget(picker, QAccessible::ComboBox) {}

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value) return static_cast<DatePicker*>(widget())->shown();
        return QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.hasPopup = true;
        state.expandable = true;
        state.expanded = static_cast<DatePicker*>(widget())->isOpen();
        return state;
    }
};

QAccessibleInterface* createAccessible(const QString&, QObject* object) {
    auto* picker = qobject_cast<DatePicker*>(object);
    return picker != nullptr ? new AccessibleDatePicker(picker) : nullptr;
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
