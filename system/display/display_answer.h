#pragma once

#include "stream_socket.h"

#include <cstdint>
#include <optional>

namespace velcoran::system {

/// Why no window can be shown.
enum class DisplayProblem : std::uint8_t {
    UnknownPlatform,  ///< no platform of Qt's that can be looked at beforehand
    NoPlugin,         ///< Qt's plugin for it is missing or cannot be loaded
    NoServer,         ///< nobody listens at its address, or the address is none
    NoAnswer,         ///< the server is silent for two seconds
    Refusal,          ///< the server takes no such client
    BrokenOff,        ///< the server ends the connection before it answered
    NoScreen,         ///< the server has nothing to show a window on
    ForeignRights,    ///< the process runs with another user's rights, with which Qt ends it
    NoDescriptors,    ///< the process has too few descriptors left for a connection
    QtFailure,        ///< Qt could not open what had answered a moment ago
};

/// What a display server said: a connection that keeps it where it is, or why there is none.
struct DisplayAnswer {
    std::optional<StreamSocket> connection;
    DisplayProblem problem = DisplayProblem::NoServer;  ///< meaningful without a connection
};

[[nodiscard]] inline bool isPast(Deadline deadline) { return std::chrono::steady_clock::now() >= deadline; }
/// What a server that broke off, or said nothing until the deadline, did.
[[nodiscard]] inline DisplayProblem unanswered(Deadline deadline) {
    return isPast(deadline) ? DisplayProblem::NoAnswer : DisplayProblem::BrokenOff;
}

}  // namespace velcoran::system
