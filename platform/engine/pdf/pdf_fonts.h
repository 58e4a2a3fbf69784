#pragma once

#include "platform/engine/pdf/pdf_file.h"
#include "platform/engine/pdf/pdf_glyphs.h"

namespace velcoran::engine {

/// Writes the fonts of a file, cut down to what it shows.
/// @return the entries of the /Font dictionary: "/F0 12 0 R /F1 17 0 R"
[[nodiscard]] std::string writeFonts(PdfFile& file, const FontSet& fonts, const PdfGlyphs& glyphs);

}  // namespace velcoran::engine
