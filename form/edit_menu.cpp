#include "form/edit_menu.h"

#include "platform/printing/dialog_language.h"

#include <QLineEdit>
#include <QMenu>

namespace velcoran::form {

void translateEditMenus(const QWidget& widget) {
    for (QLineEdit* edit : widget.findChildren<QLineEdit*>()) {
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
