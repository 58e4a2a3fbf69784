#pragma once

#include "system/work_progress.h"

#include <functional>
#include <utility>

namespace velcoran::tests {

/// A progress that calls a test whenever it is told.
class ToldProgress final : public system::WorkProgress {
public:
    explicit ToldProgress(std::function<void(ToldProgress&)> told) : m_told(std::move(told)) {}
    void tell(qint64 done, qint64 total) override {
        WorkProgress::tell(done, total);
        m_told(*this);
    }

private:
    std::function<void(ToldProgress&)> m_told;
};

}  // namespace velcoran::tests
