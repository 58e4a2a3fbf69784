#pragma once

#include "error_information.h"

#include <velcoran/com.h>

#include <atomic>

namespace velcoran::com {

/// Number of counted objects of this library that are alive.
std::atomic<std::int64_t>& livingObjects();

/// Base of the counted implementations: reference count, identity, error information. Starts with a count of one, which
/// makeObject hands to a Ref.
///
///     class Connection final : public com::Object<IConnection> { ... };
///     com::Ref<IConnection> connection = com::makeObject<Connection>(...);
///
/// Interfaces of which the main one is derived, and marker interfaces, are answered by overriding answersTo.
template <class Main>
class Object : public Main, public IErrorSource {
public:
    Object() { ++livingObjects(); }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    HResult QueryInterface(const Guid& id, void** object) override {
        if (object == nullptr) return kNullPointer;
        *object = nullptr;
        if (id == IErrorSource::kId) {
            *object = static_cast<IErrorSource*>(this);
        } else if (id == IUnknown::kId || id == Main::kId || answersTo(id)) {
            *object = static_cast<Main*>(this);
        } else {
            return kNoInterface;
        }
        AddRef();
        return kOk;
    }
    std::uint32_t AddRef() override { return ++m_count; }
    std::uint32_t Release() override {
        const std::uint32_t left = --m_count;
        if (left == 0) delete this;
        return left;
    }
    HResult LastError(std::int32_t* number, Bstr* description, Bstr* source) override {
        if (number == nullptr || description == nullptr || source == nullptr) return kNullPointer;
        const base::Error* error = threadError();
        *number = error != nullptr ? error->number() : 0;
        *description = error != nullptr ? toText(error->description()).release() : nullptr;
        *source = error != nullptr ? toText(error->source()).release() : nullptr;
        return error != nullptr ? kOk : kFalse;
    }

protected:
    virtual ~Object() { --livingObjects(); }
    /// True for further interfaces that the main one's function table serves.
    [[nodiscard]] virtual bool answersTo(const Guid&) const { return false; }

private:
    std::atomic<std::uint32_t> m_count{1};
};

template <class Implementation, class... Arguments>
[[nodiscard]] Ref<Implementation> makeObject(Arguments&&... arguments) {
    return Ref<Implementation>::adopt(new Implementation(std::forward<Arguments>(arguments)...));
}

}  // namespace velcoran::com
