#include "row_filter.h"

#include "base/error.h"
#include "case_folding.h"

#include <QRegularExpression>

#include <string>

namespace velcoran::db {

using namespace Qt::StringLiterals;

namespace {

/// The next character of a text, case-folded; moves the place behind it.
char32_t nextFolded(const char16_t*& at, const char16_t* end) {
    const char16_t unit = *at++;
    if (!QChar::isHighSurrogate(unit) || at == end || !QChar::isLowSurrogate(*at)) return folded(unit);
    return folded(QChar::surrogateToUcs4(unit, *at++));
}

/// @param sought  case-folded; no character is folded to one of another length
bool isAt(const char16_t* value, QStringView sought) {
    const char16_t* at = sought.utf16();
    for (const char16_t* const end = value + sought.size(); value != end; ++at) {
        const char32_t character = nextFolded(value, end);
        if (!QChar::requiresSurrogates(character)) {
            if (*at != character) return false;
        } else if (*at != QChar::highSurrogate(character) || *++at != QChar::lowSurrogate(character)) {
            return false;
        }
    }
    return true;
}

bool contains(QStringView value, QStringView sought) {
    const char16_t* units = value.utf16();
    for (qsizetype i = 0; i + sought.size() <= value.size(); ++i)
        if (isAt(units + i, sought)) return true;
    return false;
}

QString foldedText(const QString& text) {
    const auto* at = reinterpret_cast<const char16_t*>(text.utf16());
    const char16_t* const end = at + text.size();
    std::u32string characters;
    while (at != end) characters.push_back(nextFolded(at, end));
    return QString::fromUcs4(characters.data(), static_cast<qsizetype>(characters.size()));
}

}  // namespace

RowFilter RowFilter::parse(const QString& expression) {
    static const QRegularExpression form(
        u"\\A\\s*(?:\\[([^\\]]+)\\]|([\\p{L}_][\\p{L}\\p{N}_]*))\\s*\\blike\\s*'([^']*)'\\s*\\z"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption |
            QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(expression);
    if (!match.hasMatch())
        throw base::Error(base::kInvalidProcedureCall, u"Filtrul nu poate fi citit: "_s + expression);
    RowFilter filter;
    filter.column = match.hasCaptured(1) && !match.captured(1).isEmpty() ? match.captured(1) : match.captured(2);
    QString text = match.captured(3);
    if (text.endsWith(u'%')) {
        filter.isOpenAfter = true;
        text.chop(1);
    }
    if (text.startsWith(u'%')) {
        filter.isOpenBefore = true;
        text.remove(0, 1);
    }
    filter.text = foldedText(text);
    return filter;
}

bool RowFilter::matches(QStringView value) const {
    if (value.size() < text.size()) return false;
    const char16_t* units = value.utf16();
    if (isOpenBefore && isOpenAfter) return contains(value, text);
    if (isOpenBefore) return isAt(units + (value.size() - text.size()), text);
    if (!isOpenAfter && value.size() != text.size()) return false;
    return isAt(units, text);
}

}  // namespace velcoran::db
