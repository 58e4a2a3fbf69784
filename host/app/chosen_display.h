#pragma once

#include "system/display/display.h"

#include <QByteArray>

#include <vector>

namespace velcoran::host {

/// What a command needs of a display.
enum class DisplayNeed {
    None,    ///< never shows itself: such a command has no display chosen
    Useful,  ///< shows itself where the environment names a display
    Needed,
};

/// The display that a command works on, and the arguments for its application object.
class ChosenDisplay {
public:
    /// @throws Error kInvalidProcedureCall when the display that the environment names cannot be used, or a command
    /// that
    ///               needs one has none
    ChosenDisplay(DisplayNeed need, const char* program);

    /// Both live as long as this, which outlives the application object.
    [[nodiscard]] int& argumentCount() { return m_count; }
    [[nodiscard]] char** arguments() { return m_arguments.data(); }
    /// Lets go of the connection that kept the server, once the application object has its own.
    /// @throws Error kInvalidProcedureCall when Qt could not open the display after all
    void confirm();

private:
    system::Display m_display;
    std::vector<char*> m_arguments;
    int m_count = 0;
};

/// True when a window could be shown to somebody: the application object has another platform than those without
/// windows.
[[nodiscard]] bool hasDisplay();

}  // namespace velcoran::host
