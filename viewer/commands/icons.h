#pragma once

#include <QColor>
#include <QIcon>

namespace velcoran::viewer {

enum class Glyph {
    Export,
    Print,
    Refresh,
    Tree,
    First,
    Previous,
    Next,
    Last,
    ZoomOut,
    ZoomIn,
    Search,
    Up,
    Down,
    Stop,
    Filter,
    Help,
    Close,
    More,
    Copy,
};

/// An icon drawn as thin lines in one colour, sharp at every size and density; fainter when disabled.
[[nodiscard]] QIcon makeIcon(Glyph glyph, const QColor& colour);

}  // namespace velcoran::viewer
