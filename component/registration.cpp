#include "component/registration.h"

#include "platform/com/registry.h"

#include <velcoran/velcoran.h>

#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace velcoran::component {

namespace {

/// Full path of the library that this code lies in.
QString libraryPath() {
    Dl_info information{};
    if (dladdr(reinterpret_cast<const void*>(&registerComponent), &information) == 0) return {};
    return QFileInfo(QFile::decodeName(information.dli_fname)).absoluteFilePath();
}

QString progId() { return QString::fromUtf16(kProgIdVelcoran); }

}  // namespace

void registerComponent() {
    com::writeEntry(com::userRegistryPath(), {progId(), kClassVelcoran, libraryPath(), kTypeLibraryVelcoran, u"1.0"_s});
}

void unregisterComponent() { com::removeEntry(com::userRegistryPath(), progId()); }

}  // namespace velcoran::component
