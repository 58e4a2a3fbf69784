#pragma once

#include "page.h"

#include <QStringView>

namespace velcoran::report {

class FontSet;

/// Base line of an item's first line, in twips from the top of the sheet.
[[nodiscard]] double baseLine(const PageItem& item, const FontSet& fonts);

/// Where a line of an item starts, in twips from the left of the sheet: what screen, print and files share.
[[nodiscard]] double lineStart(const PageItem& item, QStringView line, const FontSet& fonts);

}  // namespace velcoran::report
