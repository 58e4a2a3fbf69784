#pragma once

#include <QFont>
#include <QString>

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

}  // namespace velcoran::controls
