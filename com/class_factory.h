#pragma once

#include "object.h"

#include <functional>

namespace velcoran::com {

/// Class factory over a function that makes one object. Locks are counted in livingObjects.
class ClassFactory : public Object<IClassFactory> {
public:
    using Maker = std::function<Ref<IUnknown>()>;
    explicit ClassFactory(Maker maker) : m_maker(std::move(maker)) {}

    /// @return kNoAggregation when outer is given, kNoInterface, what the maker threw
    HResult CreateInstance(IUnknown* outer, const Guid& id, void** object) override {
        if (object == nullptr) return kNullPointer;
        *object = nullptr;
        if (outer != nullptr) return kNoAggregation;
        return guarded([&] { return m_maker()->QueryInterface(id, object); });
    }
    HResult LockServer(std::int32_t lock) override {
        livingObjects() += lock != 0 ? 1 : -1;
        return kOk;
    }

private:
    Maker m_maker;
};

/// A factory that makes each object anew.
template <class Implementation, class... Arguments>
[[nodiscard]] Ref<IClassFactory> makeFactory(Arguments... arguments) {
    auto maker = [arguments...] {
        return Ref<Implementation>(makeObject<Implementation>(arguments...)).template as<IUnknown>();
    };
    return makeObject<ClassFactory>(std::move(maker)).template as<IClassFactory>();
}

}  // namespace velcoran::com
