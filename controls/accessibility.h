#pragma once

#include <memory>

namespace velcoran::controls {

/// Holds the factory that tells assistive programs about date pickers and drop-down lists; it is taken out of the
/// process with the last holder.
[[nodiscard]] std::shared_ptr<void> holdAccessibility();

}  // namespace velcoran::controls
