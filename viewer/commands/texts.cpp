#include "texts.h"

namespace velcoran::viewer {

QString groupedNumber(qint64 number) {
    QString text = QString::number(number);
    for (qsizetype at = text.size() - 3; at > (number < 0 ? 1 : 0); at -= 3) text.insert(at, u'.');
    return text;
}

QString rowsText(qint64 rows) {
    if (rows == 1) return QStringLiteral("1 rând");
    const qint64 rest = rows % 100;
    const bool isPlain = rows == 0 || (rest >= 1 && rest <= 19);
    return groupedNumber(rows) + (isPlain ? QStringLiteral(" rânduri") : QStringLiteral(" de rânduri"));
}

QString durationText(qint64 milliseconds) {
    const qint64 seconds = milliseconds / 1000;
    const auto twoDigits = [](qint64 value) { return QString::number(value).rightJustified(2, u'0'); };
    if (seconds < 3600) return QString::number(seconds / 60) + u':' + twoDigits(seconds % 60);
    return QString::number(seconds / 3600) + u':' + twoDigits(seconds / 60 % 60) + u':' + twoDigits(seconds % 60);
}

QString pageText(int page, int pageCount) {
    return QStringLiteral("%1 din %2").arg(groupedNumber(page), groupedNumber(pageCount));
}

int pageOfText(const QString& text) {
    int page = 0;
    for (const QChar character : text.trimmed()) {
        if (character == u'.') continue;
        if (character < u'0' || character > u'9' || page > 100'000'000) break;
        page = page * 10 + (character.unicode() - u'0');
    }
    return page;
}

}  // namespace velcoran::viewer
