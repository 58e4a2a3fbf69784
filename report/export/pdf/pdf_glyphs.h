#pragma once

#include "report/layout/fonts/font_set.h"

#include <QString>

#include <map>
#include <vector>

namespace velcoran::report {

/// The glyphs that a piece of a file shows, with the texts that they stand for.
class PdfGlyphs {
public:
    /// Glyphs of simple texts are noted by their characters.
    void addCharacter(char16_t character, bool isBold) { m_characters[isBold ? 1 : 0][character] = true; }
    void addShaped(const ShapedGlyph& glyph, QStringView text);
    void merge(const PdfGlyphs& other);
    /// By font, then by glyph: the text. A missing character's box has none.
    [[nodiscard]] std::map<int, std::map<std::uint16_t, QString>> byFont(const FontSet& fonts) const;

private:
    static constexpr std::size_t kCharacters = 0x10000;
    std::vector<bool> m_characters[2] = {std::vector<bool>(kCharacters), std::vector<bool>(kCharacters)};
    std::map<std::pair<int, std::uint16_t>, QString> m_shaped;
};

}  // namespace velcoran::report
