#include "period.h"

#include "filters/fragments.h"

namespace velcoran::query {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kDefaultSeparator = u"/";

bool isSeparator(QChar one) {
    // Formats of right-to-left languages hold direction marks beside the separator.
    return !one.isLetter() && !one.isSpace() && one.category() != QChar::Other_Format;
}

QString dateText(QDate date, QStringView separator) {
    return filters::joinFragments(
        {date.toString(u"dd"), separator, date.toString(u"MM"), separator, date.toString(u"yyyy")});
}

}  // namespace

QString dateSeparatorOf(const QLocale& locale) {
    bool isQuoted = false;
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    for (const QChar one : format) {
        if (one == u'\'') {
            isQuoted = !isQuoted;
        } else if (!isQuoted && isSeparator(one)) {
            return QString(one);
        }
    }
    return kDefaultSeparator.toString();
}

QString systemDateSeparator() { return dateSeparatorOf(QLocale::system()); }

QString periodText(const filters::FilterState& state, QStringView separator) {
    return filters::joinFragments(
        {u"= ", dateText(state.deLaData, separator), u" - ", dateText(state.laData, separator), u" ="});
}

QString periodSource(const filters::FilterState& state, QStringView separator) {
    return filters::joinFragments({u"'", periodText(state, separator), u"'"});
}

}  // namespace velcoran::query
