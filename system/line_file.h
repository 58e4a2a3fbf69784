#pragma once

#include <QByteArray>
#include <QString>

namespace velcoran::system {

/// A file that lines are added to, for others to read while it grows: each line is whole and in the file at once,
/// behind what others have added meanwhile. A file that is made is its owner's alone. Not for what must not be lost:
/// nothing waits for the disk.
class LineFile {
public:
    /// @throws Error kPathAccess, for a pipe that nobody reads too
    explicit LineFile(const QString& file);
    ~LineFile();
    LineFile(const LineFile&) = delete;
    LineFile& operator=(const LineFile&) = delete;

    /// @param line  in UTF-8, without its end
    /// @throws Error kPathAccess
    void append(QByteArray line);

private:
    QString m_file;
    int m_descriptor = -1;
};

}  // namespace velcoran::system
