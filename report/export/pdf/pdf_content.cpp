#include "pdf_content.h"

#include "report/layout/text_geometry.h"

#include <cmath>

namespace velcoran::report {

namespace {

constexpr double kCentipointsATwip = 5;
constexpr double kTwipsAPoint = 20;

void appendInteger(std::string& out, int value) {
    char buffer[12];
    char* at = buffer + sizeof(buffer);
    unsigned rest = value < 0 ? 0U - static_cast<unsigned>(value) : static_cast<unsigned>(value);
    do {
        *--at = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (value < 0) *--at = '-';
    out.append(at, buffer + sizeof(buffer));
}

/// A colour as red, green, blue from 0 to 1, in hundredths.
void appendColour(std::string& out, base::Colour colour) {
    const QRgb rgb = colour.toRgb();
    for (const int part : {qRed(rgb), qGreen(rgb), qBlue(rgb)}) {
        appendHundredths(out, (part * 100 + 127) / 255);
        out += ' ';
    }
    out += "rg\n";
}

/// Writes one page: keeps colour, font and place, and writes what changes.
class ContentWriter {
public:
    ContentWriter(const Page& page, PdfGlyphs& glyphs, std::string& out)
        : m_page(page), m_glyphs(glyphs), m_out(out), m_height(toCentipoints(page.height.value)) {}

    void write() {
        for (const PageItem& item : m_page.items) {
            if (item.kind != PageItem::Kind::Text) writeShape(item);
        }
        m_out += "BT\n";
        for (const PageItem& item : m_page.items) {
            if (item.kind == PageItem::Kind::Text && item.fontSize > 0) writeText(item);
        }
        m_out += "ET\n";
    }

private:
    void setColour(base::Colour colour) {
        if (colour == m_colour) return;
        m_colour = colour;
        appendColour(m_out, colour);
    }
    void fill(double left, double top, double width, double height) {
        appendHundredths(m_out, toCentipoints(left));
        m_out += ' ';
        appendHundredths(m_out, m_height - toCentipoints(top + height));
        m_out += ' ';
        appendHundredths(m_out, toCentipoints(width));
        m_out += ' ';
        appendHundredths(m_out, toCentipoints(height));
        m_out += " re f\n";
    }
    void writeShape(const PageItem& item) {
        setColour(item.colour);
        const double left = item.rect.left.value;
        const double top = item.rect.top.value;
        const double width = item.rect.width.value;
        const double height = item.rect.height.value;
        const double thickness = item.lineHeight.value;
        if (item.kind == PageItem::Kind::Line) {
            const bool isLevel = width >= height;
            fill(left, top, isLevel ? width : thickness, isLevel ? thickness : height);
            return;
        }
        fill(left, top, width, thickness);
        fill(left, top + height - thickness, width, thickness);
        fill(left, top, thickness, height);
        fill(left + width - thickness, top, thickness, height);
    }
    void setFont(int font, float size) {
        if (font == m_font && size == m_size) return;
        m_font = font;
        m_size = size;
        m_out += "/F";
        appendInteger(m_out, font);
        m_out += ' ';
        const long thousandths = std::lround(static_cast<double>(size) * 1000);
        appendInteger(m_out, static_cast<int>(thousandths / 1000));
        if (thousandths % 1000 != 0) {
            m_out += '.';
            m_out += std::to_string(1000 + thousandths % 1000).substr(1);
        }
        m_out += " Tf\n";
    }
    void moveTo(int x, int y) {
        appendHundredths(m_out, x - m_x);
        m_out += ' ';
        appendHundredths(m_out, y - m_y);
        m_out += " Td";
        m_x = x;
        m_y = y;
    }
    void writeText(const PageItem& item) {
        setColour(item.colour);
        double base = baseLine(item, *m_page.fonts);
        const QStringView text(item.text);
        for (qsizetype from = 0; from <= text.size();) {
            qsizetype to = text.indexOf(u'\n', from);
            if (to < 0) to = text.size();
            writeLine(item, text.mid(from, to - from), base);
            base += item.lineHeight.value;
            from = to + 1;
        }
    }
    void writeLine(const PageItem& item, QStringView line, double base) {
        const double start = lineStart(item, line, *m_page.fonts);
        const int y = m_height - toCentipoints(base);
        const std::size_t before = m_out.size();
        const auto state = std::tuple(m_x, m_y, m_font, m_size);
        setFont(item.isBold ? FontSet::kBold : FontSet::kRegular, item.fontSize);
        moveTo(toCentipoints(start), y);
        if (writeSimple(line, item.isBold)) return;
        m_out.resize(before);
        std::tie(m_x, m_y, m_font, m_size) = state;
        writeShaped(item, line, start, y);
    }
    void appendByte(std::uint8_t byte) {
        switch (byte) {
            case '\\':
            case '(':
            case ')':
                m_out += '\\';
                m_out += static_cast<char>(byte);
                break;
            case '\r':
                m_out += "\\r";
                break;
            default:
                m_out += static_cast<char>(byte);
        }
    }
    void appendGlyph(std::uint16_t glyph) {
        appendByte(static_cast<std::uint8_t>(glyph >> 8U));
        appendByte(static_cast<std::uint8_t>(glyph & 0xFFU));
    }
    bool writeSimple(QStringView line, bool isBold) {
        m_out += '(';
        for (const QChar c : line) {
            float advance = 0;
            const std::uint16_t glyph = m_page.fonts->glyphOf(c.unicode(), isBold, advance);
            if (glyph == 0) return false;
            m_glyphs.addCharacter(c.unicode(), isBold);
            appendGlyph(glyph);
        }
        m_out += ")Tj\n";
        return true;
    }
    /// Glyph by glyph: scripts that need shaping have places of their own.
    void writeShaped(const PageItem& item, QStringView line, double start, int y) {
        const double em = static_cast<double>(item.fontSize) * kTwipsAPoint;
        double x = start;
        for (const ShapedGlyph& glyph : m_page.fonts->shape(line, item.isBold)) {
            setFont(glyph.font, item.fontSize);
            moveTo(toCentipoints(x + static_cast<double>(glyph.offsetX) * em),
                   y + toCentipoints(static_cast<double>(glyph.offsetY) * em));
            m_out += '(';
            appendGlyph(glyph.glyph);
            m_out += ")Tj\n";
            m_glyphs.addShaped(glyph, line.mid(glyph.cluster, glyph.clusterLength));
            x += static_cast<double>(glyph.advance) * em;
        }
    }

    const Page& m_page;
    PdfGlyphs& m_glyphs;
    std::string& m_out;
    int m_height;
    base::Colour m_colour;
    int m_font = -1;
    float m_size = 0;
    int m_x = 0;
    int m_y = 0;
};

}  // namespace

int toCentipoints(double twips) { return static_cast<int>(std::lround(twips * kCentipointsATwip)); }

void appendHundredths(std::string& out, int hundredths) {
    if (hundredths < 0) {
        out += '-';
        hundredths = -hundredths;
    }
    appendInteger(out, hundredths / 100);
    const int rest = hundredths % 100;
    if (rest == 0) return;
    out += '.';
    out += static_cast<char>('0' + rest / 10);
    if (rest % 10 != 0) out += static_cast<char>('0' + rest % 10);
}

void writeContent(const Page& page, PdfGlyphs& glyphs, std::string& out) {
    out.clear();
    ContentWriter(page, glyphs, out).write();
}

}  // namespace velcoran::report
