#pragma once

#include "base/units.h"

class QWidget;

namespace velcoran::controls {

/// Stores the place in the dynamic property "twips" (QRect, whole twips) and sets the geometry in pixels. Edges are
/// rounded, not widths, so that controls which touch in twips touch on the screen.
/// @param density  pixels an inch, kept in the dynamic property "density"
void placeTwips(QWidget* widget, base::TwipsRect place, double density);
/// The place last given to placeTwips; of a widget that was never placed, its geometry at its logical density.
[[nodiscard]] base::TwipsRect twipsOf(const QWidget* widget);
/// Pixels an inch that the widget was placed with; its logical density when it was never placed.
[[nodiscard]] double densityOf(const QWidget* widget);

}  // namespace velcoran::controls
