#include "font_set.h"

#include "text_runs.h"

#include "base/error.h"

#include <fontconfig/fontconfig.h>
#include <hb-ot.h>
#include <hb.h>
#include <array>
#include <cmath>
#include <map>
#include <mutex>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

template <auto Destroy>
struct Deleter {
    template <class T>
    void operator()(T* object) const {
        Destroy(object);
    }
};
using Pattern = std::unique_ptr<FcPattern, Deleter<FcPatternDestroy>>;
using CharSet = std::unique_ptr<FcCharSet, Deleter<FcCharSetDestroy>>;
using Face = std::unique_ptr<hb_face_t, Deleter<hb_face_destroy>>;
using HbFont = std::unique_ptr<hb_font_t, Deleter<hb_font_destroy>>;
using Buffer = std::unique_ptr<hb_buffer_t, Deleter<hb_buffer_destroy>>;

constexpr char kFamily[] = "Liberation Sans";
/// Characters below are looked up once and for all: Latin, Greek, Cyrillic, and the signs up to the arrows.
constexpr std::size_t kTableSize = 0x2200;

/// Characters that stand for themselves when the font has them: no marks, no joining, no change of direction.
bool isPlain(char16_t c) {
    if (c < 0x0300) return c >= 0x20 && (c < 0x7F || c > 0x9F) && c != 0xAD;
    if (c >= 0x0370 && c < 0x0483) return true;
    if (c >= 0x048A && c < 0x0530) return true;
    if (c >= 0x1E00 && c < 0x2000) return true;
    return (c >= 0x2010 && c <= 0x2027) || (c >= 0x2030 && c <= 0x205E) || (c >= 0x20A0 && c <= 0x20CF) ||
           (c >= 0x2100 && c < 0x2200);
}

struct FoundFont {
    std::string file;
    int index = 0;
    QString family;
};

/// The font that the machine's configuration gives for a family, a weight and perhaps a character. Outlines in TrueType
/// form alone: it is what a PDF takes without conversion.
std::optional<FoundFont> findFont(bool isBold, std::optional<char32_t> character) {
    const Pattern pattern(FcPatternCreate());
    FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(kFamily));
    FcPatternAddInteger(pattern.get(), FC_WEIGHT, isBold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue);
    FcPatternAddString(pattern.get(), FC_FONTFORMAT, reinterpret_cast<const FcChar8*>("TrueType"));
    if (character) {
        const CharSet characters(FcCharSetCreate());
        FcCharSetAddChar(characters.get(), *character);
        FcPatternAddCharSet(pattern.get(), FC_CHARSET, characters.get());
    }
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());
    FcResult result = FcResultMatch;
    const Pattern match(FcFontMatch(nullptr, pattern.get(), &result));
    FcChar8* file = nullptr;
    FcChar8* family = nullptr;
    FcChar8* format = nullptr;
    FoundFont found;
    if (!match || FcPatternGetString(match.get(), FC_FILE, 0, &file) != FcResultMatch) return std::nullopt;
    if (FcPatternGetString(match.get(), FC_FONTFORMAT, 0, &format) != FcResultMatch ||
        std::string_view(reinterpret_cast<const char*>(format)) != "TrueType") {
        return std::nullopt;
    }
    FcPatternGetInteger(match.get(), FC_INDEX, 0, &found.index);
    if (FcPatternGetString(match.get(), FC_FAMILY, 0, &family) == FcResultMatch) {
        found.family = QString::fromUtf8(reinterpret_cast<const char*>(family));
    }
    found.file = reinterpret_cast<const char*>(file);
    return found;
}

}  // namespace

struct FontSet::Font {
    Face face;
    HbFont font;
    double unitsPerEm = 1000;

    explicit Font(const FoundFont& found) {
        hb_blob_t* blob = hb_blob_create_from_file(found.file.c_str());
        face.reset(hb_face_create(blob, static_cast<unsigned>(found.index & 0xFFFF)));
        hb_blob_destroy(blob);
        hb_face_make_immutable(face.get());
        font.reset(hb_font_create(face.get()));
        hb_ot_font_set_funcs(font.get());
        hb_font_make_immutable(font.get());
        unitsPerEm = hb_face_get_upem(face.get());
    }
    [[nodiscard]] hb_codepoint_t glyph(char32_t character) const {
        hb_codepoint_t glyph = 0;
        return hb_font_get_nominal_glyph(font.get(), character, &glyph) ? glyph : 0;
    }
};

struct FontSet::Private {
    struct Entry {
        float advance = 0;
        std::uint16_t glyph = 0;  ///< 0 where the character is not plain or the font lacks it
    };
    std::vector<std::unique_ptr<Font>> fonts;  ///< regular, bold, then fallbacks; under the lock but for the first two
    std::array<std::vector<Entry>, 2> tables;
    std::map<std::pair<char32_t, bool>, std::uint16_t> fallbacks;
    std::map<std::pair<std::string, int>, std::uint16_t> files;
    mutable std::mutex lock;
    QString family;
    double ascent = 0.905;
    double descent = 0.212;

    void fillTable(int weight) {
        const Font& font = *fonts[static_cast<std::size_t>(weight)];
        auto& table = tables[static_cast<std::size_t>(weight)];
        table.resize(kTableSize);
        for (std::size_t c = 0x20; c < kTableSize; ++c) {
            if (!isPlain(static_cast<char16_t>(c))) continue;
            const hb_codepoint_t glyph = font.glyph(static_cast<char32_t>(c));
            if (glyph == 0 || glyph > 0xFFFF) continue;
            table[c].glyph = static_cast<std::uint16_t>(glyph);
            table[c].advance =
                static_cast<float>(hb_font_get_glyph_h_advance(font.font.get(), glyph) / font.unitsPerEm);
        }
    }
    const Entry* entry(char16_t character, bool isBold) const {
        if (character >= kTableSize) return nullptr;
        const Entry& found = tables[isBold ? 1 : 0][character];
        return found.glyph == 0 ? nullptr : &found;
    }
    const Font& font(std::size_t index) const {
        const std::lock_guard guard(lock);
        return *fonts[index];
    }
};

std::shared_ptr<const FontSet> FontSet::shared() {
    static std::mutex lock;
    static std::weak_ptr<const FontSet> known;
    const std::lock_guard guard(lock);
    std::shared_ptr<const FontSet> set = known.lock();
    if (!set) {
        set = std::make_shared<const FontSet>();
        known = set;
    }
    return set;
}

FontSet::FontSet() : m_private(std::make_unique<Private>()) {
    for (const int weight : {kRegular, kBold}) {
        const auto found = findFont(weight == kBold, std::nullopt);
        if (!found)
            throw base::Error(base::kNoSuchObject, u"Pe acest calculator nu există niciun font pentru rapoarte."_s);
        m_private->files[{found->file, found->index}] = static_cast<std::uint16_t>(weight);
        m_private->fonts.push_back(std::make_unique<Font>(*found));
        m_private->fillTable(weight);
        if (weight == kRegular) m_private->family = found->family;
    }
    hb_font_extents_t extents;
    const Font& font = *m_private->fonts[kRegular];
    if (hb_font_get_h_extents(font.font.get(), &extents)) {
        m_private->ascent = extents.ascender / font.unitsPerEm;
        m_private->descent = -extents.descender / font.unitsPerEm;
    }
}

FontSet::~FontSet() = default;

double FontSet::width(QStringView text, bool isBold) const {
    float sum = 0;
    for (const QChar c : text) {
        const Private::Entry* entry = m_private->entry(c.unicode(), isBold);
        if (entry == nullptr) {
            sum = 0;
            for (const ShapedGlyph& glyph : shape(text, isBold)) sum += glyph.advance;
            return static_cast<double>(sum);
        }
        sum += entry->advance;
    }
    return static_cast<double>(sum);
}

bool FontSet::isSimple(QStringView text, bool isBold) const {
    return std::all_of(text.begin(), text.end(),
                       [&](QChar c) { return m_private->entry(c.unicode(), isBold) != nullptr; });
}

std::uint16_t FontSet::glyphOf(char16_t character, bool isBold, float& advance) const {
    const Private::Entry* entry = m_private->entry(character, isBold);
    advance = entry == nullptr ? 0 : entry->advance;
    return entry == nullptr ? 0 : entry->glyph;
}

std::uint16_t FontSet::fontFor(char32_t character, bool isBold) const {
    const std::uint16_t own = isBold ? kBold : kRegular;
    const std::lock_guard guard(m_private->lock);
    if (m_private->fonts[own]->glyph(character) != 0) return own;
    const auto known = m_private->fallbacks.find({character, isBold});
    if (known != m_private->fallbacks.end()) return known->second;
    std::uint16_t chosen = own;
    const auto found = findFont(isBold, character);
    if (found) {
        const auto [place, isNew] = m_private->files.try_emplace({found->file, found->index}, own);
        if (isNew) {
            place->second = static_cast<std::uint16_t>(m_private->fonts.size());
            m_private->fonts.push_back(std::make_unique<Font>(*found));
        }
        if (m_private->fonts[place->second]->glyph(character) != 0) chosen = place->second;
    }
    m_private->fallbacks[{character, isBold}] = chosen;
    return chosen;
}

void FontSet::shapeRun(QStringView text, qsizetype start, qsizetype length, std::uint16_t font, bool isRightToLeft,
                       std::vector<ShapedGlyph>& glyphs) const {
    const Font& used = m_private->font(font);
    const Buffer buffer(hb_buffer_create());
    hb_buffer_add_utf16(buffer.get(), reinterpret_cast<const std::uint16_t*>(text.utf16()),
                        static_cast<int>(text.size()), static_cast<unsigned>(start), static_cast<int>(length));
    hb_buffer_set_direction(buffer.get(), isRightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    hb_buffer_guess_segment_properties(buffer.get());
    const hb_feature_t noKerning = {HB_TAG('k', 'e', 'r', 'n'), 0, 0, HB_FEATURE_GLOBAL_END};
    hb_shape(used.font.get(), buffer.get(), &noKerning, 1);
    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer.get(), &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer.get(), &count);
    const auto scaled = [&used](hb_position_t value) { return static_cast<float>(value / used.unitsPerEm); };
    for (unsigned i = 0; i < count; ++i) {
        const auto cluster = static_cast<std::int32_t>(infos[i].cluster);
        std::int32_t end = static_cast<std::int32_t>(start + length);
        for (unsigned other = 0; other < count; ++other) {
            const auto next = static_cast<std::int32_t>(infos[other].cluster);
            if (next > cluster) end = std::min(end, next);
        }
        const bool isFirst = i == 0 || infos[i - 1].cluster != infos[i].cluster;
        glyphs.push_back({font, static_cast<std::uint16_t>(infos[i].codepoint), scaled(positions[i].x_advance),
                          scaled(positions[i].x_offset), scaled(positions[i].y_offset), cluster,
                          isFirst ? end - cluster : 0});
    }
}

std::vector<ShapedGlyph> FontSet::shape(QStringView text, bool isBold) const {
    std::vector<ShapedGlyph> glyphs;
    const auto fontOf = [this, isBold](char32_t character) { return fontFor(character, isBold); };
    for (const TextRun& run : splitRuns(text, fontOf)) {
        shapeRun(text, run.start, run.length, run.font, run.isRightToLeft, glyphs);
    }
    return glyphs;
}

double FontSet::ascent() const { return m_private->ascent; }
double FontSet::descent() const { return m_private->descent; }
const QString& FontSet::family() const { return m_private->family; }
hb_face_t* FontSet::face(int font) const { return m_private->font(static_cast<std::size_t>(font)).face.get(); }

}  // namespace velcoran::report
