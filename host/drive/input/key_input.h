#pragma once

#include <QString>

namespace velcoran::host {

/// One key, pressed and released.
struct KeyStroke {
    /// "Tab", "Enter", "Esc", "Space", "Left", "Up", "Right", "Down", "Delete", "Backspace", "Home", "End", "PageUp",
    /// "PageDown", "Menu", "Plus", "Minus", "F1" to "F12", or one letter or digit, which is typed as it is written
    QString name;
    bool isShifted = false;
    bool hasAlt = false;
    bool hasControl = false;
    int repeats = 0;  ///< further presses by auto-repeat before the release
};

/// Presses and releases a key as a keyboard does: every press goes to what has the focus by then, an open list or
/// calendar first, and past the shortcuts of the window.
/// @return false for a key of no such name
bool pressKey(const KeyStroke& stroke);

/// Types characters (code points) one by one into what has the focus. @param hasAlt  with Alt alone held down
void typeText(const QString& text, bool hasAlt = false);

}  // namespace velcoran::host
