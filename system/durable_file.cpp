#include "system/durable_file.h"

#include "base/error.h"
#include "system/file_name.h"

#include <QtGlobal>

#include <dirent.h>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace velcoran::system {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kBufferBytes = 64 * 1024;
constexpr int kNameBytes = 12;  // of chance
constexpr int kMostLinks = 40;  // as many as the system itself follows

constexpr struct {
    int error;
    QStringView words;
} kSystemWords[] = {
    {ENOSPC, u"discul este plin"},           {EDQUOT, u"spațiul rezervat pe disc s-a terminat"},
    {EFBIG, u"fișierul ar fi prea mare"},    {ENOENT, u"dosarul nu există"},
    {ENOTDIR, u"dosarul nu există"},         {EISDIR, u"este un dosar"},
    {EACCES, u"accesul este interzis"},      {EPERM, u"accesul este interzis"},
    {EROFS, u"discul poate fi numai citit"}, {ENAMETOOLONG, u"numele este prea lung"},
    {EIO, u"discul nu mai primește date"},   {ELOOP, u"legătura nu duce nicăieri"},
    {EPIPE, u"nimeni nu mai citește"},       {ENXIO, u"este un socket"},
};

QString wordsOf(int error) {
    for (const auto& one : kSystemWords)
        if (one.error == error) return one.words.toString();
    return qt_error_string(error);
}

QByteArray folderOf(const QByteArray& path) {
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0) return ".";
    return slash == 0 ? QByteArray("/") : path.left(slash);
}

/// A file system or a device that knows no fsync is no failure.
bool isUnknownSync(int error) { return error == EINVAL || error == ENOTSUP || error == EROFS; }

/// Whether a path ends with a name that DurableFile makes.
bool isFreshName(std::string_view path) {
    const std::string_view name = path.substr(path.rfind('/') + 1);
    return name.size() == 1 + 2 * kNameBytes && name.front() == '.' &&
           name.find_first_not_of("0123456789abcdef", 1) == std::string_view::npos;
}

/// Removes a descriptor's file when DurableFile gave it its name.
void removeFresh(int descriptors, const char* descriptor) {
    char path[PATH_MAX];
    const ssize_t length = ::readlinkat(descriptors, descriptor, path, sizeof(path) - 1);
    if (length <= 0) return;
    path[length] = '\0';
    if (isFreshName({path, static_cast<std::size_t>(length)})) ::unlink(path);
}

}  // namespace

void removeUnfinishedFiles() noexcept {
    DIR* descriptors = ::opendir("/proc/self/fd");
    if (descriptors == nullptr) return;
    while (const dirent* entry = ::readdir(descriptors)) removeFresh(::dirfd(descriptors), entry->d_name);
    ::closedir(descriptors);
}

void failToWrite(const QString& file, int error) {
    throw base::Error(base::kPathAccess, u"Fișierul %1 nu poate fi scris: %2"_s.arg(file, wordsOf(error)));
}

DurableFile::DurableFile(const QString& file, Use use) : m_file(file), m_use(use), m_target(nameBytes(file)) {
    resolveTarget();
    if (m_isDevice && use == Use::stream) {
        openDevice();
    } else {
        openBeside(use == Use::named);
    }
    m_buffer.reserve(kBufferBytes);
}

DurableFile::~DurableFile() {
    if (m_descriptor >= 0) ::close(m_descriptor);
    if (!m_name.isEmpty()) ::unlink(m_name.constData());
}

void DurableFile::fail() const { failToWrite(m_file, errno); }

void DurableFile::resolveTarget() {
    struct stat found {};
    for (int links = 0; ::lstat(m_target.constData(), &found) == 0 && S_ISLNK(found.st_mode); ++links) {
        char next[PATH_MAX];
        const ssize_t length = ::readlink(m_target.constData(), next, sizeof(next));
        if (length < 0) fail();
        if (links == kMostLinks) failToWrite(m_file, ELOOP);
        const QByteArray named(next, length);
        m_target = named.startsWith('/') ? named : folderOf(m_target) + '/' + named;
        found = {};
    }
    m_folder = folderOf(m_target);
    if (found.st_mode == 0) return;  // nothing there yet
    if (S_ISDIR(found.st_mode)) failToWrite(m_file, EISDIR);
    if (S_ISSOCK(found.st_mode)) failToWrite(m_file, ENXIO);
    m_isDevice = !S_ISREG(found.st_mode);
    if (m_isDevice) return;
    m_mode = found.st_mode & 07777;
    if (::access(m_target.constData(), W_OK) != 0) fail();
}

void DurableFile::openDevice() {
    m_descriptor = ::open(m_target.constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (m_descriptor < 0) fail();
}

/// A file without a name goes with the process, however that ends. Where the file system has none, or where there is no
/// way to open it again, the file has a name that nobody can guess.
void DurableFile::openBeside(bool isNamed) {
    if (m_isDevice) m_folder = qEnvironmentVariableIsEmpty("TMPDIR") ? QByteArray("/tmp") : qgetenv("TMPDIR");
    if (!isNamed) {
        m_descriptor = ::open(m_folder.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666);
        if (m_descriptor >= 0 && ::access(path().constData(), R_OK | W_OK) == 0) return;
        if (m_descriptor >= 0) ::close(m_descriptor);
        m_descriptor = -1;
    }
    openNamed();
}

void DurableFile::openNamed() {
    for (int tries = 0; tries < 100; ++tries) {
        m_name = freshName();
        m_descriptor = ::open(m_name.constData(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC | O_NOFOLLOW, 0666);
        if (m_descriptor >= 0) return;
        if (errno == EEXIST) continue;
        const int error = errno;
        m_name.clear();
        failToWrite(m_file, error);
    }
    m_name.clear();
    failToWrite(m_file, EEXIST);
}

QByteArray DurableFile::freshName() const {
    unsigned char bytes[kNameBytes];
    if (::getrandom(bytes, sizeof(bytes), 0) != sizeof(bytes)) fail();
    return m_folder + "/." + QByteArray(reinterpret_cast<const char*>(bytes), sizeof(bytes)).toHex();
}

QByteArray DurableFile::path() const {
    return m_name.isEmpty() ? "/proc/self/fd/" + QByteArray::number(m_descriptor) : m_name;
}

void DurableFile::write(QByteArrayView bytes) {
    m_size += bytes.size();
    if (m_buffer.size() + bytes.size() > kBufferBytes) flush();
    if (bytes.size() > kBufferBytes) return writeAll(m_descriptor, bytes.data(), bytes.size());
    m_buffer.append(bytes);
}

void DurableFile::flush() {
    writeAll(m_descriptor, m_buffer.constData(), m_buffer.size());
    m_buffer.resize(0);
}

void DurableFile::writeAll(int descriptor, const char* bytes, qsizetype count) const {
    while (count > 0) {
        const ssize_t written = ::write(descriptor, bytes, static_cast<std::size_t>(count));
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) fail();
        if (written == 0) failToWrite(m_file, EIO);
        bytes += written;
        count -= written;
    }
}

void DurableFile::sync() const {
    if (::fsync(m_descriptor) != 0 && !isUnknownSync(errno)) fail();
}

void DurableFile::giveMode() const {
    if (m_mode != 0 && ::fchmod(m_descriptor, m_mode) != 0 && errno != EPERM && !isUnknownSync(errno)) fail();
}

void DurableFile::close() {
    const int descriptor = m_descriptor;
    m_descriptor = -1;  // closed whatever it says
    if (::close(descriptor) != 0 && errno != EINTR) fail();
}

void DurableFile::commit() {
    flush();
    if (m_isDevice && m_use == Use::stream) {
        sync();
        return close();
    }
    if (m_isDevice) return copyToDevice();
    giveMode();
    sync();
    if (m_name.isEmpty()) {
        const QByteArray name = freshName();
        if (::linkat(AT_FDCWD, path().constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) != 0) fail();
        m_name = name;
    }
    close();
    if (::rename(m_name.constData(), m_target.constData()) != 0) fail();
    m_name.clear();
}

void DurableFile::copyToDevice() {
    if (::lseek(m_descriptor, 0, SEEK_SET) != 0) fail();
    const int device = ::open(m_target.constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    if (device < 0) fail();
    QByteArray piece(kBufferBytes, Qt::Uninitialized);
    try {
        for (;;) {
            const ssize_t count = ::read(m_descriptor, piece.data(), static_cast<std::size_t>(piece.size()));
            if (count < 0 && errno == EINTR) continue;
            if (count < 0) fail();
            if (count == 0) break;
            writeAll(device, piece.constData(), count);
        }
        if (::fsync(device) != 0 && !isUnknownSync(errno)) fail();
    } catch (...) {
        ::close(device);
        throw;
    }
    if (::close(device) != 0) fail();
    close();
}

}  // namespace velcoran::system
