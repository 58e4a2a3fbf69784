#include "line_file.h"

#include "durable_file.h"
#include "file_name.h"

#include <fcntl.h>
#include <unistd.h>
#include <cerrno>

namespace velcoran::system {

LineFile::LineFile(const QString& file) : m_file(file) {
    constexpr mode_t kOwnerOnly = 0600;
    // Without the waiting flag, opening a pipe waits for its reader, perhaps for ever.
    m_descriptor = ::open(nameBytes(file).constData(),
                          O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kOwnerOnly);
    if (m_descriptor < 0) failToWrite(file, errno == ENXIO ? EPIPE : errno);
    const int flags = ::fcntl(m_descriptor, F_GETFL);
    if (flags < 0 || ::fcntl(m_descriptor, F_SETFL, flags & ~O_NONBLOCK) < 0) {
        const int error = errno;
        ::close(m_descriptor);
        failToWrite(file, error);
    }
}

LineFile::~LineFile() { ::close(m_descriptor); }

void LineFile::append(QByteArray line) {
    line.append('\n');
    for (qsizetype at = 0; at < line.size();) {
        const ssize_t count = ::write(m_descriptor, line.constData() + at, static_cast<std::size_t>(line.size() - at));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) failToWrite(m_file, errno);
        at += count;
    }
}

}  // namespace velcoran::system
