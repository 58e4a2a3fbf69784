#include "like_pattern.h"

#include "db/case_folding.h"
#include "db/provider/utf16.h"

#include <algorithm>

namespace velcoran::sqlite {

using db::folded;
using provider::nextCharacter;

LikePattern::LikePattern(std::string_view pattern, char32_t escape) {
    const char* at = pattern.data();
    const char* const end = at + pattern.size();
    while (at != end) {
        const char32_t character = nextCharacter(at, end);
        if (escape != 0 && character == escape && at != end) {
            m_elements.push_back({Element::Kind::Character, folded(nextCharacter(at, end))});
        } else if (character == U'%') {
            m_elements.push_back({Element::Kind::Any});
        } else if (character == U'_') {
            m_elements.push_back({Element::Kind::One});
        } else if (character == U'[') {
            readSet(at, end);
        } else {
            m_elements.push_back({Element::Kind::Character, folded(character)});
        }
    }
    m_isPrefix = !m_elements.empty() && m_elements.back().kind == Element::Kind::Any &&
                 std::all_of(m_elements.begin(), m_elements.end() - 1,
                             [](const Element& one) { return one.kind == Element::Kind::Character; });
    if (m_isPrefix)
        for (auto one = m_elements.begin(); one != m_elements.end() - 1; ++one) m_prefix.push_back(one->character);
}

void LikePattern::readSet(const char*& at, const char* end) {
    std::vector<char32_t> characters;
    bool isClosed = false;
    while (at != end && !isClosed) {
        const char32_t character = nextCharacter(at, end);
        isClosed = character == U']';
        if (!isClosed) characters.push_back(character);
    }
    m_matchesNothing = m_matchesNothing || !isClosed;
    Element set{Element::Kind::Set};
    set.isNegated = !characters.empty() && characters.front() == U'^';
    for (std::size_t i = set.isNegated ? 1 : 0; i < characters.size(); ++i) {
        const bool isRange = i + 2 < characters.size() && characters[i + 1] == U'-';
        const std::size_t last = isRange ? i + 2 : i;
        set.ranges.emplace_back(folded(characters[i]), folded(characters[last]));
        i = last;
    }
    m_elements.push_back(std::move(set));
}

bool LikePattern::Element::accepts(char32_t sought) const {
    switch (kind) {
        case Kind::Character:
            return sought == character;
        case Kind::One:
            return true;
        case Kind::Set:
            return std::any_of(ranges.begin(), ranges.end(), [sought](const auto& range) {
                       return sought >= range.first && sought <= range.second;
                   }) != isNegated;
        case Kind::Any:
            break;
    }
    return false;
}

bool LikePattern::matches(std::string_view text) const {
    if (m_matchesNothing) return false;
    return m_isPrefix ? matchesPrefix(text) : matchesElements(text);
}

bool LikePattern::matchesPrefix(std::string_view text) const {
    const char* at = text.data();
    const char* const end = at + text.size();
    for (const char32_t sought : m_prefix)
        if (at == end || folded(nextCharacter(at, end)) != sought) return false;
    return true;
}

/// Walks text and pattern side by side; on a mismatch the last "%" takes one character more.
bool LikePattern::matchesElements(std::string_view text) const {
    const char* at = text.data();
    const char* const end = at + text.size();
    std::size_t element = 0;
    std::size_t afterAny = 0;
    const char* retryAt = nullptr;
    while (at != end) {
        if (element < m_elements.size() && m_elements[element].kind == Element::Kind::Any) {
            afterAny = ++element;
            retryAt = at;
            if (afterAny == m_elements.size()) return true;
            continue;
        }
        const char* next = at;
        const char32_t character = folded(nextCharacter(next, end));
        if (element < m_elements.size() && m_elements[element].accepts(character)) {
            ++element;
            at = next;
        } else if (retryAt != nullptr) {
            nextCharacter(retryAt, end);
            at = retryAt;
            element = afterAny;
        } else {
            return false;
        }
    }
    return std::all_of(m_elements.begin() + static_cast<std::ptrdiff_t>(element), m_elements.end(),
                       [](const Element& one) { return one.kind == Element::Kind::Any; });
}

}  // namespace velcoran::sqlite
