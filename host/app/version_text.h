#pragma once

#include <string>

namespace velcoran::host {

/// What --version says: the program, how it was built, and the libraries that it runs with or was built with.
[[nodiscard]] std::string versionText();

}  // namespace velcoran::host
