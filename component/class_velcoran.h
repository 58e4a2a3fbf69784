#pragma once

#include "com/object.h"

#include <velcoran/velcoran.h>

namespace velcoran::component {

/// The creatable class: no state of its own, every object opens the same window.
class ClassVelcoran final : public com::Object<_clsVelcoran> {
public:
    com::HResult GetTypeInfoCount(std::uint32_t* count) override;
    com::HResult GetTypeInfo(std::uint32_t index, std::uint32_t locale, void** information) override;
    com::HResult GetIDsOfNames(const com::Guid& reserved, char16_t** names, std::uint32_t count, std::uint32_t locale,
                               std::int32_t* identifiers) override;
    com::HResult Invoke(std::int32_t member, const com::Guid& reserved, std::uint32_t locale, std::uint16_t flags,
                        com::CallArguments* arguments, com::Variant* result, com::ExceptionInformation* exception,
                        std::uint32_t* argumentError) override;
    com::HResult Incarca(com::Bstr argTipRaport, IConnection* bConn, com::Date DataProgram, com::Bstr Soc) override;

private:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == com::IDispatch::kId; }
    com::HResult invokeIncarca(const com::CallArguments* arguments, com::ExceptionInformation* exception,
                               std::uint32_t* argumentError);
};

}  // namespace velcoran::component
