#include "pdf_fonts.h"

#include "base/error.h"

#include <hb-ot.h>
#include <hb-subset.h>
#include <hb.h>
#include <cmath>
#include <cstdio>
#include <memory>

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

using GlyphTexts = std::map<std::uint16_t, QString>;

template <auto Destroy>
struct Deleter {
    template <class T>
    void operator()(T* object) const {
        Destroy(object);
    }
};
using Face = std::unique_ptr<hb_face_t, Deleter<hb_face_destroy>>;
using HbFont = std::unique_ptr<hb_font_t, Deleter<hb_font_destroy>>;
using Blob = std::unique_ptr<hb_blob_t, Deleter<hb_blob_destroy>>;
using SubsetInput = std::unique_ptr<hb_subset_input_t, Deleter<hb_subset_input_destroy>>;

/// Tables that a viewer does not read: it gets glyph numbers and places.
constexpr hb_tag_t kDropped[] = {HB_TAG('G', 'S', 'U', 'B'), HB_TAG('G', 'P', 'O', 'S'), HB_TAG('G', 'D', 'E', 'F'),
                                 HB_TAG('k', 'e', 'r', 'n'), HB_TAG('n', 'a', 'm', 'e'), HB_TAG('p', 'o', 's', 't')};

Blob subset(hb_face_t* face, const GlyphTexts& glyphs) {
    const SubsetInput input(hb_subset_input_create_or_fail());
    if (!input) throw std::bad_alloc();
    hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_RETAIN_GIDS | HB_SUBSET_FLAGS_NOTDEF_OUTLINE);
    hb_set_t* kept = hb_subset_input_glyph_set(input.get());
    hb_set_add(kept, 0);
    for (const auto& [glyph, text] : glyphs) hb_set_add(kept, glyph);
    hb_set_t* dropped = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
    for (const hb_tag_t tag : kDropped) hb_set_add(dropped, tag);
    const Face small(hb_subset_or_fail(face, input.get()));
    if (!small) throw base::Error(base::kFormatNotAvailable, u"Un font al raportului nu poate fi pus în fișier."_s);
    return Blob(hb_face_reference_blob(small.get()));
}

/// One font of the file.
class FontWriter {
public:
    FontWriter(PdfFile& file, hb_face_t* face, const GlyphTexts& glyphs)
        : m_file(file), m_face(face), m_font(hb_font_create(face)), m_glyphs(glyphs) {
        hb_ot_font_set_funcs(m_font.get());
        m_unit = 1000.0 / hb_face_get_upem(face);
    }

    /// @return number of the font's object
    int write() {
        const int first = m_file.reserve(5);
        const std::string name = fontName();
        const Blob blob = subset(m_face, m_glyphs);
        unsigned length = 0;
        const char* data = hb_blob_get_data(blob.get(), &length);
        m_file.writeStream(first + 4, m_compressor.pack({data, length}), "/Length1 " + std::to_string(length));
        m_file.writeStream(first + 3, m_compressor.pack(unicodeMap()));
        m_file.writeObject(first + 2, descriptor(name, first + 4));
        m_file.writeObject(first + 1,
                           "<</Type/Font/Subtype/CIDFontType2/BaseFont/" + name +
                               "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/CIDToGIDMap/Identity"
                               "/FontDescriptor " +
                               reference(first + 2) + "/DW 1000/W[" + widths() + "]>>");
        m_file.writeObject(first, "<</Type/Font/Subtype/Type0/BaseFont/" + name +
                                      "/Encoding/Identity-H/DescendantFonts[" + reference(first + 1) + "]/ToUnicode " +
                                      reference(first + 3) + ">>");
        return first;
    }

private:
    /// Six letters that differ with what is shown, then the font's own name: the rule for fonts that are cut down.
    std::string fontName() const {
        std::uint64_t sum = 14695981039346656037U;
        for (const auto& [glyph, text] : m_glyphs) sum = (sum ^ glyph) * 1099511628211U;
        std::string name;
        for (int i = 0; i < 6; ++i, sum /= 26) name += static_cast<char>('A' + sum % 26);
        char own[64] = {};
        unsigned size = sizeof(own);
        hb_ot_name_get_utf8(m_face, HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &size, own);
        name += '+';
        for (const char* at = own; *at != 0; ++at) {
            if (std::isalnum(static_cast<unsigned char>(*at)) != 0 || *at == '-') name += *at;
        }
        return name;
    }

    std::string number(double units) const { return std::to_string(std::lround(units * m_unit)); }

    std::string descriptor(const std::string& name, int fontFile) const {
        hb_font_extents_t extents{};
        hb_font_get_h_extents(m_font.get(), &extents);
        hb_position_t capHeight = 0;
        hb_ot_metrics_get_position(m_font.get(), HB_OT_METRICS_TAG_CAP_HEIGHT, &capHeight);
        const Blob head(hb_face_reference_table(m_face, HB_TAG('h', 'e', 'a', 'd')));
        unsigned length = 0;
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(hb_blob_get_data(head.get(), &length));
        std::string box;
        for (unsigned at = 36; at < 44 && length >= 44; at += 2) {  // xMin, yMin, xMax, yMax
            box += number(static_cast<std::int16_t>(bytes[at] << 8U | bytes[at + 1])) + ' ';
        }
        const bool isBold = name.find("Bold") != std::string::npos;
        return "<</Type/FontDescriptor/FontName/" + name + "/Flags 4/FontBBox[" + box + "]/ItalicAngle 0/Ascent " +
               number(extents.ascender) + "/Descent " + number(extents.descender) + "/CapHeight " + number(capHeight) +
               "/StemV " + (isBold ? "140" : "80") + "/FontFile2 " + reference(fontFile) + ">>";
    }

    std::string widths() const {
        std::string text;
        int next = -1;
        for (const auto& [glyph, unused] : m_glyphs) {
            if (glyph != next) {
                if (next >= 0) text += ']';
                text += ' ' + std::to_string(glyph) + '[';
            }
            char width[24];
            std::snprintf(width, sizeof(width), "%ld.%ld ",
                          std::lround(hb_font_get_glyph_h_advance(m_font.get(), glyph) * m_unit * 10) / 10,
                          std::lround(hb_font_get_glyph_h_advance(m_font.get(), glyph) * m_unit * 10) % 10);
            text += width;
            next = glyph + 1;
        }
        return next >= 0 ? text + ']' : text;
    }

    std::string unicodeMap() const {
        std::string map =
            "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
            "/CIDSystemInfo<</Registry(Adobe)/Ordering(UCS)/Supplement 0>>def\n/CMapName/Adobe-Identity-UCS def\n"
            "/CMapType 2 def\n1 begincodespacerange\n<0000><FFFF>\nendcodespacerange\n";
        std::vector<std::string> lines;
        for (const auto& [glyph, text] : m_glyphs) {
            if (text.isEmpty()) continue;
            char code[8];
            std::snprintf(code, sizeof(code), "<%04X>", glyph);
            std::string line = code + std::string("<");
            for (const QChar c : text) {
                char unit[8];
                std::snprintf(unit, sizeof(unit), "%04X", c.unicode());
                line += unit;
            }
            lines.push_back(line + ">\n");
        }
        constexpr std::size_t kMaxLines = 100;  // of one block, by the format
        for (std::size_t from = 0; from < lines.size(); from += kMaxLines) {
            const std::size_t to = std::min(lines.size(), from + kMaxLines);
            map += std::to_string(to - from) + " beginbfchar\n";
            for (std::size_t i = from; i < to; ++i) map += lines[i];
            map += "endbfchar\n";
        }
        return map + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
    }

    PdfFile& m_file;
    hb_face_t* m_face;
    HbFont m_font;
    const GlyphTexts& m_glyphs;
    double m_unit = 1;
    Compressor m_compressor;
};

}  // namespace

std::string writeFonts(PdfFile& file, const FontSet& fonts, const PdfGlyphs& glyphs) {
    std::string entries;
    for (const auto& [font, texts] : glyphs.byFont(fonts)) {
        const int number = FontWriter(file, fonts.face(font), texts).write();
        entries += "/F" + std::to_string(font) + ' ' + reference(number);
    }
    return entries;
}

}  // namespace velcoran::report
