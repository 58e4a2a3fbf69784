#include "guid_text.h"

#include <velcoran/activation.h>

#include <QUuid>

namespace velcoran::com {

QString guidText(const Guid& id) {
    const auto* tail = id.data4;
    return QUuid(id.data1, id.data2, id.data3, tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6], tail[7])
        .toString(QUuid::WithBraces)
        .toUpper();
}

std::optional<Guid> guidFromText(const QString& text) { return activation::guidOf(text.toStdString()); }

}  // namespace velcoran::com
