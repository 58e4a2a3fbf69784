#pragma once

namespace velcoran::component {

/// Writes the class, its library and its type library into the user's registry file.
/// @throws Error kPathAccess with the file and the reason
void registerComponent();
/// Removes the entry of this library; another one's stays. @throws Error kPathAccess
void unregisterComponent();

}  // namespace velcoran::component
