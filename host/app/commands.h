#pragma once

#include "command_line.h"

namespace velcoran::host {

/// The commands of the program, each with its exit status. An application object exists.
/// @throws Error for what goes wrong
[[nodiscard]] int runDemo(const Options& options);
[[nodiscard]] int runOpen(const Options& options);
[[nodiscard]] int runExport(const Options& options);
[[nodiscard]] int runDriveCommand(const Options& options);
[[nodiscard]] int runSampleDatabase(const Options& options);
[[nodiscard]] int runRegister(const Options& options);
[[nodiscard]] int runUnregister(const Options& options);

}  // namespace velcoran::host
