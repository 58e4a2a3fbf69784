#include "pdf_glyphs.h"

namespace velcoran::report {

void PdfGlyphs::addShaped(const ShapedGlyph& glyph, QStringView text) {
    m_shaped.try_emplace({glyph.font, glyph.glyph}, glyph.glyph == 0 ? QString() : text.toString());
}

void PdfGlyphs::merge(const PdfGlyphs& other) {
    for (std::size_t weight = 0; weight < 2; ++weight) {
        for (std::size_t c = 0; c < kCharacters; ++c) {
            if (other.m_characters[weight][c]) m_characters[weight][c] = true;
        }
    }
    m_shaped.insert(other.m_shaped.begin(), other.m_shaped.end());
}

std::map<int, std::map<std::uint16_t, QString>> PdfGlyphs::byFont(const FontSet& fonts) const {
    std::map<int, std::map<std::uint16_t, QString>> result;
    for (const int weight : {FontSet::kRegular, FontSet::kBold}) {
        for (std::size_t c = 0; c < kCharacters; ++c) {
            if (!m_characters[weight][c]) continue;
            float advance = 0;
            const auto character = static_cast<char16_t>(c);
            const std::uint16_t glyph = fonts.glyphOf(character, weight == FontSet::kBold, advance);
            result[weight].try_emplace(glyph, QString(QChar(character)));
        }
    }
    for (const auto& [key, text] : m_shaped) result[key.first].try_emplace(key.second, text);
    return result;
}

}  // namespace velcoran::report
