#pragma once

#include <functional>
#include <thread>

namespace velcoran::system {

/// Starts a thread as every one of ours is started: it takes none of the host's signals, so that a handler of the host
/// runs on threads that the host knows. What a thread's own fault raises reaches it.
/// @throws std::system_error when the system gives no thread
[[nodiscard]] std::thread startThread(std::function<void()> body);

}  // namespace velcoran::system
