#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What libFuzzer calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace velcoran::fuzz {

inline QByteArray bytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)};
}
inline QString textOf(const std::uint8_t* data, std::size_t size) { return QString::fromUtf8(bytesOf(data, size)); }

/// Ends the run, with the input kept.
inline void expect(bool isTrue, const char* what) {
    if (isTrue) return;
    std::fprintf(stderr, "not so: %s\n", what);
    std::abort();
}

}  // namespace velcoran::fuzz
