#pragma once

#include "platform/com/object.h"

#include <velcoran/connection.h>

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace velcoran::tests {

/// What goes wrong with a call.
enum class Fault { none, delay, stall, fail, lose };

/// Passes every call on to a real connection and counts them: Execute, OpenRowset, Prepare, and Columns, Run and Fetch
/// of their rows, so also "after every block". At one of them the fault happens: a delay goes on, a stall ends with a
/// cancel, a failure is that call's alone, a lost connection stays lost.
class FaultyConnection final : public com::Object<IConnection> {
public:
    FaultyConnection(com::Ref<IConnection> real, int faultAt, Fault fault)
        : m_real(std::move(real)), m_faultAt(faultAt), m_fault(fault) {}

    [[nodiscard]] int calls() const { return m_calls; }
    [[nodiscard]] bool isStalled() const { return m_isStalled; }

    std::int32_t State() override { return m_real->State(); }
    com::HResult Execute(com::Bstr text, IRows** rows) override;
    com::HResult OpenRowset(com::Bstr text, std::int32_t cursorLocation, std::int32_t cursorType, std::int32_t lockType,
                            IRows** rows) override;
    com::HResult Prepare(com::Bstr text, IStatement** statement) override;
    com::HResult Cancel() override;

    /// Before a call on the connection or its rows. @throws Error, Cancelled
    void beginCall();

protected:
    [[nodiscard]] bool answersTo(const com::Guid& id) const override { return id == IFreeThreadedConnection::kId; }

private:
    void stall();

    com::Ref<IConnection> m_real;
    int m_faultAt;
    Fault m_fault;
    std::atomic<int> m_calls{0};
    std::atomic<bool> m_isLost{false};
    std::atomic<bool> m_isStalled{false};
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isCancelled = false;
};

}  // namespace velcoran::tests
