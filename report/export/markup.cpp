#include "markup.h"

#include <QFile>

namespace velcoran::report {

namespace {

/// What stands for a character; null for one that stands for itself.
const char* escapeOf(char16_t character) {
    switch (character) {
        case u'&':
            return "&amp;";
        case u'<':
            return "&lt;";
        case u'>':
            return "&gt;";
        case u'"':
            return "&quot;";
        case u'\t':
        case u'\n':
        case u'\r':
            return nullptr;
        default:
            break;
    }
    return character < 0x20 || character == 0xFFFE || character == 0xFFFF ? "" : nullptr;
}

/// The same with elements for blanks behind another, tabs and line breaks.
const char* elementOf(QStringView text, qsizetype at) {
    switch (text[at].unicode()) {
        case u'\t':
            return "<text:tab/>";
        case u'\r':
            return at + 1 < text.size() && text[at + 1] == u'\n' ? "" : "<text:line-break/>";
        case u'\n':
            return "<text:line-break/>";
        case u' ':
            return at == 0 || text[at - 1] == u' ' || at + 1 == text.size() ? "<text:s/>" : nullptr;
        default:
            return escapeOf(text[at].unicode());
    }
}

template <typename Replacement>
void appendReplaced(QByteArray& markup, QStringView text, Replacement replacement) {
    qsizetype start = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const char* instead = replacement(text, at);
        if (instead == nullptr) continue;
        markup.append(text.sliced(start, at - start).toUtf8());
        markup.append(instead);
        start = at + 1;
    }
    markup.append(text.sliced(start).toUtf8());
}

}  // namespace

void appendEscaped(QByteArray& markup, QStringView text) {
    appendReplaced(markup, text, [](QStringView whole, qsizetype at) { return escapeOf(whole[at].unicode()); });
}

void appendParagraphText(QByteArray& markup, QStringView text) { appendReplaced(markup, text, elementOf); }

Template::Template(const char* name) {
    QFile file(QStringLiteral(":/velcoran/templates/") + QLatin1StringView(name));
    [[maybe_unused]] const bool isOpen = file.open(QIODevice::ReadOnly);
    Q_ASSERT(isOpen);
    m_rest = file.readAll();
}

QByteArray Template::next() {
    const qsizetype end = m_rest.indexOf("<!--");
    QByteArray piece = m_rest.first(end < 0 ? m_rest.size() : end);
    m_rest = end < 0 ? QByteArray() : m_rest.sliced(m_rest.indexOf("-->") + 3);
    return piece;
}

}  // namespace velcoran::report
