#include "handler_guard.h"

namespace velcoran::form {

HandlerGuard::HandlerGuard(std::function<void(const base::Error&)> failed, std::function<void()> idle)
    : m_failed(std::move(failed)), m_idle(std::move(idle)) {}

HandlerGuard::Scope::~Scope() {
    if (--m_guard.m_depth == 0) m_guard.m_idle();
}

/// Without the memory for a message the failure stays untold; the host's process lives on.
void HandlerGuard::tell(const base::Error& error) noexcept {
    try {
        m_failed(error);
    } catch (...) {  // nobody is left to tell
    }
}

void HandlerGuard::run(const std::function<void()>& body) noexcept {
    const Scope scope(*this);
    try {
        body();
    } catch (const base::Cancelled&) {
        // The user stopped it: nothing to say.
    } catch (...) {
        tell(base::currentError());
    }
}

}  // namespace velcoran::form
