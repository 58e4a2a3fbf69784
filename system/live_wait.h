#pragma once

#include "waiting.h"
#include "worker.h"

#include <chrono>
#include <functional>
#include <optional>

namespace velcoran::system {

/// A call that takes its time.
struct LiveCall {
    /// Made on a thread of its own. It owns what it touches where there is a patience.
    std::function<void()> call;
    /// Called on the waiting thread when events begin to be dispatched; may be empty.
    std::function<void()> dispatching;
    /// How long nothing is dispatched at first.
    std::chrono::milliseconds quietTime{0};
    /// How long the call may go on after it was asked to end; nothing: until it ends.
    std::optional<std::chrono::milliseconds> patience;
};

/// Makes a call on a thread of its own while the window stays alive: after the quiet time events are dispatched, under
/// an InputShield that keeps what the host's windows get. Where the system has no thread to give, the call is made
/// here.
/// @return nothing when the call has ended; its worker when the patience was over before
/// @throws what the call throws
[[nodiscard]] std::optional<Worker> runLive(IWaiting& waiting, const LiveCall& live);

}  // namespace velcoran::system
