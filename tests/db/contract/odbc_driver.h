#pragma once

#include <QString>

namespace velcoran::tests {

/// The start of a connection text, "Driver={name};", for a driver that the driver manager knows.
/// @throws std::runtime_error with the package to install when it knows none of that name
[[nodiscard]] QString driverText(const QString& name, const QString& package);

}  // namespace velcoran::tests
