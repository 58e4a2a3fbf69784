#pragma once

#include "base/units.h"

#include <QFont>
#include <QString>

class QWidget;

namespace velcoran::controls {

/// A font as a window designs it.
struct FontSpec {
    QString family = QStringLiteral("Arial");
    double points = 8.25;  ///< size, 1/72 inch
    bool isBold = false;

    friend bool operator==(const FontSpec&, const FontSpec&) = default;
};

/// The font on this machine: the family itself, or for "Arial" its metric-compatible "Liberation Sans".
[[nodiscard]] QFont makeFont(const FontSpec& spec);

/// Stores the place in the dynamic property "twips" (QRect, whole twips) and sets the geometry in pixels. Edges are
/// rounded, not widths, so that controls which touch in twips touch on the screen.
/// @param density  pixels an inch, kept in the dynamic property "density"
void placeTwips(QWidget* widget, base::TwipsRect place, double density);
/// The place last given to placeTwips; of a widget that was never placed, its geometry at its logical density.
[[nodiscard]] base::TwipsRect twipsOf(const QWidget* widget);
/// Pixels an inch that the widget was placed with; its logical density when it was never placed.
[[nodiscard]] double densityOf(const QWidget* widget);

}  // namespace velcoran::controls
