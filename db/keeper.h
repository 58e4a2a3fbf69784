#pragma once

#include "system/worker.h"

#include <velcoran/connection.h>

#include <chrono>
#include <list>
#include <mutex>

namespace velcoran::db {

/// How long a window waits for a driver that was asked to cancel before it leaves the run to the keeper.
constexpr std::chrono::milliseconds kCancelPatience{500};

/// Keeps runs whose driver does not answer a cancel, and joins them when the driver has returned. Meanwhile the library
/// must not be unloaded, and the connection takes no other call. A run holds its connection itself and lets go of it
/// when it ends, whether or not anybody asks the keeper by then. All functions may be called from any thread.
class Keeper {
public:
    Keeper() = default;
    /// Waits for nobody: what still runs goes on by itself.
    ~Keeper();
    Keeper(const Keeper&) = delete;
    Keeper& operator=(const Keeper&) = delete;

    /// @param connection  what the run still uses; null when it has done with the driver and only works out its result
    void keep(system::Worker worker, const IConnection* connection);
    /// True while a run on this connection has not come back.
    [[nodiscard]] bool holds(const IConnection* connection);
    /// True while no run is kept.
    [[nodiscard]] bool isEmpty();

private:
    struct Kept {
        system::Worker worker;
        const IConnection* connection;  ///< only compared; alive while the worker is not done
    };

    void joinEnded();

    std::mutex m_mutex;
    std::list<Kept> m_kept;
};

/// The library's one keeper: whether the library may be unloaded is asked of the library. It is never destroyed: a
/// process may end while a run is kept, and the window that asks it may go later than the library's other globals.
[[nodiscard]] Keeper& keeper();

}  // namespace velcoran::db
