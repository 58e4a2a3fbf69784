#include "row_filter.h"

#include "base/error.h"

#include <QRegularExpression>

namespace velcoran::db {

using namespace Qt::StringLiterals;

namespace {

char16_t folded(char16_t unit) {
    if (unit < 0x80) return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
    if (QChar::isSurrogate(unit)) return unit;
    const char32_t other = QChar::toCaseFolded(static_cast<char32_t>(unit));
    return other < 0x10000 ? static_cast<char16_t>(other) : unit;
}

/// @param sought  case-folded
bool isAt(const char16_t* value, QStringView sought) {
    for (const QChar character : sought)
        if (folded(*value++) != character.unicode()) return false;
    return true;
}

bool contains(QStringView value, QStringView sought) {
    const char16_t* units = value.utf16();
    for (qsizetype i = 0; i + sought.size() <= value.size(); ++i)
        if (isAt(units + i, sought)) return true;
    return false;
}

QString foldedText(QString text) {
    for (QChar& character : text) character = folded(character.unicode());
    return text;
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
