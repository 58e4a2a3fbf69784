#pragma once

#include <memory>

class QStyle;
class QWidget;

namespace velcoran::desktop {

/// The style of everything in the window, the same under any style of the application; lives as long as anyone holds
/// it.
[[nodiscard]] std::shared_ptr<QStyle> ownStyle();

/// Gives a widget a style that no style sheet and no style of the application reaches. The widget does not keep the
/// style alive.
void keepStyle(QWidget& widget, QStyle& style);

}  // namespace velcoran::desktop
