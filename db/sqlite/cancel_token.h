#pragma once

#include <atomic>

namespace velcoran::sqlite {

/// A wish to stop one statement; set from any thread, taken by the thread that runs the statement.
class CancelToken {
public:
    void request() { m_isRequested.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isRequested() const { return m_isRequested.load(std::memory_order_relaxed); }
    /// Takes the wish: true once for each run of requests.
    [[nodiscard]] bool take() { return m_isRequested.exchange(false, std::memory_order_relaxed); }

private:
    std::atomic<bool> m_isRequested{false};
};

}  // namespace velcoran::sqlite
