#pragma once

#include "com/class_factory.h"

#include <velcoran/window.h>

namespace velcoran::component {

/// The class factory of clsVelcoran, which also takes the host's objects and answers for the window.
class VelcoranFactory final : public com::ClassFactory, public com::IHostObjects, public IReportWindow {
public:
    VelcoranFactory();

    com::HResult QueryInterface(const com::Guid& id, void** object) override;
    std::uint32_t AddRef() override { return ClassFactory::AddRef(); }
    std::uint32_t Release() override { return ClassFactory::Release(); }

    com::HResult Register(const com::Guid& classId, com::IClassFactory* factory) override;
    com::HResult Revoke(const com::Guid& classId) override;

    com::HResult Advise(IWindowEvents* events) override;
    com::HResult Close() override;
    com::HResult Dispatch(std::uint32_t milliseconds) override;
    com::HResult Fence(IConnection* connection, IConnection** fenced) override;
};

}  // namespace velcoran::component
