#pragma once

#include <QByteArray>
#include <QString>

namespace velcoran::system {

/// A file's name as a text. Names are bytes here: one that is no UTF-8 keeps its odd bytes, each as a lone low
/// surrogate U+DC80 to U+DCFF, so that nameBytes gives back what was given.
[[nodiscard]] QString nameText(QByteArrayView bytes);

/// The bytes of a file's name; the inverse of nameText.
[[nodiscard]] QByteArray nameBytes(const QString& name);

/// The name with the current folder in front, whose bytes need be no UTF-8 either; unchanged when it begins at the
/// root, or when the current folder is gone.
[[nodiscard]] QString fullName(const QString& name);

}  // namespace velcoran::system
