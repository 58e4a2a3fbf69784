#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <cstdint>
#include <memory>
#include <vector>

struct hb_face_t;

namespace velcoran::report {

/// A glyph of a shaped text.
struct ShapedGlyph {
    std::uint16_t font = 0;          ///< index into the set
    std::uint16_t glyph = 0;         ///< 0: the box of a missing character
    float advance = 0;               ///< in font sizes
    float offsetX = 0;               ///< in font sizes
    float offsetY = 0;               ///< in font sizes, up
    std::int32_t cluster = 0;        ///< first character that it stands for
    std::int32_t clusterLength = 0;  ///< characters; 0 for a further glyph of the same cluster
};

/// The fonts of the reports: Liberation Sans upright and bold, and for characters that it lacks whatever the machine
/// has. Measures and shapes texts the same for screen, print and files. Every function may be called from any thread.
class FontSet {
public:
    /// The set of the process; loaded by the first who asks, gone with the last who holds it.
    /// @throws Error kNoSuchObject when the machine has no outline font at all
    static std::shared_ptr<const FontSet> shared();

    FontSet();
    ~FontSet();
    FontSet(const FontSet&) = delete;
    FontSet& operator=(const FontSet&) = delete;

    static constexpr int kRegular = 0;
    static constexpr int kBold = 1;

    /// Width of a text on one line, in font sizes.
    [[nodiscard]] double width(QStringView text, bool isBold) const;
    /// True when each character stands for itself: one glyph of the font, one after the other.
    [[nodiscard]] bool isSimple(QStringView text, bool isBold) const;
    /// Glyph and advance of a character of a simple text. @param advance  in font sizes
    [[nodiscard]] std::uint16_t glyphOf(char16_t character, bool isBold, float& advance) const;
    /// Any text, in the order in which it stands on the line from left to right.
    [[nodiscard]] std::vector<ShapedGlyph> shape(QStringView text, bool isBold) const;

    /// Height above and depth below the base line, in font sizes; depth is positive.
    [[nodiscard]] double ascent() const;
    [[nodiscard]] double descent() const;
    /// Family of the first font, as a toolkit finds it.
    [[nodiscard]] const QString& family() const;
    /// Bytes of one font's file as a face; the set keeps it.
    [[nodiscard]] hb_face_t* face(int font) const;

private:
    struct Font;
    struct Private;
    [[nodiscard]] std::uint16_t fontFor(char32_t character, bool isBold) const;
    void shapeRun(QStringView text, qsizetype start, qsizetype length, std::uint16_t font, bool isRightToLeft,
                  std::vector<ShapedGlyph>& glyphs) const;

    std::unique_ptr<Private> m_private;
};

}  // namespace velcoran::report
