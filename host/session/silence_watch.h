#pragma once

#include <velcoran/connection.h>

#include <QString>

#include <atomic>
#include <chrono>
#include <memory>

namespace velcoran::host {

/// A connection whose statements may be silent only for so long: one that has brought no row and no end by then is
/// cancelled through the connection's Cancel and fails with kStatementError and the words "no answer for N seconds".
/// @param limit      not positive for none: the connection itself is returned
/// @param hasFailed  set when a statement has failed so; the window may tell its user something else
[[nodiscard]] com::Ref<IConnection> watchConnection(com::Ref<IConnection> connection, std::chrono::milliseconds limit,
                                                    std::shared_ptr<std::atomic<bool>> hasFailed = {});

/// The words of such a failure.
[[nodiscard]] QString silenceWords(std::chrono::milliseconds limit);

/// Seconds of a command line or a script, at most some three years: a clock counts so far.
[[nodiscard]] std::chrono::milliseconds milliseconds(double seconds);

}  // namespace velcoran::host
