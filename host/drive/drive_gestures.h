#pragma once

#include "drive_command.h"

#include <QJsonObject>

namespace velcoran::host {

/// Thrown where a person could not do it either: the window is closed, the row is not there. The command is answered as
/// one that changed nothing.
struct NothingToDo {};

/// True for a command that is one gesture of a person: keys, mouse, and the size of the window.
[[nodiscard]] bool isGesture(const DriveCommand& command);
/// Makes the gesture. @throws Refusal when its members make no sense, NothingToDo
void makeGesture(const DriveCommand& command);

/// Presses a button of the viewer or makes one of its gestures. @return members of the answer
/// @throws Refusal
[[nodiscard]] QJsonObject workViewer(const DriveCommand& command);

}  // namespace velcoran::host
