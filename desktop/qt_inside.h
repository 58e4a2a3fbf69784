#pragma once

#include <QPalette>

#include <optional>

class QStyle;
class QWidget;

/// Two things that Qt does and has no public name for, looked up by their names in the library that runs. A Qt without
/// them leaves the window exposed to a host's style sheet, and does nothing worse.
namespace velcoran::desktop::inside {

/// Gives a widget a style as it is. QWidget::setStyle puts it into a wrapper that applies the application's style sheet
/// where there is one. @return false when this Qt cannot do it; nothing is changed then
[[nodiscard]] bool setStyle(QWidget& widget, QStyle& style);

/// The palette that the desktop's theme gives to applications; nothing when this Qt cannot be asked.
[[nodiscard]] std::optional<QPalette> themePalette();

}  // namespace velcoran::desktop::inside
