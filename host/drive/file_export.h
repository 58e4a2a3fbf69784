#pragma once

#include <QString>

namespace velcoran::host {

class DialogScript;

/// Exports the shown report into a file through the window's own export command; the ending chooses the format.
/// @throws Error when there is no such format; std::runtime_error with the window's words when the file was not written
void exportFile(DialogScript& dialogs, const QString& path);

/// @throws std::runtime_error with the text of the first message that was shown since the last look, when there was one
void failOnMessage(DialogScript& dialogs);

}  // namespace velcoran::host
