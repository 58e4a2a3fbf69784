#pragma once

#include "base/error.h"
#include "platform/com/object.h"

#include <velcoran/connection.h>

#include <atomic>
#include <utility>

namespace velcoran::host {

/// Base of what stands around an object of a connection: words of a failure come from whoever failed, the inner object
/// or this one.
template <class Main>
class Decorated : public com::Object<Main> {
public:
    explicit Decorated(com::Ref<Main> inner) : m_inner(std::move(inner)) {}

    com::HResult LastError(std::int32_t* number, com::Bstr* description, com::Bstr* source) override {
        if (m_hasFailed) return com::Object<Main>::LastError(number, description, source);
        const auto errors = m_inner.template as<com::IErrorSource>();
        return errors ? errors->LastError(number, description, source) : com::kFalse;
    }

protected:
    [[nodiscard]] const com::Ref<Main>& inner() const { return m_inner; }
    /// Fails with an error of this object's own.
    template <class Failure>
    com::HResult fail(const Failure& failure) {
        m_hasFailed = true;
        return com::guarded([&failure] { throw failure; });
    }
    /// The inner object is asked: its failure will be its own.
    void startCall() { m_hasFailed = false; }

private:
    com::Ref<Main> m_inner;
    std::atomic<bool> m_hasFailed = false;
};

}  // namespace velcoran::host
