#pragma once

#include <QByteArray>
#include <QString>

#include <sys/stat.h>
#include <optional>

namespace velcoran::system {

/// The system's words for a number of errno, in Romanian where there are such.
[[nodiscard]] QString wordsOf(int error);

/// @throws Error kPathAccess, always: the path and the system's words for a number of errno, in Romanian
[[noreturn]] void failToWrite(const QString& file, int error);

/// Removes the named files beside their targets that this process is still writing: for one that ends at once, without
/// its destructors. May be called from any thread.
void removeUnfinishedFiles() noexcept;

/// The one way in which files are written: beside their place and without a name, moved there by commit when every
/// write, flush, fsync and close has said that it worked. Without a commit nothing stays behind, also when the process
/// is ended. A device or a pipe is written to and never replaced; a socket and a folder are refused. The target's own
/// link is followed once, when the file is opened.
class DurableFile {
public:
    enum class Use : std::uint8_t {
        stream,  ///< write() alone; a device is written directly
        byPath,  ///< a library opens path() itself; a device gets the whole at commit
        named,   ///< the same for a library that follows links of the process's own descriptors: the file has a name
    };

    /// @throws Error kPathAccess
    explicit DurableFile(const QString& file, Use use = Use::stream);
    ~DurableFile();
    DurableFile(const DurableFile&) = delete;
    DurableFile& operator=(const DurableFile&) = delete;

    /// @throws Error kPathAccess
    void write(QByteArrayView bytes);
    /// Bytes written so far by write().
    [[nodiscard]] qint64 size() const { return m_size; }
    /// What a library opens for writing; lives as long as this.
    [[nodiscard]] QByteArray path() const;
    /// Where the file is written: the target's folder, for a device that of temporary files.
    [[nodiscard]] const QByteArray& folder() const { return m_folder; }
    /// Only where the file system cannot exchange two names does a folder that fails to be written to the disk leave
    /// the new file.
    /// @throws Error kPathAccess; then the old file stands
    void commit();

private:
    [[noreturn]] void fail() const;
    void resolveTarget();
    void openDevice();
    void openBeside(bool isNamed);
    void openNamed();
    [[nodiscard]] bool hasOtherPath() const;
    void flush();
    void writeAll(int descriptor, const char* bytes, qsizetype count) const;
    void sync() const;
    void giveOwnerAndMode() const;
    void nameIt();
    void moveIntoPlace();
    void copyToDevice();
    void close();
    [[nodiscard]] QByteArray freshName() const;

    QString m_file;
    Use m_use;
    QByteArray m_target;  ///< bytes of m_file, links followed
    QByteArray m_folder;
    QByteArray m_name;                 ///< of the file beside the target; empty while it has none
    std::optional<struct stat> m_old;  ///< what the old file is; empty without one
    bool m_isDevice = false;
    int m_descriptor = -1;
    QByteArray m_buffer;
    qint64 m_size = 0;
};

}  // namespace velcoran::system
