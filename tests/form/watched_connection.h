#pragma once

#include "com/object.h"

#include <velcoran/connection.h>

namespace velcoran::tests {

/// Passes every call on to a real connection, in small blocks, and says so before: State, Execute, OpenRowset, Prepare,
/// and Columns, Run and Fetch of their rows.
class WatchedConnection : public com::Object<IConnection> {
public:
    explicit WatchedConnection(com::Ref<IConnection> real) : m_real(std::move(real)) {}

    std::int32_t State() override;
    com::HResult Execute(com::Bstr text, IRows** rows) override;
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override;
    com::HResult Prepare(com::Bstr text, IStatement** statement) override;
    com::HResult Cancel() override { return m_real->Cancel(); }

    /// Before a call on the connection or its rows. What it throws gets out, as from a host that catches nothing.
    virtual void enterCall(const char*) {}
    /// After that. @throws what the call is to fail with, as error information
    virtual void beginCall(const char*) {}

private:
    com::Ref<IConnection> m_real;
};

}  // namespace velcoran::tests
