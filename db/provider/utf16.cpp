#include "utf16.h"

#include <cstdint>
#include <cstring>

namespace velcoran::provider {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// Length of the sequence that a byte starts; 0 for one that starts none.
int sequenceLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

bool isScalar(char32_t character, int length) {
    if (length == 3) return character >= 0x800 && (character < 0xD800 || character > 0xDFFF);
    if (length == 4) return character >= 0x10000 && character <= 0x10FFFF;
    return true;
}

}  // namespace

char32_t nextCharacter(const char*& at, const char* end) {
    const auto lead = static_cast<unsigned char>(*at++);
    if (lead < 0x80) return lead;
    const int length = sequenceLength(lead);
    if (length == 0 || end - at < length - 1) return kReplacement;
    char32_t character = lead & (0xFFU >> (length + 1));
    for (int i = 0; i < length - 1; ++i) {
        const auto next = static_cast<unsigned char>(at[i]);
        if ((next & 0xC0U) != 0x80U) return kReplacement;
        character = (character << 6U) | (next & 0x3FU);
    }
    if (!isScalar(character, length)) return kReplacement;
    at += length - 1;
    return character;
}

std::size_t toUtf16(const char* source, std::size_t bytes, char16_t* target) {
    const char* at = source;
    const char* const end = source + bytes;
    char16_t* out = target;
    while (at != end) {
        while (end - at >= 8) {
            std::uint64_t eight = 0;
            std::memcpy(&eight, at, sizeof eight);
            if ((eight & 0x8080808080808080ULL) != 0) break;
            for (int i = 0; i < 8; ++i) out[i] = static_cast<unsigned char>(at[i]);
            at += 8;
            out += 8;
        }
        while (at != end && static_cast<unsigned char>(*at) < 0x80) *out++ = static_cast<unsigned char>(*at++);
        if (at == end) break;
        const char32_t character = nextCharacter(at, end);
        if (character < 0x10000) {
            *out++ = static_cast<char16_t>(character);
        } else {
            *out++ = static_cast<char16_t>(0xD7C0U + (character >> 10U));
            *out++ = static_cast<char16_t>(0xDC00U + (character & 0x3FFU));
        }
    }
    return static_cast<std::size_t>(out - target);
}

}  // namespace velcoran::provider
