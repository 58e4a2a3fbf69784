/// A base for a host's own objects, so that it writes the functions of an interface and nothing else: reference count,
/// QueryInterface, and what com::IErrorSource tells of the last failure.
#pragma once

#include <velcoran/com.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <utility>

namespace velcoran::com {

/// @tparam Main     the interface that is implemented
/// @tparam Further  interfaces that Main is derived from, and those without a function of their own
///
///     class Connection final : public com::HostObject<IConnection, IFreeThreadedConnection> { ... };
///     com::Ref<IConnection> connection = com::Ref<IConnection>::adopt(new Connection);
template <class Main, class... Further>
class HostObject : public Main, public IErrorSource {
public:
    HostObject() = default;
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;

    HResult QueryInterface(const Guid& id, void** object) override {
        if (object == nullptr) return kNullPointer;
        *object = nullptr;
        if (id == IErrorSource::kId)
            *object = static_cast<IErrorSource*>(this);
        else if (id == IUnknown::kId || id == Main::kId || ((id == Further::kId) || ...))
            *object = static_cast<Main*>(this);
        if (*object == nullptr) return kNoInterface;
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
        const std::lock_guard<std::mutex> lock(m_mutex);
        *number = m_number;
        *description = allocateText(m_description);
        *source = allocateText(m_source);
        return m_number == 0 ? kFalse : kOk;
    }

protected:
    virtual ~HostObject() = default;

    /// Keeps what went wrong for whoever asks. @return what the failing function returns
    HResult fail(std::int32_t number, std::u16string description, std::u16string source = {}) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_number = number;
        m_description = std::move(description);
        m_source = std::move(source);
        return resultOfNumber(number);
    }

private:
    std::atomic<std::uint32_t> m_count{1};
    std::mutex m_mutex;
    std::int32_t m_number = 0;
    std::u16string m_description, m_source;
};

}  // namespace velcoran::com
