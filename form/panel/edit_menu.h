#pragma once

class QWidget;

namespace velcoran::form {

/// Gives every text box inside a widget its menu in Romanian; Qt makes it in English.
void translateEditMenus(const QWidget& widget);

}  // namespace velcoran::form
