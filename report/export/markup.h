#pragma once

#include <QByteArray>
#include <QStringView>

namespace velcoran::report {

/// Appends a text to markup, in UTF-8, with the markup's own characters escaped. Characters that XML cannot hold are
/// left out.
void appendEscaped(QByteArray& markup, QStringView text);
/// The same for text documents: runs of blanks, tabs and line breaks, which the format would swallow, as its elements.
void appendParagraphText(QByteArray& markup, QStringView text);

/// A file of `templates/`, piece by piece: a comment in it ends a piece and says what stands in its place.
class Template {
public:
    explicit Template(const char* name);
    /// The next piece; the last one ends with the file.
    [[nodiscard]] QByteArray next();

private:
    QByteArray m_rest;
};

}  // namespace velcoran::report
