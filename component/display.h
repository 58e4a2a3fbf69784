#pragma once

namespace velcoran::component {

/// True where an application object can have windows. The toolkit ends the process when it brings one up without a
/// display, so it is asked for first.
[[nodiscard]] bool hasDisplay();

}  // namespace velcoran::component
