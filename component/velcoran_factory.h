#pragma once

#include "platform/com/class_factory.h"

namespace velcoran::component {

/// The class factory of clsVelcoran, which also takes the host's objects.
class VelcoranFactory final : public com::ClassFactory, public com::IHostObjects {
public:
    VelcoranFactory();

    com::HResult QueryInterface(const com::Guid& id, void** object) override;
    std::uint32_t AddRef() override { return ClassFactory::AddRef(); }
    std::uint32_t Release() override { return ClassFactory::Release(); }

    com::HResult Register(const com::Guid& classId, com::IClassFactory* factory) override;
    com::HResult Revoke(const com::Guid& classId) override;
};

}  // namespace velcoran::component
