#pragma once

#include "db/connection.h"

#include <functional>

namespace velcoran::tests {

/// Calls on the calling thread.
class DirectCallRunner final : public db::ICallRunner {
public:
    void run(const db::Connection&, std::function<void()> call) override { call(); }
};

}  // namespace velcoran::tests
