#pragma once

#include <cstdint>

class QDialog;
class QWidget;

namespace velcoran::dialogs {

/// The widget of a native window handle; null for 0 and for what is no window of this process.
[[nodiscard]] QWidget* widgetOf(std::uintptr_t window);

/// Opens a dialog over its window and waits for the answer. A window that is closed meanwhile cancels it.
/// @return true when the user has accepted
[[nodiscard]] bool runDialog(QDialog& dialog);

}  // namespace velcoran::dialogs
