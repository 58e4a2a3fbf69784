#pragma once

#include <velcoran/com.h>

#include <QList>
#include <QString>

#include <optional>

namespace velcoran::com {

/// What is known about a creatable class: one section of a registry file, named by the programmatic identifier.
struct RegistryEntry {
    QString progId;
    Guid classId{};
    QString library;  ///< full path
    Guid typeLibrary{};
    QString typeLibraryVersion;
};

/// $XDG_DATA_HOME/velcoran/registry.ini; ~/.local/share where the variable is unset or no full path.
[[nodiscard]] QString userRegistryPath();
/// The user's file, then velcoran/registry.ini under each of $XDG_DATA_DIRS (/usr/local/share:/usr/share).
[[nodiscard]] QStringList registryPaths();

/// The entry for a programmatic identifier in one file; nothing when it has none or lacks its class or library.
[[nodiscard]] std::optional<RegistryEntry> readEntry(const QString& path, const QString& progId);
/// The first entry in registryPaths(), by programmatic identifier or by class.
[[nodiscard]] std::optional<RegistryEntry> findEntry(const QString& progId);
[[nodiscard]] std::optional<RegistryEntry> findEntry(const Guid& classId);

/// Writes an entry in place of what the file had for the identifier; all else stays byte for byte. The file is replaced
/// whole or not at all, and by one process at a time; a last line that a broken writer has left goes.
/// @throws Error kPathAccess with the file and the reason
void writeEntry(const QString& path, const RegistryEntry& entry);
/// Removes the entry of a library for an identifier and, with the last one, the file. Another library's stays; nothing
/// to remove is no error.
/// @throws Error kPathAccess with the file and the reason
void removeEntry(const QString& path, const QString& progId, const QString& library);

}  // namespace velcoran::com
