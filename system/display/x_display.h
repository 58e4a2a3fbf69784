#pragma once

#include "display_answer.h"

#include <QByteArray>

#include <optional>

namespace velcoran::system {

/// Where an X display's server listens, read from its name by the rules of libxcb:
/// "[protocol/][host]:display[.screen]". A machine's own server has a socket among the kernel's own names and in the
/// file system, and as a last resort a port.
struct XAddress {
    QByteArray path;  ///< the socket's name; empty for none
    QByteArray host;  ///< empty for none
    int display = 0;
    int screen = 0;
};

/// @return nothing for a name that is none
[[nodiscard]] std::optional<XAddress> readXAddress(const QByteArray& name);

/// Sets a whole connection up, with the user's authority for this display, and waits for the answer to a request.
/// @param name  as in DISPLAY
[[nodiscard]] DisplayAnswer askXServer(const QByteArray& name, Deadline deadline);

}  // namespace velcoran::system
