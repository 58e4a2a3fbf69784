#include "text_runs.h"

#include <QChar>

#include <algorithm>

namespace velcoran::report {

namespace {

struct Character {
    qsizetype start = 0;
    qsizetype length = 1;
    char32_t code = 0;
    int level = 0;  ///< 0 left to right, 1 right to left, 2 a number among the latter
    std::uint16_t font = 0;
};

std::vector<Character> charactersOf(QStringView text) {
    std::vector<Character> characters;
    for (qsizetype i = 0; i < text.size(); ++i) {
        Character character{i, 1, text[i].unicode(), 0, 0};
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            character.code = QChar::surrogateToUcs4(text[i], text[i + 1]);
            character.length = 2;
            ++i;
        }
        characters.push_back(character);
    }
    return characters;
}

bool isRightToLeft(char32_t code) {
    const QChar::Direction direction = QChar::direction(code);
    return direction == QChar::DirR || direction == QChar::DirAL;
}

bool isDigit(char32_t code) {
    const QChar::Direction direction = QChar::direction(code);
    return direction == QChar::DirEN || direction == QChar::DirAN;
}

/// Everything between two characters that read from right to left belongs to them, unless a letter that reads the other
/// way stands between; so do numbers behind them.
void setLevels(std::vector<Character>& characters) {
    std::size_t last = characters.size();
    for (std::size_t i = 0; i < characters.size(); ++i) {
        if (QChar::direction(characters[i].code) == QChar::DirL) last = characters.size();
        const bool isNumberBehind = isDigit(characters[i].code) && last < i;
        if (!isRightToLeft(characters[i].code) && !isNumberBehind) continue;
        for (std::size_t j = std::min(last, i); j <= i; ++j) {
            characters[j].level = isDigit(characters[j].code) ? 2 : 1;
        }
        last = i;
    }
}

/// Marks, joiners and blanks stay in the font of the character in front of them.
void setFonts(std::vector<Character>& characters, const std::function<std::uint16_t(char32_t)>& fontOf) {
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const char32_t code = characters[i].code;
        const bool isCarried = QChar::isMark(code) || QChar::category(code) == QChar::Other_Format;
        characters[i].font = isCarried && i > 0 ? characters[i - 1].font : fontOf(code);
    }
}

}  // namespace

std::vector<TextRun> splitRuns(QStringView text, const std::function<std::uint16_t(char32_t)>& fontOf) {
    std::vector<Character> characters = charactersOf(text);
    setLevels(characters);
    setFonts(characters, fontOf);
    struct Levelled {
        TextRun run;
        int level;
    };
    std::vector<Levelled> runs;
    for (const Character& character : characters) {
        if (!runs.empty() && runs.back().level == character.level && runs.back().run.font == character.font) {
            runs.back().run.length += character.length;
        } else {
            runs.push_back(
                {{character.start, character.length, character.font, character.level == 1}, character.level});
        }
    }
    for (auto from = runs.begin(); from != runs.end();) {
        const auto isLeft = [](const Levelled& run) { return run.level == 0; };
        from = std::find_if_not(from, runs.end(), isLeft);
        const auto to = std::find_if(from, runs.end(), isLeft);
        std::reverse(from, to);
        from = to;
    }
    std::vector<TextRun> ordered;
    ordered.reserve(runs.size());
    for (const Levelled& run : runs) ordered.push_back(run.run);
    return ordered;
}

}  // namespace velcoran::report
