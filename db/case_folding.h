#pragma once

#include <QChar>

namespace velcoran::db {

/// A character as patterns compare it, case aside: simple case folding, accents count. Half of a pair stays as it is.
[[nodiscard]] inline char32_t folded(char32_t character) {
    if (character < 0x80) return character >= U'A' && character <= U'Z' ? character + 0x20 : character;
    return QChar::toCaseFolded(character);
}

}  // namespace velcoran::db
