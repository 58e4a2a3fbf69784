#pragma once

#include <velcoran/connection.h>

#include <QString>

#include <chrono>

namespace velcoran::host {

/// A connection whose statements may be silent only for so long: one that has brought no row and no end by then is
/// cancelled through the connection's Cancel and fails with kStatementError and the words "no answer for N seconds".
/// @param limit  not positive for none: the connection itself is returned
[[nodiscard]] com::Ref<IConnection> watchConnection(com::Ref<IConnection> connection, std::chrono::milliseconds limit);

/// Seconds of a command line or a script, at most some three years: a clock counts so far.
[[nodiscard]] std::chrono::milliseconds milliseconds(double seconds);

}  // namespace velcoran::host
