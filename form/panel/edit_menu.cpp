#include "edit_menu.h"

#include "controls/text_box.h"
#include "dialogs/dialog_language.h"

#include <QMenu>

namespace velcoran::form {

namespace {

QMenu* makeMenu(QLineEdit& edit) {
    const dialogs::DialogLanguage language;  // the menu takes its texts when it is made
    if (auto* box = qobject_cast<controls::TextBox*>(&edit)) return box->makeEditMenu();
    QMenu* menu = edit.createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    return menu;
}

}  // namespace

void translateEditMenus(const QWidget& widget) {
    for (QLineEdit* edit : widget.findChildren<QLineEdit*>()) {
        edit->setContextMenuPolicy(Qt::CustomContextMenu);
        QObject::connect(edit, &QWidget::customContextMenuRequested, edit,
                         [edit](const QPoint& place) { makeMenu(*edit)->popup(edit->mapToGlobal(place)); });
    }
}

}  // namespace velcoran::form
