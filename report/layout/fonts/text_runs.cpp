#include "text_runs.h"

#include <QChar>

#include <fribidi.h>

#include <algorithm>
#include <new>

namespace velcoran::report {

namespace {

/// The first letter of a script that reads from right to left.
constexpr char32_t kFirstRightToLeft = 0x0590;

/// A text's characters with the places where they start in it.
struct Characters {
    explicit Characters(QStringView text) {
        for (qsizetype i = 0; i < text.size(); i = starts.back() + lengthAt(text, starts.back())) {
            starts.push_back(i);
            codes.push_back(lengthAt(text, i) == 2 ? QChar::surrogateToUcs4(text[i], text[i + 1]) : text[i].unicode());
        }
        starts.push_back(text.size());
    }
    static qsizetype lengthAt(QStringView text, qsizetype at) {
        return text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate() ? 2 : 1;
    }

    std::vector<FriBidiChar> codes;
    std::vector<qsizetype> starts;  ///< one more than characters
};

/// Embedding levels on a line that reads from left to right: odd ones read from right to left.
std::vector<FriBidiLevel> levelsOf(const std::vector<FriBidiChar>& codes) {
    std::vector<FriBidiLevel> levels(codes.size(), 0);
    if (std::ranges::none_of(codes, [](FriBidiChar code) { return code >= kFirstRightToLeft; })) return levels;
    const auto count = static_cast<FriBidiStrIndex>(codes.size());
    std::vector<FriBidiCharType> types(codes.size());
    std::vector<FriBidiBracketType> brackets(codes.size());
    fribidi_get_bidi_types(codes.data(), count, types.data());
    fribidi_get_bracket_types(codes.data(), count, types.data(), brackets.data());
    FriBidiParType direction = FRIBIDI_PAR_LTR;
    if (fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), count, &direction, levels.data()) == 0)
        throw std::bad_alloc();
    return levels;
}

/// Marks, joiners and blanks stay in the font of the character in front of them.
bool isCarried(char32_t code) { return QChar::isMark(code) || QChar::category(code) == QChar::Other_Format; }

struct Levelled {
    TextRun run;
    int level;
};

/// From the highest level down, what stands at a level or above it is turned round.
void order(std::vector<Levelled>& runs) {
    const int highest = runs.empty() ? 0 : std::ranges::max(runs, {}, &Levelled::level).level;
    for (int level = highest; level > 0; --level) {
        const auto isBelow = [level](const Levelled& run) { return run.level < level; };
        for (auto from = runs.begin(); from != runs.end();) {
            from = std::find_if_not(from, runs.end(), isBelow);
            const auto to = std::find_if(from, runs.end(), isBelow);
            std::reverse(from, to);
            from = to;
        }
    }
}

}  // namespace

std::vector<TextRun> splitRuns(QStringView text, const std::function<std::uint16_t(char32_t)>& fontOf) {
    const Characters characters(text);
    const std::vector<FriBidiLevel> levels = levelsOf(characters.codes);
    std::vector<Levelled> runs;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const bool isFirst = runs.empty();
        const std::uint16_t font =
            !isFirst && isCarried(characters.codes[i]) ? runs.back().run.font : fontOf(characters.codes[i]);
        if (isFirst || runs.back().level != levels[i] || runs.back().run.font != font)
            runs.push_back({{characters.starts[i], 0, font, levels[i] % 2 == 1}, levels[i]});
        runs.back().run.length += characters.starts[i + 1] - characters.starts[i];
    }
    order(runs);
    std::vector<TextRun> ordered;
    ordered.reserve(runs.size());
    for (const Levelled& run : runs) ordered.push_back(run.run);
    return ordered;
}

}  // namespace velcoran::report
