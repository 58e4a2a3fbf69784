// What a process has that a library could change behind its host's back, and what a round of work may use up.
#pragma once

#include <algorithm>
#include <cfenv>
#include <clocale>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>
#include <csignal>

#ifdef __SANITIZE_ADDRESS__
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace hosts {

/// The numbers in a folder of /proc/self.
inline std::set<int> numbersIn(const char* folder) {
    std::set<int> numbers;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        numbers.insert(std::stoi(entry.path().filename().string()));
    return numbers;
}

/// What a descriptor is open on; empty for a closed one. The name of a file may change under it, its device, number and
/// type do not; what has no file behind it shares one number, and its kind is its name.
inline std::string targetOf(int descriptor) {
    struct stat target {};
    if (fstat(descriptor, &target) != 0) return {};
    std::error_code none;
    const std::string name =
        std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor), none).string();
    if (name.starts_with("anon_inode:")) return name;
    return std::to_string(target.st_dev) + ":" + std::to_string(target.st_ino) + " type " +
           std::to_string(target.st_mode & S_IFMT);
}

/// The open descriptors with what each is open on, without the one that lists them.
inline std::string openDescriptors() {
    std::string text;
    for (const int descriptor : numbersIn("/proc/self/fd"))
        if (const std::string target = targetOf(descriptor); !target.empty())
            text += std::to_string(descriptor) + " " + target + "; ";
    return text;
}

inline std::string threads() {
    std::string text;
    for (const int thread : numbersIn("/proc/self/task")) text += std::to_string(thread) + "; ";
    return text;
}

/// Facts by name, as texts: a difference can be shown.
inline std::map<std::string, std::string> processFacts() {
    std::map<std::string, std::string> facts;
    facts["locale"] = std::setlocale(LC_ALL, nullptr);
    facts["decimal sign"] = std::localeconv()->decimal_point;
    facts["working folder"] = std::filesystem::current_path().string();
    const mode_t mask = umask(0);
    umask(mask);
    facts["file mask"] = std::to_string(mask);
    facts["rounding"] = std::to_string(std::fegetround());
    facts["terminate handler"] = std::to_string(reinterpret_cast<std::uintptr_t>(std::get_terminate()));
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action {};
        if (sigaction(number, nullptr, &action) != 0) continue;
        facts["signal " + std::to_string(number)] =
            std::to_string(reinterpret_cast<std::uintptr_t>(action.sa_handler)) + " " + std::to_string(action.sa_flags);
    }
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    for (int number = 1; number < NSIG; ++number)
        if (sigismember(&blocked, number) == 1) facts["blocked signals"] += std::to_string(number) + " ";
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string text = *variable;
        facts["variable " + text.substr(0, text.find('='))] = text;
    }
    facts["descriptors"] = openDescriptors();
    facts["threads"] = threads();
    return facts;
}

/// Bytes that the process holds on its heap.
inline std::size_t heapBytes() {
#ifdef __SANITIZE_ADDRESS__
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
#endif
}

/// Bytes of memory that the process has resident.
inline std::size_t residentBytes() {
    std::size_t total = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace hosts
