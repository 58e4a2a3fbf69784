#pragma once

#include "system/durable_file.h"

#include <QString>

#include <string>

namespace velcoran::host {

/// The file of a sample, which somebody else's code opens by its name: written beside its place and moved there when it
/// is whole; one that is not moved is removed.
class SampleFile {
public:
    /// @throws Error kPathAccess when the file's folder cannot be written
    explicit SampleFile(const QString& path) : m_path(path), m_file(path, system::DurableFile::Use::named) {}

    /// Where to write, as the system's calls take it.
    [[nodiscard]] std::string temporaryPath() const { return m_file.path().toStdString(); }
    /// Moves it to its place, over an older one. @throws Error kPathAccess
    void commit() { m_file.commit(); }
    /// @param words  what the system said
    [[noreturn]] void fail(const QString& words) const;

private:
    QString m_path;
    system::DurableFile m_file;
};

}  // namespace velcoran::host
