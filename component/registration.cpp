#include "registration.h"

#include "com/registry.h"
#include "system/file_name.h"

#include <velcoran/velcoran.h>

#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <string>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace velcoran::component {

namespace {

/// Full path of the library that this code lies in. The loader knows it as it was given, which may have been from
/// another current folder; the system's list of mappings has it whole.
QString libraryPath() {
    Dl_info information{};
    const auto* here = reinterpret_cast<const void*>(&registerComponent);
    if (dladdr(here, &information) == 0) return {};
    if (information.dli_fname[0] == '/') return system::nameText(information.dli_fname);
    std::ifstream mappings("/proc/self/maps");
    for (std::string line; std::getline(mappings, line);) {
        std::uintptr_t first = 0, end = 0;
        const std::size_t path = line.find('/');
        if (path == std::string::npos || std::sscanf(line.c_str(), "%" SCNxPTR "-%" SCNxPTR, &first, &end) != 2)
            continue;
        const auto address = reinterpret_cast<std::uintptr_t>(here);
        if (address >= first && address < end) return system::nameText(QByteArray::fromStdString(line.substr(path)));
    }
    return system::fullName(system::nameText(information.dli_fname));
}

QString progId() { return QString::fromUtf16(kProgIdVelcoran); }

}  // namespace

void registerComponent() {
    com::writeEntry(com::userRegistryPath(), {progId(), kClassVelcoran, libraryPath(), kTypeLibraryVelcoran, u"1.0"_s});
}

void unregisterComponent() { com::removeEntry(com::userRegistryPath(), progId(), libraryPath()); }

}  // namespace velcoran::component
