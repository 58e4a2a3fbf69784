#include "text_fit.h"

#include "font_set.h"

#include <algorithm>

namespace velcoran::report {

namespace {

constexpr QChar kEllipsis(u'\u2026');
/// No cell shows more characters; keeps a stray text of millions from being measured.
constexpr qsizetype kMaxCharacters = 1000;

/// A mark or the second half of a pair cannot start a line.
bool isInside(QStringView text, qsizetype at) {
    return at > 0 && at < text.size() && (text[at].isLowSurrogate() || text[at].isMark());
}

/// Longest beginning that fits with a tail of a given width.
qsizetype fittingLength(QStringView text, double room, bool isBold, const FontSet& fonts) {
    qsizetype low = 0;
    qsizetype high = std::min(text.size(), kMaxCharacters);
    while (low < high) {
        const qsizetype middle = (low + high + 1) / 2;
        if (fonts.width(text.left(middle), isBold) <= room) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    while (isInside(text, low)) --low;
    return low;
}

/// The same, but never nothing: a line takes one character however narrow it is.
qsizetype lineLength(QStringView text, double room, bool isBold, const FontSet& fonts) {
    const qsizetype fitting = fittingLength(text, room, isBold, fonts);
    if (fitting > 0) return fitting;
    qsizetype one = 1;
    while (isInside(text, one)) ++one;
    return one;
}

}  // namespace

QString oneLine(const QString& text) {
    const auto isControl = [](QChar c) { return c < u' ' || (c >= u'\u007F' && c <= u'\u009F'); };
    if (std::none_of(text.begin(), text.end(), isControl)) return text;
    QString line = text;
    line.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    std::replace_if(line.begin(), line.end(), isControl, u' ');
    return line;
}

QString elided(const QString& text, double room, bool isBold, const FontSet& fonts) {
    if (text.size() <= kMaxCharacters && fonts.width(text, isBold) <= room) return text;
    const double tail = fonts.width(QStringView(&kEllipsis, 1), isBold);
    QString shown = text.left(fittingLength(text, room - tail, isBold, fonts));
    while (shown.endsWith(u' ')) shown.chop(1);
    return shown + kEllipsis;
}

QStringList wrapped(const QString& text, double room, bool isBold, int maxLines, const FontSet& fonts) {
    QStringList lines;
    QString rest = text;
    while (lines.size() + 1 < maxLines && !(rest.size() <= kMaxCharacters && fonts.width(rest, isBold) <= room)) {
        const qsizetype fitting = lineLength(rest, room, isBold, fonts);
        const qsizetype blank =
            rest.size() > fitting && rest[fitting] == u' ' ? fitting : rest.lastIndexOf(u' ', fitting - 1);
        const qsizetype end = blank > 0 ? blank : fitting;
        lines.append(rest.left(end).trimmed());
        rest = rest.mid(end).trimmed();
    }
    lines.append(elided(rest, room, isBold, fonts));
    return lines;
}

}  // namespace velcoran::report
