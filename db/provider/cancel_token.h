#pragma once

#include <atomic>

namespace velcoran::provider {

/// A wish to stop what one statement does; set from any thread, taken by the call that fails because of it.
class CancelToken {
public:
    void request() { m_isRequested.store(true); }
    [[nodiscard]] bool isRequested() const { return m_isRequested.load(std::memory_order_relaxed); }
    /// Takes the wish: true once for each run of requests.
    bool take() { return m_isRequested.exchange(false); }

private:
    std::atomic<bool> m_isRequested{false};
};

}  // namespace velcoran::provider
