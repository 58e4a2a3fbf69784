#pragma once

class QWidget;

namespace velcoran::form {

/// Gives Qt's own text boxes inside a widget what the window's have: a menu in Romanian, and no character typed while
/// Alt alone is held.
void completeTextBoxes(const QWidget& widget);

}  // namespace velcoran::form
