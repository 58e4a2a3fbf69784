#pragma once

namespace velcoran::component {

/// Writes the class, its library and its type library into the user's registry file.
/// @throws Error kPathAccess
void registerComponent();
/// Removes the same entries. @throws Error kPathAccess
void unregisterComponent();

}  // namespace velcoran::component
