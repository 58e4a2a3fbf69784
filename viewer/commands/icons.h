#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace velcoran::viewer {

/// A drawing of this folder's `icons/`, its lines in one colour, sharp at every size and density; fainter when
/// disabled.
/// @param name  of the file without ".svg"; an unknown one gives an empty icon
[[nodiscard]] QIcon svgIcon(const QString& name, const QColor& colour);

}  // namespace velcoran::viewer
