#pragma once

class QWidget;

namespace velcoran::form {

/// Gives the toolkit's text boxes inside a widget their menu in Romanian; the toolkit makes it in English.
void translateEditMenus(const QWidget& widget);

}  // namespace velcoran::form
