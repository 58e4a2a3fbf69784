#pragma once

#include <QByteArray>
#include <QFileDevice>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace velcoran::engine {

/// @throws Error kPathAccess with the path and the system's words, always
[[noreturn]] void failToWrite(const QString& file, const QString& words);

/// A file that is written as a stream beside its place and moved there by commit. Without a commit it disappears. What
/// exists and is no file (a device, a pipe) is written directly.
class ExportOutput {
public:
    /// @throws Error kPathAccess
    explicit ExportOutput(const QString& file);
    ~ExportOutput();
    ExportOutput(const ExportOutput&) = delete;
    ExportOutput& operator=(const ExportOutput&) = delete;

    /// @throws Error kPathAccess
    void write(QByteArrayView bytes);
    /// Bytes written so far.
    [[nodiscard]] qint64 size() const { return m_size; }
    /// For a writer of its own; not to be mixed with write.
    [[nodiscard]] QIODevice& device() { return *m_device; }
    /// @throws Error kPathAccess; then the old file stands
    void commit();
    /// @throws Error kPathAccess with what the device says, always
    [[noreturn]] void fail() const;

private:
    void flush();

    QString m_file;
    std::unique_ptr<QFileDevice> m_device;
    QByteArray m_buffer;
    qint64 m_size = 0;
};

/// The same for a library that opens its files by name: a folder of its own beside the place, for this user alone,
/// which disappears with all it holds.
class ExportFolder {
public:
    /// @throws Error kPathAccess
    explicit ExportFolder(const QString& file);
    [[nodiscard]] QString path() const { return m_folder->path(); }
    /// Name of the file that commit moves.
    [[nodiscard]] QString temporaryFile() const { return m_folder->filePath(QStringLiteral("whole")); }
    /// @throws Error kPathAccess; then the old file stands
    void commit();

private:
    void copyToDevice();

    QString m_file;
    QString m_target;  ///< m_file, links followed
    std::unique_ptr<QTemporaryDir> m_folder;
};

}  // namespace velcoran::engine
