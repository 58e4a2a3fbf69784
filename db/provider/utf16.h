#pragma once

#include <cstddef>

namespace velcoran::provider {

/// Turns UTF-8 into UTF-16. What is no UTF-8 becomes U+FFFD, one for each byte that cannot be read.
/// @param target  room for `bytes` units, the most that can come out
/// @return units written
std::size_t toUtf16(const char* source, std::size_t bytes, char16_t* target);

/// Reads one character, and steps over it. @param at  before end @return U+FFFD for what is no UTF-8
char32_t nextCharacter(const char*& at, const char* end);

}  // namespace velcoran::provider
