// A registry file of anybody's making is read.
#include "fuzzed_text.h"

#include <velcoran/activation.h>

#include <sys/mman.h>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const int file = memfd_create("registry", 0);
    velcoran::fuzz::expect(file >= 0 && write(file, data, size) == static_cast<ssize_t>(size), "a file in memory");
    for (const auto& entry : velcoran::activation::readEntries("/proc/self/fd/" + std::to_string(file)))
        velcoran::fuzz::expect(!entry.library.empty() && entry.library.front() == '/', "a library has its full path");
    close(file);
    return 0;
}
