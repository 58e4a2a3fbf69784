#pragma once

#include <QByteArray>
#include <QStringView>

namespace velcoran::report {

/// Appends a text to markup, in UTF-8, with the markup's own characters escaped. Characters that XML cannot hold are
/// left out.
void appendEscaped(QByteArray& markup, QStringView text);
/// The same for text documents: runs of blanks, tabs and line breaks, which the format would swallow, as its elements.
void appendParagraphText(QByteArray& markup, QStringView text);

}  // namespace velcoran::report
