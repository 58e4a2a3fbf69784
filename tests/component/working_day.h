#pragma once

#include <velcoran/com.h>

namespace velcoran::tests {

/// The host's working date: 15 March 2026.
inline constexpr com::Date kDay = 46096;

}  // namespace velcoran::tests
