#include "form/edit_menu.h"

#include "platform/printing/dialog_language.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>

namespace velcoran::form {

namespace {

/// Keeps a character with Alt alone held out of a text box; right Alt arrives as Control with Alt.
class AltGuard final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::KeyPress) return false;
        const auto& key = static_cast<const QKeyEvent&>(*event);
        const bool isAltAlone = (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == Qt::AltModifier;
        return isAltAlone && !key.text().isEmpty() && key.text().front().isPrint();
    }
};

}  // namespace

void completeTextBoxes(const QWidget& widget) {
    for (QLineEdit* edit : widget.findChildren<QLineEdit*>()) {
        edit->installEventFilter(new AltGuard(edit));
        edit->setContextMenuPolicy(Qt::CustomContextMenu);
        QObject::connect(edit, &QWidget::customContextMenuRequested, edit, [edit](const QPoint& place) {
            const printing::DialogLanguage language;  // the menu takes its texts when it is made
            QMenu* menu = edit->createStandardContextMenu();
            menu->setAttribute(Qt::WA_DeleteOnClose);
            menu->popup(edit->mapToGlobal(place));
        });
    }
}

}  // namespace velcoran::form
