#include "db/sqlite/like_pattern.h"

#include <gtest/gtest.h>

namespace velcoran::sqlite {
namespace {

struct LikeCase {
    const char* pattern;
    const char* text;
    bool matches;
};

TEST(LikePattern, followsTheServer) {
    constexpr LikeCase kCases[] = {
        {"ab%", "ABC", true},
        {"ab%", "a", false},
        {"ab", "ab", true},
        {"ab", "ab ", false},
        {"", "", true},
        {"", "a", false},
        {"%", "", true},
        {"%%b%", "abc", true},
        {"%bc", "abbc", true},
        {"%ab%ab%c", "xabyabzc", true},
        {"%ab%ab%c", "xabyazc", false},
        {"a%a", "a", false},
        {"a_c", "abc", true},
        {"a_c", "ac", false},
        {"_", "ș", true},
        {"__", "ș", false},
        {"_", "\xF0\x9F\x98\x80", true},
        {"șăn%", "ȘĂNĂTATE", true},
        {"san%", "ȘANTIER", false},
        {"%ȚI%", "terți", true},
        {"Ι%", "ι", true},
        {"%\U00010400x", "a\U00010428X", true},
        {"[a-c]x", "Bx", true},
        {"[a-c]x", "dx", false},
        {"[^a-c]x", "dx", true},
        {"[^a-c]x", "ax", false},
        {"[abș]", "Ș", true},
        {"[-a]", "-", true},
        {"[a-]", "-", true},
        {"[z-a]", "m", false},
        {"[%]", "%", true},
        {"[%]", "a", false},
        {"[_]%", "_a", true},
        {"[[]a", "[a", true},
        {"a]b", "a]b", true},
        {"[]", "]", false},
        {"[^]", "x", true},
        {"a[b", "a[b", false},
        {"%[", "[", false},
    };
    for (const LikeCase& one : kCases)
        EXPECT_EQ(LikePattern(one.pattern).matches(one.text), one.matches) << one.pattern << " on " << one.text;
}

TEST(LikePattern, escapedCharactersAreOrdinary) {
    EXPECT_TRUE(LikePattern("a!%", U'!').matches("a%"));
    EXPECT_FALSE(LikePattern("a!%", U'!').matches("ab"));
    EXPECT_TRUE(LikePattern("![a", U'!').matches("[a"));
}

}  // namespace
}  // namespace velcoran::sqlite
