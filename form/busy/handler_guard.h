#pragma once

#include "base/error.h"

#include <functional>

namespace velcoran::form {

/// Every event handler of the window runs inside this guard. Nothing gets out of it, and it knows when the outermost
/// one has returned: only then may controls be destroyed, since a handler may have closed the window in whose control
/// it still runs.
class HandlerGuard {
public:
    /// @param failed  shows what a handler could not handle itself
    /// @param idle    called whenever the outermost handler has returned; throws nothing
    HandlerGuard(std::function<void(const base::Error&)> failed, std::function<void()> idle);

    /// Runs a handler. Cancelled ends it without a word.
    void run(const std::function<void()>& body) noexcept;
    [[nodiscard]] bool isIdle() const { return m_depth == 0; }

    /// Counts as a handler while it lives: for calls that let their errors through.
    class Scope {
    public:
        explicit Scope(HandlerGuard& guard) : m_guard(guard) { ++m_guard.m_depth; }
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        HandlerGuard& m_guard;
    };

private:
    void tell(const base::Error& error) noexcept;

    std::function<void(const base::Error&)> m_failed;
    std::function<void()> m_idle;
    int m_depth = 0;
};

}  // namespace velcoran::form
