#include "call_runner.h"

#include "activity.h"
#include "hourglass.h"

#include "db/keeper.h"
#include "system/input_shield.h"
#include "system/live_wait.h"

#include <chrono>
#include <optional>
#include <utility>

namespace velcoran::form {

namespace {

/// Almost every statement is done by then.
constexpr std::chrono::milliseconds kQuietTime{333};

}  // namespace

void CallRunner::run(const db::Connection& connection, std::function<void()> call) {
    // The window may get another one meanwhile.
    const db::Connection used = connection;  // NOLINT(performance-unnecessary-copy-initialization)
    const Activity::Work work(m_activity, [used] { used.cancel(); });
    try {
        make(used, call);
    } catch (...) {
        if (m_activity.isUnwanted()) throw base::Cancelled();  // whatever the provider calls it
        throw;
    }
    if (m_activity.isUnwanted()) throw base::Cancelled();
}

void CallRunner::make(const db::Connection& connection, const std::function<void()>& call) {
    if (!connection.isFreeThreaded()) {
        const system::InputShield shield(m_activity, system::InputShield::Others::passed);
        return call();
    }
    std::optional<Hourglass> hourglass;
    const system::LiveCall live{[connection, call] { call(); }, [&hourglass] { hourglass.emplace().set(); }, kQuietTime,
                                db::kCancelPatience};
    std::optional<system::Worker> left = system::runLive(m_activity, live);
    if (left) db::keeper().keep(std::move(*left), connection.interface().get());
}

}  // namespace velcoran::form
