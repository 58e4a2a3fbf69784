#pragma once

#include "db/worker.h"

#include <velcoran/connection.h>

#include <chrono>
#include <list>
#include <mutex>

namespace velcoran::db {

/// How long a window waits for a driver that was asked to cancel before it leaves the run to the keeper.
constexpr std::chrono::milliseconds kCancelPatience{400};

/// Keeps runs whose driver does not answer a cancel, and joins them when the driver has returned. Meanwhile the library
/// must not be unloaded, and the connection takes no other call. A process may end without them.
class Keeper {
public:
    Keeper() = default;
    ~Keeper();
    Keeper(const Keeper&) = delete;
    Keeper& operator=(const Keeper&) = delete;

    /// @param connection  what the run uses; held until the run has ended
    void keep(Worker worker, com::Ref<IConnection> connection);
    /// True while a run on this connection has not come back.
    [[nodiscard]] bool holds(const IConnection* connection);
    /// True while no run is kept.
    [[nodiscard]] bool isEmpty();

private:
    struct Kept {
        Worker worker;
        com::Ref<IConnection> connection;
    };

    void joinEnded();

    std::mutex m_mutex;
    std::list<Kept> m_kept;
};

/// The library's one keeper: whether the library may be unloaded is asked of the library.
[[nodiscard]] Keeper& keeper();

}  // namespace velcoran::db
