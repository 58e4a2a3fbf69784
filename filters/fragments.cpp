#include "fragments.h"

#include <algorithm>

namespace velcoran::filters {

QString joinFragments(std::initializer_list<QStringView> pieces) {
    qsizetype length = 0;
    for (const QStringView piece : pieces) length += piece.size();
    QString joined;
    joined.reserve(length);
    for (const QStringView piece : pieces) joined += piece;
    return joined;
}

bool isPresent(QStringView text) {
    return std::any_of(text.begin(), text.end(), [](QChar one) { return one != u' '; });
}

}  // namespace velcoran::filters
