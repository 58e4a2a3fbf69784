#pragma once

#include <QByteArray>
#include <QString>

namespace velcoran::system {

/// A file's name as a text. Names are bytes here: one that is no UTF-8 keeps its odd bytes, each as a lone low
/// surrogate U+DC80 to U+DCFF, so that nameBytes gives back what was given.
[[nodiscard]] QString nameText(QByteArrayView bytes);

/// The bytes of a file's name; the inverse of nameText.
[[nodiscard]] QByteArray nameBytes(const QString& name);

}  // namespace velcoran::system
