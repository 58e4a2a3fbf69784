#pragma once

#include "mouse_input.h"

#include <QDate>
#include <QString>

class QWidget;

namespace velcoran::host {

/// Works the report window as a person does, with the events that a keyboard and a mouse send. What a person could not
/// do has no effect.

/// True when a click at the centre of a control would reach it: it and its containers are enabled and visible, and no
/// sibling of one of them lies above that point. The size of the window does not matter.
[[nodiscard]] bool isReachable(const QWidget& control);

/// Gives the keyboard focus as a click on the control would.
/// @return false when the click could not reach it or it does not take the focus
bool giveFocus(QWidget& control);

/// Pastes a text into the text box that has the focus. The clipboard has its own text again afterwards.
void pasteText(const QString& text);

/// Clicks the centre of a control.
void clickControl(QWidget& control, ClickKind kind = {});
/// Clicks a data cell of the grid, both counted from 1. @return false when it has no such cell
bool clickCell(QWidget& grid, int row, int column, ClickKind kind = {});
/// Clicks a row of the open list of a control, counted from 0. @return false when no such row is open
bool clickOpenRow(QWidget& list, int row, ClickKind kind = {});
/// Moves the current cell of the grid. @return false when it has no such cell
bool moveToCell(QWidget& grid, int row, int column);
/// Chooses an entry of a drop-down list, which gets the focus. @return false when it has no such entry
bool chooseEntry(QWidget& list, int index);
/// Clicks a row of a list with tick boxes. @return false when it has no such row
bool clickRow(QWidget& list, int index);
/// Sets a date picker, which gets the focus; a date outside its bounds changes nothing.
void enterDate(QWidget& picker, QDate date);

/// Makes the window the active one, so that the focus is a real one, also where no window manager does it.
void activateWindow(QWidget& window);
/// Gives the window's inner area a size in pixels; it is no longer maximized then.
void resizeWindow(QWidget& window, int width, int height);

/// Delivers every posted event.
void deliverEvents();

}  // namespace velcoran::host
