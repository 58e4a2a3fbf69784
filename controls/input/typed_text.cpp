#include "typed_text.h"

#include <QKeyEvent>

namespace velcoran::controls {

namespace {

qsizetype lengthAt(QStringView text, qsizetype at) {
    const bool isPair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    return isPair ? 2 : 1;
}

/// Keys that move, delete or command send control characters or none.
bool hasCharacter(const QKeyEvent& key) {
    const QString text = key.text();
    return !text.isEmpty() && text.front().category() != QChar::Other_Control;
}

Qt::KeyboardModifiers commandModifiers(const QKeyEvent& key) {
    return key.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
}

}  // namespace

QString typedText(const QKeyEvent& key) {
    const Qt::KeyboardModifiers held = commandModifiers(key);
    const bool isTyping = held == Qt::NoModifier || held == (Qt::ControlModifier | Qt::AltModifier);
    return isTyping && hasCharacter(key) ? key.text() : QString();
}

bool isTypedWithAlt(const QKeyEvent& key) { return commandModifiers(key) == Qt::AltModifier && hasCharacter(key); }

QStringList charactersOf(QStringView text) {
    QStringList characters;
    for (qsizetype at = 0; at < text.size(); at += characters.last().size())
        characters += text.mid(at, lengthAt(text, at)).toString();
    return characters;
}

int characterCount(QStringView text) {
    int count = 0;
    for (qsizetype at = 0; at < text.size(); at += lengthAt(text, at)) ++count;
    return count;
}

QString firstCharacters(const QString& text, int count) {
    qsizetype end = 0;
    for (int taken = 0; taken < count && end < text.size(); ++taken) end += lengthAt(text, end);
    return text.left(end);
}

}  // namespace velcoran::controls
