#pragma once

#include <QString>

#include <string>

namespace velcoran::host {

/// A file that is written beside its place and moved there when it is whole; one that is not moved is removed.
class SampleFile {
public:
    /// @throws Error kPathAccess when the file's folder cannot be written
    explicit SampleFile(const QString& path);
    ~SampleFile();
    SampleFile(const SampleFile&) = delete;
    SampleFile& operator=(const SampleFile&) = delete;

    /// Where to write, as the system's calls take it.
    [[nodiscard]] const std::string& temporaryPath() const { return m_temporaryPath; }
    /// Moves it to its place, over an older one. @throws Error kPathAccess
    void commit();
    /// @param words  what the system said
    [[noreturn]] void fail(const QString& words) const;

private:
    std::string m_path;
    std::string m_temporaryPath;
};

}  // namespace velcoran::host
