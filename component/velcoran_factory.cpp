#include "velcoran_factory.h"

#include "class_velcoran.h"
#include "component.h"
#include "db/fence.h"

namespace velcoran::component {

namespace {

const QString kSource = QString::fromUtf16(kProgIdVelcoran);

}  // namespace

VelcoranFactory::VelcoranFactory()
    : ClassFactory([] { return com::makeObject<ClassVelcoran>().as<com::IUnknown>(); }) {}

com::HResult VelcoranFactory::QueryInterface(const com::Guid& id, void** object) {
    if (object == nullptr) return com::kNullPointer;
    if (id == com::IHostObjects::kId)
        *object = static_cast<com::IHostObjects*>(this);
    else if (id == IReportWindow::kId)
        *object = static_cast<IReportWindow*>(this);
    else
        return ClassFactory::QueryInterface(id, object);
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

com::HResult VelcoranFactory::Advise(IWindowEvents* events) {
    return com::guardedAs(kSource, [&] { component().window.advise(com::Ref<IWindowEvents>(events)); });
}

com::HResult VelcoranFactory::Close() {
    return com::guardedAs(kSource, [] { return component().window.close() ? com::kOk : com::kFalse; });
}

com::HResult VelcoranFactory::Dispatch(std::uint32_t milliseconds) {
    return com::guarded(
        [=] { return component().window.dispatch(std::chrono::milliseconds(milliseconds)) ? com::kOk : com::kFalse; });
}

com::HResult VelcoranFactory::Fence(IConnection* connection, IConnection** fenced) {
    if (fenced == nullptr) return com::kNullPointer;
    *fenced = nullptr;
    if (connection == nullptr) return com::kInvalidArgument;
    return com::guardedAs(kSource, [&] { *fenced = db::fenceConnection(com::Ref<IConnection>(connection)).release(); });
}

}  // namespace velcoran::component
