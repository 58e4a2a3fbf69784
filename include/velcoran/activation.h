/// Finds and loads the component: header only, nothing to link but the loader (-ldl). A host names a class and gets its
/// factory, or a list of what was looked at and why it would not do.
///
/// The order: a library that the host names itself, alone; else the registry files, the user's
/// $XDG_DATA_HOME/velcoran/registry.ini first, then velcoran/registry.ini under each of $XDG_DATA_DIRS. An entry that
/// leads nowhere is passed over.
///
/// A registry file has a section for each class, named by its programmatic identifier:
///
///     [Velcoran.clsVelcoran]
///     ClassId = {7B2C9D40-61E5-4F3A-8C52-0D9A6E1733F4}
///     Library = "/usr/lib/velcoran/1/libvelcoran.so"
///
/// Blanks around names and values, one pair of quotes around a value, either line end, a byte-order mark, empty lines
/// and comments (# or ;) are taken; letters of section and key names are alike in both cases. A library with no full
/// path is looked for beside the file. Paths are bytes, as the system has them.
#pragma once

#include <velcoran/com.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velcoran::activation {

/// A class of a registry file.
struct Entry {
    std::string progId;
    com::Guid classId{};
    std::string library;                          ///< full path
    std::string typeLibrary, typeLibraryVersion;  ///< as they stand; may be empty
    std::string file;                             ///< where it stands
};

/// A place that was looked at, and why it would not do.
struct Attempt {
    std::string file;
    std::string reason;
};

// --- texts -----------------------------------------------------------------------------------------------------------

inline std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

inline bool isSame(std::string_view one, std::string_view other) {
    if (one.size() != other.size()) return false;
    for (std::size_t at = 0; at < one.size(); ++at)
        if (std::tolower(static_cast<unsigned char>(one[at])) != std::tolower(static_cast<unsigned char>(other[at])))
            return false;
    return true;
}

/// A value without its quotes.
inline std::string_view unquoted(std::string_view text) {
    const bool isQuoted = text.size() >= 2 && text.front() == text.back() && (text[0] == '"' || text[0] == '\'');
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

/// "{7B2C9D40-61E5-4F3A-8C52-0D9A6E1733F4}", with or without braces; nothing for any other text.
inline std::optional<com::Guid> guidOf(std::string_view text) {
    if (text.size() == 38 && text.front() == '{' && text.back() == '}') text = text.substr(1, 36);
    if (text.size() != 36) return std::nullopt;
    unsigned char bytes[16];
    std::size_t digits = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool isDash = at == 8 || at == 13 || at == 18 || at == 23;
        const auto character = static_cast<unsigned char>(text[at]);
        if (isDash != (character == '-')) return std::nullopt;
        if (isDash) continue;
        if (std::isxdigit(character) == 0) return std::nullopt;
        const int value = std::isdigit(character) != 0 ? character - '0' : std::tolower(character) - 'a' + 10;
        bytes[digits / 2] = static_cast<unsigned char>(digits % 2 == 0 ? value << 4 : bytes[digits / 2] | value);
        ++digits;
    }
    com::Guid id{};
    for (int at = 0; at < 4; ++at) id.data1 = id.data1 << 8 | bytes[at];
    id.data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
    id.data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
    std::memcpy(id.data4, bytes + 8, sizeof id.data4);
    return id;
}

// --- files -----------------------------------------------------------------------------------------------------------

/// The path, with a folder in front where it has none of its own. @param folder  empty for the current one
inline std::string fullPath(const std::string& path, std::string folder = {}) {
    if (path.empty() || path.front() == '/') return path;
    char current[PATH_MAX];
    if (folder.empty() && getcwd(current, sizeof current) != nullptr) folder = current;
    return folder + '/' + path;
}

/// The user's registry file; ~/.local/share where $XDG_DATA_HOME is unset or no full path.
inline std::string userRegistryFile() {
    const char* home = std::getenv("XDG_DATA_HOME");
    if (home != nullptr && home[0] == '/') return std::string(home) + "/velcoran/registry.ini";
    const char* user = std::getenv("HOME");
    return std::string(user == nullptr ? "" : user) + "/.local/share/velcoran/registry.ini";
}

/// All registry files, in the order in which they are asked, whether they exist or not.
inline std::vector<std::string> registryFiles() {
    std::vector<std::string> files{userRegistryFile()};
    const char* set = std::getenv("XDG_DATA_DIRS");
    std::string_view folders = set == nullptr || set[0] == '\0' ? "/usr/local/share:/usr/share" : set;
    while (!folders.empty()) {
        const std::size_t end = folders.find(':');
        const std::string_view folder = folders.substr(0, end);
        if (!folder.empty() && folder.front() == '/') files.push_back(std::string(folder) + "/velcoran/registry.ini");
        folders = end == std::string_view::npos ? std::string_view() : folders.substr(end + 1);
    }
    return files;
}

/// Name of a section's first line; nothing for any other line.
inline std::optional<std::string_view> sectionName(std::string_view line) {
    line = trimmed(line);
    if (line.size() < 2 || line.front() != '[' || line.back() != ']') return std::nullopt;
    return trimmed(line.substr(1, line.size() - 2));
}

/// The classes of a registry file, in its order; sections without a class or a library are left out. None where the
/// file cannot be read.
inline std::vector<Entry> readEntries(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) text.erase(0, 3);
    struct Section {
        Entry entry;
        bool hasClass = false;
    };
    std::vector<Section> sections;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string_view line = trimmed(std::string_view(text).substr(start, end - start));
        start = end + 1;
        if (const auto name = sectionName(line)) {
            sections.emplace_back().entry.progId = *name;
            continue;
        }
        const std::size_t equals = line.find('=');
        if (sections.empty() || equals == std::string_view::npos || line[0] == '#' || line[0] == ';') continue;
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string value(unquoted(trimmed(line.substr(equals + 1))));
        Section& section = sections.back();
        if (isSame(key, "ClassId")) {
            const auto id = guidOf(value);
            section.hasClass = id.has_value();
            section.entry.classId = id.value_or(com::Guid{});
        }
        if (isSame(key, "Library")) section.entry.library = value;
        if (isSame(key, "TypeLibrary")) section.entry.typeLibrary = value;
        if (isSame(key, "TypeLibraryVersion")) section.entry.typeLibraryVersion = value;
    }
    std::vector<Entry> entries;
    for (Section& section : sections) {
        if (!section.hasClass || section.entry.library.empty()) continue;
        section.entry.library = fullPath(section.entry.library, file.substr(0, file.rfind('/')));
        section.entry.file = file;
        entries.push_back(std::move(section.entry));
    }
    return entries;
}

// --- libraries -------------------------------------------------------------------------------------------------------

/// The part of a program file's head that says what machine it is for: width of addresses, order of bytes, processor.
/// Empty for what is no program file.
inline std::string machineOf(const std::string& file) {
    char head[20] = {};
    std::ifstream stream(file, std::ios::binary);
    if (!stream.read(head, sizeof head) || std::string_view(head, 4) != "\177ELF") return {};
    return {head[4], head[5], head[18], head[19]};
}

/// Why a library did not load: the loader calls one for another machine missing.
inline std::string loadFailure(const std::string& library, const char* loaderWords) {
    const std::string machine = machineOf(library);
    struct stat found {};
    if (stat(library.c_str(), &found) != 0) return "there is no such file";
    if (!machine.empty() && machine != machineOf("/proc/self/exe")) return "it is built for another architecture";
    return loaderWords == nullptr ? "the loader refuses it" : loaderWords;
}

/// A class that was found: its factory, and the library that it lives in. The library leaves the process with this,
/// provided that it has no living object; otherwise it stays.
class Class {
public:
    Class() = default;
    Class(Class&& other) noexcept
        : m_library(std::move(other.m_library)),
          m_handle(std::exchange(other.m_handle, nullptr)),
          m_factory(std::move(other.m_factory)) {}
    Class& operator=(Class other) noexcept {
        std::swap(m_library, other.m_library);
        std::swap(m_handle, other.m_handle);
        std::swap(m_factory, other.m_factory);
        return *this;
    }
    ~Class() {
        m_factory = nullptr;
        if (m_handle == nullptr) return;
        const auto canUnload = function<com::HResult()>("DllCanUnloadNow");
        if (canUnload == nullptr || canUnload() == com::kOk) dlclose(m_handle);
    }

    explicit operator bool() const { return static_cast<bool>(m_factory); }
    [[nodiscard]] const std::string& library() const { return m_library; }
    [[nodiscard]] const com::Ref<com::IClassFactory>& factory() const { return m_factory; }
    /// Gives the factory away: who holds it, or anything of it, is to let go of it before this goes.
    [[nodiscard]] com::Ref<com::IClassFactory> takeFactory() { return std::move(m_factory); }
    /// A new object of the class; null when it has no such interface.
    template <class Interface>
    [[nodiscard]] com::Ref<Interface> create() const {
        com::Ref<Interface> object;
        if (!m_factory || com::failed(m_factory->CreateInstance(nullptr, Interface::kId, object.receiveVoid())))
            return {};
        return object;
    }
    /// An entry point of the library by its type and name; null when it lacks it.
    template <class Function>
    [[nodiscard]] Function* function(const char* name) const {
        return m_handle == nullptr ? nullptr : reinterpret_cast<Function*>(dlsym(m_handle, name));
    }

    /// Loads a class from a library. @param attempts  gets a line when it fails; the class is empty then
    static Class load(const std::string& library, const com::Guid& classId, std::vector<Attempt>& attempts) {
        Class loaded;
        loaded.m_library = fullPath(library);
        loaded.m_handle = dlopen(loaded.m_library.c_str(), RTLD_NOW | RTLD_LOCAL);
        const auto refuse = [&](const std::string& reason) {
            attempts.push_back({loaded.m_library, reason});
            return Class();
        };
        if (loaded.m_handle == nullptr) return refuse(loadFailure(loaded.m_library, dlerror()));
        const auto getClassObject =
            loaded.function<com::HResult(const com::Guid&, const com::Guid&, void**)>("DllGetClassObject");
        if (getClassObject == nullptr) return refuse("it lacks the entry point DllGetClassObject");
        const com::HResult result = getClassObject(classId, com::IClassFactory::kId, loaded.m_factory.receiveVoid());
        if (!com::failed(result) && loaded.m_factory) return loaded;
        char code[16];
        std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(result));
        return refuse(std::string("it has no such class (") + code + ")");
    }

private:
    std::string m_library;
    void* m_handle = nullptr;
    com::Ref<com::IClassFactory> m_factory;
};

/// The first class in the registry files that a condition wants and that can be loaded.
/// @param attempts  gets a line for each entry that would not do, and for each file without one when none is found
template <class Condition>
Class findRegistered(Condition isWanted, std::vector<Attempt>& attempts) {
    std::vector<Attempt> empty;
    for (const std::string& file : registryFiles()) {
        bool hasEntry = false;
        for (const Entry& entry : readEntries(file)) {
            if (!isWanted(entry)) continue;
            hasEntry = true;
            if (Class found = Class::load(entry.library, entry.classId, attempts)) return found;
            attempts.back().reason += ", named by " + file;
        }
        if (!hasEntry) empty.push_back({file, "it does not name the class"});
    }
    attempts.insert(attempts.end(), empty.begin(), empty.end());
    return {};
}

/// Finds a class by its programmatic identifier in the registry files.
inline Class find(std::string_view progId, std::vector<Attempt>& attempts) {
    return findRegistered([progId](const Entry& entry) { return isSame(entry.progId, progId); }, attempts);
}

/// Finds a class by its own identifier in the registry files.
inline Class find(const com::Guid& classId, std::vector<Attempt>& attempts) {
    return findRegistered([&classId](const Entry& entry) { return entry.classId == classId; }, attempts);
}

/// What was looked at, a line each: "/usr/lib/x.so: there is no such file".
inline std::string wordsOf(const std::vector<Attempt>& attempts) {
    std::string words;
    for (const Attempt& attempt : attempts) words += (words.empty() ? "" : "\n") + attempt.file + ": " + attempt.reason;
    return words;
}

}  // namespace velcoran::activation
