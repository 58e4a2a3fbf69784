#include "component.h"
#include "registration.h"
#include "velcoran_factory.h"

#include "db/keeper.h"

// The declarations in the public header carry no visibility: a host includes the same header.
#pragma GCC visibility push(default)
#include <velcoran/velcoran.h>
#pragma GCC visibility pop

namespace com = velcoran::com;

static QString source() { return QString::fromUtf16(velcoran::kProgIdVelcoran); }

__attribute__((visibility("default"))) com::HResult DllGetClassObject(const com::Guid& classId, const com::Guid& id,
                                                                      void** object) {
    if (object == nullptr) return com::kNullPointer;
    *object = nullptr;
    if (classId != velcoran::kClassVelcoran) return com::kClassNotAvailable;
    return com::guarded(
        [&] { return com::makeObject<velcoran::component::VelcoranFactory>()->QueryInterface(id, object); });
}

__attribute__((visibility("default"))) com::HResult DllCanUnloadNow() {
    return com::guarded([] {
        const bool isIdle = velcoran::db::keeper().isEmpty() && com::livingObjects() == 0 &&
                            velcoran::component::component().window.release();
        return isIdle ? com::kOk : com::kFalse;
    });
}

__attribute__((visibility("default"))) com::HResult DllRegisterServer() {
    return com::guardedAs(source(), [] { velcoran::component::registerComponent(); });
}

__attribute__((visibility("default"))) com::HResult DllUnregisterServer() {
    return com::guardedAs(source(), [] { velcoran::component::unregisterComponent(); });
}
