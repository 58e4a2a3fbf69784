#include "form/handler_guard.h"

namespace velcoran::form {

HandlerGuard::HandlerGuard(std::function<void(const base::Error&)> failed, std::function<void()> idle)
    : m_failed(std::move(failed)), m_idle(std::move(idle)) {}

HandlerGuard::Scope::~Scope() {
    if (--m_guard.m_depth == 0) m_guard.m_idle();
}

void HandlerGuard::run(const std::function<void()>& body) noexcept {
    const Scope scope(*this);
    try {
        body();
    } catch (const base::Cancelled&) {
        // The user stopped it: nothing to say.
    } catch (...) {
        m_failed(base::currentError());
    }
}

}  // namespace velcoran::form
