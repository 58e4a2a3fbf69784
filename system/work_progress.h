#pragma once

#include "base/error.h"

#include <QtGlobal>

#include <atomic>

namespace velcoran::system {

/// How far a long work is, and whether it is to end. The work's thread tells it, any other reads and stops it.
class WorkProgress {
public:
    WorkProgress() = default;
    virtual ~WorkProgress() = default;
    WorkProgress(const WorkProgress&) = delete;
    WorkProgress& operator=(const WorkProgress&) = delete;

    /// @param total  0 while nobody knows
    virtual void tell(qint64 done, qint64 total) {
        m_total = total;
        m_done = done;
    }
    [[nodiscard]] qint64 done() const { return m_done; }
    [[nodiscard]] qint64 total() const { return m_total; }

    /// The work is to end with Cancelled.
    void stop() { m_isStopped = true; }
    [[nodiscard]] bool isStopped() const { return m_isStopped.load(std::memory_order_relaxed); }
    /// @throws Cancelled when the work is to end
    void throwIfStopped() const {
        if (isStopped()) throw base::Cancelled();
    }

private:
    std::atomic<qint64> m_done{0};
    std::atomic<qint64> m_total{0};
    std::atomic_bool m_isStopped{false};
};

}  // namespace velcoran::system
