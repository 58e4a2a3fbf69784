#pragma once

#include "pdf_glyphs.h"
#include "report/layout/page.h"

#include <string>

namespace velcoran::report {

/// A length in hundredths of a point, the unit in which all places of a PDF page are written.
[[nodiscard]] int toCentipoints(double twips);
/// Writes hundredths as a decimal number: "12.5".
void appendHundredths(std::string& out, int hundredths);

/// Drawing commands of a page. The fonts are named /F and their index in the font set.
/// @param glyphs  takes what the page shows
void writeContent(const Page& page, PdfGlyphs& glyphs, std::string& out);

}  // namespace velcoran::report
