#pragma once

#include <QString>
#include <QStringList>

class QKeyEvent;

namespace velcoran::controls {

/// What a key press types: nothing for movements and commands, and nothing with Control or Alt alone held. Right Alt,
/// which many layouts need for their characters, arrives as Control with Alt and types.
[[nodiscard]] QString typedText(const QKeyEvent& key);

/// True for a key that would type a character if Alt were not held alone.
[[nodiscard]] bool isTypedWithAlt(const QKeyEvent& key);

/// The code points of a text, each as a text of its own: a surrogate pair is one.
[[nodiscard]] QStringList charactersOf(QStringView text);

/// Number of code points.
[[nodiscard]] int characterCount(QStringView text);

/// The first code points of a text; no surrogate pair is split.
[[nodiscard]] QString firstCharacters(const QString& text, int count);

}  // namespace velcoran::controls
