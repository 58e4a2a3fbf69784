#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velcoran::sqlite {

/// A pattern of the server's LIKE: "%" any characters, "_" one, "[a-z]" and "[abc]" one of a set, "[^a]" one outside
/// it. Letters are compared case-insensitively by simple case folding, accents count. A "[" that nothing closes matches
/// nothing.
class LikePattern {
public:
    /// @param pattern  UTF-8
    /// @param escape   character behind which the next one is ordinary; 0 for none
    explicit LikePattern(std::string_view pattern, char32_t escape = 0);

    /// @param text  UTF-8
    [[nodiscard]] bool matches(std::string_view text) const;

private:
    struct Element {
        enum class Kind { Character, One, Any, Set } kind = Kind::Character;
        char32_t character = 0;  ///< case-folded
        bool isNegated = false;
        std::vector<std::pair<char32_t, char32_t>> ranges = {};

        [[nodiscard]] bool accepts(char32_t sought) const;
    };

    void readSet(const char*& at, const char* end);
    [[nodiscard]] bool matchesPrefix(std::string_view text) const;
    [[nodiscard]] bool matchesElements(std::string_view text) const;

    std::vector<Element> m_elements;
    std::vector<char32_t> m_prefix;  ///< case-folded
    bool m_isPrefix = false;         ///< plain characters and one "%" at the end
    bool m_matchesNothing = false;
};

}  // namespace velcoran::sqlite
