#include "file_name.h"

#include <QStringDecoder>

#include <unistd.h>
#include <climits>

namespace velcoran::system {

namespace {

constexpr char16_t kOddByte = 0xDC00;

bool isOddByte(QChar character) {
    return character.unicode() >= kOddByte + 0x80 && character.unicode() <= kOddByte + 0xFF;
}

/// A mark at the beginning is a part of the name like any other.
QString fromUtf8(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    return decoder(bytes);
}

/// Length of the character of UTF-8 that starts here; 0 when none does.
qsizetype characterLength(QByteArrayView bytes) {
    for (qsizetype length = 1; length <= qMin<qsizetype>(4, bytes.size()); ++length) {
        if (bytes.first(length).isValidUtf8()) return length;
    }
    return 0;
}

}  // namespace

QString nameText(QByteArrayView bytes) {
    if (bytes.isValidUtf8()) return fromUtf8(bytes);
    QString text;
    while (!bytes.isEmpty()) {
        const qsizetype length = characterLength(bytes);
        if (length == 0) {
            text += QChar(kOddByte + static_cast<unsigned char>(bytes.front()));
        } else {
            text += fromUtf8(bytes.first(length));
        }
        bytes = bytes.sliced(qMax<qsizetype>(1, length));
    }
    return text;
}

QByteArray nameBytes(const QString& name) {
    QByteArray bytes;
    qsizetype from = 0;
    for (qsizetype at = 0; at < name.size(); ++at) {
        const bool isPaired = at > 0 && name[at - 1].isHighSurrogate();
        if (!isOddByte(name[at]) || isPaired) continue;
        bytes += QStringView(name).mid(from, at - from).toUtf8();
        bytes += static_cast<char>(name[at].unicode() - kOddByte);
        from = at + 1;
    }
    return bytes + QStringView(name).mid(from).toUtf8();
}

QString fullName(const QString& name) {
    char folder[PATH_MAX];
    if (name.startsWith(u'/') || ::getcwd(folder, sizeof(folder)) == nullptr) return name;
    const QString current = nameText(folder);
    return current.endsWith(u'/') ? current + name : current + u'/' + name;
}

}  // namespace velcoran::system
