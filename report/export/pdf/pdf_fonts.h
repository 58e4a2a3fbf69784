#pragma once

#include "pdf_file.h"
#include "pdf_glyphs.h"

namespace velcoran::report {

/// Writes the fonts of a file, cut down to what it shows.
/// @return the entries of the /Font dictionary: "/F0 12 0 R /F1 17 0 R"
[[nodiscard]] std::string writeFonts(PdfFile& file, const FontSet& fonts, const PdfGlyphs& glyphs);

}  // namespace velcoran::report
