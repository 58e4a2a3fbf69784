#pragma once

#include "window_thread.h"

#include "com/host_objects.h"

namespace velcoran::component {

/// What the component keeps in the process between calls: the objects that hosts registered and the report window of
/// the thread that has windows.
struct Component {
    com::HostObjects hostObjects;
    WindowThread window{hostObjects};
};

/// Created at first use, destroyed with the library.
[[nodiscard]] Component& component();

}  // namespace velcoran::component
