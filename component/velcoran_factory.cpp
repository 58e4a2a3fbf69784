#include "component/velcoran_factory.h"

#include "component/class_velcoran.h"
#include "component/component.h"

namespace velcoran::component {

VelcoranFactory::VelcoranFactory()
    : ClassFactory([] { return com::makeObject<ClassVelcoran>().as<com::IUnknown>(); }) {}

com::HResult VelcoranFactory::QueryInterface(const com::Guid& id, void** object) {
    if (object == nullptr) return com::kNullPointer;
    if (id != com::IHostObjects::kId) return ClassFactory::QueryInterface(id, object);
    *object = static_cast<com::IHostObjects*>(this);
    AddRef();
    return com::kOk;
}

com::HResult VelcoranFactory::Register(const com::Guid& classId, com::IClassFactory* factory) {
    if (factory == nullptr) return com::kInvalidArgument;
    return com::guarded([&] { component().hostObjects.add(classId, com::Ref<com::IClassFactory>(factory)); });
}

com::HResult VelcoranFactory::Revoke(const com::Guid& classId) {
    return com::guarded([&] { return component().hostObjects.remove(classId) ? com::kOk : com::kFalse; });
}

}  // namespace velcoran::component
