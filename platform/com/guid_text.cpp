#include "platform/com/guid_text.h"

#include <QUuid>

#include <algorithm>
#include <iterator>

namespace velcoran::com {

QString guidText(const Guid& id) {
    const auto* tail = id.data4;
    return QUuid(id.data1, id.data2, id.data3, tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6], tail[7])
        .toString(QUuid::WithBraces)
        .toUpper();
}

std::optional<Guid> guidFromText(const QString& text) {
    const QUuid parsed = QUuid::fromString(text);
    if (parsed.isNull()) return std::nullopt;
    Guid id{parsed.data1, parsed.data2, parsed.data3, {}};
    std::copy(std::begin(parsed.data4), std::end(parsed.data4), std::begin(id.data4));
    return id;
}

}  // namespace velcoran::com
