#include "system/file_name.h"

#include <QStringDecoder>

namespace velcoran::system {

namespace {

constexpr char16_t kOddByte = 0xDC00;

bool isOddByte(QChar character) {
    return character.unicode() >= kOddByte + 0x80 && character.unicode() <= kOddByte + 0xFF;
}

/// Length of the character of UTF-8 that starts here; 0 when none does.
qsizetype characterLength(QByteArrayView bytes) {
    for (qsizetype length = 1; length <= qMin<qsizetype>(4, bytes.size()); ++length) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = decoder(bytes.first(length));
        if (!decoder.hasError() && !text.contains(QChar::ReplacementCharacter)) return length;
    }
    return 0;
}

}  // namespace

QString nameText(QByteArrayView bytes) {
    if (bytes.isValidUtf8()) return QString::fromUtf8(bytes);
    QString text;
    while (!bytes.isEmpty()) {
        const qsizetype length = characterLength(bytes);
        if (length == 0) {
            text += QChar(kOddByte + static_cast<unsigned char>(bytes.front()));
        } else {
            text += QString::fromUtf8(bytes.first(length));
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

}  // namespace velcoran::system
