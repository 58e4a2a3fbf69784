#pragma once

#include <QString>
#include <QStringList>

namespace velcoran::report {

class FontSet;

/// A text as one line: line breaks, tabs and other control characters become blanks.
[[nodiscard]] QString oneLine(const QString& text);

/// The text where it fits, else its beginning with an ellipsis. @param room  in font sizes
[[nodiscard]] QString elided(const QString& text, double room, bool isBold, const FontSet& fonts);

/// Breaks a text at blanks into lines that fit, in words where a word alone is too long; the last line is elided when
/// there would be more. Never empty.
[[nodiscard]] QStringList wrapped(const QString& text, double room, bool isBold, int maxLines, const FontSet& fonts);

}  // namespace velcoran::report
