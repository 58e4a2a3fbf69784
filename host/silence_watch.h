#pragma once

#include <velcoran/connection.h>

#include <chrono>

namespace velcoran::host {

/// A connection whose calls may be silent only for so long: one that has brought no row and no end by then is cancelled
/// through the connection's Cancel and fails with kProviderFailure and the words "no answer for N seconds".
/// @param limit  not positive for none: the connection itself is returned
[[nodiscard]] com::Ref<IConnection> watchConnection(com::Ref<IConnection> connection, std::chrono::milliseconds limit);

}  // namespace velcoran::host
