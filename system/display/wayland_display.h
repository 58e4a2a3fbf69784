#pragma once

#include "display_answer.h"

#include <QByteArray>

namespace velcoran::system {

/// The socket of the user's compositor: WAYLAND_DISPLAY ("wayland-0" where it is not set), below XDG_RUNTIME_DIR unless
/// it is absolute. Empty where that says nothing.
[[nodiscard]] QByteArray waylandSocketPath();

/// Connects, asks what the compositor has and waits for the answer. One that has no surfaces, no shared memory or no
/// shell that Qt knows shows no window. A connection that the process has inherited (WAYLAND_SOCKET) cannot be asked
/// without taking it from its client: it is refused.
[[nodiscard]] DisplayAnswer askCompositor(const QByteArray& path, Deadline deadline);

}  // namespace velcoran::system
