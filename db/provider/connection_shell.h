#pragma once

#include "com/object.h"
#include "errors.h"

#include <velcoran/connection.h>

namespace velcoran::provider {

/// A provider's connection as its callers see it. It answers to IFreeThreadedConnection; what fails behind it becomes a
/// code and the thread's error information.
class ConnectionShell : public com::Object<IConnection> {
public:
    std::int32_t State() final { return isOpen() ? kStateOpen : kStateClosed; }
    com::HResult Execute(com::Bstr text, IRows** rows) final;
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) final;
    com::HResult Prepare(com::Bstr text, IStatement** statement) final;
    com::HResult Cancel() final;

protected:
    [[nodiscard]] virtual bool isOpen() const = 0;
    /// Prepares a statement: its columns are known then. @throws Error; Cancelled
    [[nodiscard]] virtual com::Ref<IStatement> prepare(const QString& text) = 0;
    /// Runs a statement at once. @throws Error; Cancelled
    [[nodiscard]] virtual com::Ref<IStatement> run(const QString& text) = 0;
    /// Makes what runs or waits fail soon. Any thread.
    virtual void stopAll() noexcept = 0;

    [[nodiscard]] bool answersTo(const com::Guid& id) const final { return id == IFreeThreadedConnection::kId; }
};

/// The object behind a connection of a provider's own class. @throws Error kInvalidProcedureCall when it is not one
template <class Own>
[[nodiscard]] Own& ownConnection(const com::Ref<IConnection>& connection) {
    auto* own = dynamic_cast<Own*>(connection.get());
    if (own == nullptr) throw foreignConnectionError();
    return *own;
}

}  // namespace velcoran::provider
