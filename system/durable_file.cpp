#include "durable_file.h"

#include "base/error.h"
#include "file_name.h"
#include "write_signals.h"

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
    {ENOSPC, u"discul este plin"},
    {EDQUOT, u"spațiul rezervat pe disc s-a terminat"},
    {EFBIG, u"fișierul ar fi prea mare"},
    {ENOENT, u"dosarul nu există"},
    {ENOTDIR, u"dosarul nu există"},
    {EISDIR, u"este un dosar"},
    {EACCES, u"accesul este interzis"},
    {EPERM, u"accesul este interzis"},
    {EROFS, u"discul poate fi numai citit"},
    {ENAMETOOLONG, u"numele este prea lung"},
    {EIO, u"discul nu mai primește date"},
    {ELOOP, u"legătura nu duce nicăieri"},
    {EPIPE, u"nimeni nu mai citește"},
    {ESOCKTNOSUPPORT, u"este un socket"},
    {ENXIO, u"aparatul lipsește"},
    {ENODEV, u"aparatul lipsește"},
    {EMFILE, u"prea multe fișiere deschise"},
    {ENFILE, u"prea multe fișiere deschise"},
    {ENOMEM, u"memoria nu ajunge"},
    {ETXTBSY, u"fișierul este în lucru"},
    {EBUSY, u"fișierul este în lucru"},
    {ESTALE, u"fișierul a fost înlocuit între timp"},
};

QByteArray folderOf(const QByteArray& path) {
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0) return ".";
    return slash == 0 ? QByteArray("/") : path.left(slash);
}

QByteArray descriptorPath(int descriptor) { return "/proc/self/fd/" + QByteArray::number(descriptor); }

/// A file system or a device that knows no such call is no failure.
bool isUnknown(int error) { return error == EINVAL || error == ENOTSUP || error == ENOSYS || error == EROFS; }

bool isDevice(mode_t mode) { return S_ISCHR(mode) || S_ISBLK(mode) || S_ISFIFO(mode); }

/// The folder of a file, to have its names written to the disk. A folder that may be written and not read cannot be
/// asked for that.
class Folder {
public:
    explicit Folder(const QByteArray& path)
        : m_descriptor(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
          m_isUsable(m_descriptor >= 0 || errno == EACCES) {}
    ~Folder() {
        if (m_descriptor >= 0) ::close(m_descriptor);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    [[nodiscard]] bool isUsable() const { return m_isUsable; }
    /// @return false with errno set
    [[nodiscard]] bool sync() const { return m_descriptor < 0 || ::fsync(m_descriptor) == 0 || isUnknown(errno); }

private:
    int m_descriptor;
    bool m_isUsable;
};

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

QString wordsOf(int error) {
    for (const auto& one : kSystemWords)
        if (one.error == error) return one.words.toString();
    return qt_error_string(error);
}

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
    m_buffer.reserve(kBufferBytes);
    resolveTarget();
    if (m_isDevice && use == Use::stream) {
        openDevice();
    } else {
        openBeside(use == Use::named);
    }
}

DurableFile::~DurableFile() {
    if (m_descriptor >= 0) ::close(m_descriptor);
    if (!m_name.isEmpty()) ::unlink(m_name.constData());
}

void DurableFile::fail() const { failToWrite(m_file, errno); }

void DurableFile::resolveTarget() {
    struct stat found {};
    // Links of the system's own lead to pipes that have no name ("/dev/stdout"), so the end is looked at first.
    if (::stat(m_target.constData(), &found) == 0) {
        if (S_ISDIR(found.st_mode)) failToWrite(m_file, EISDIR);
        if (S_ISSOCK(found.st_mode)) failToWrite(m_file, ESOCKTNOSUPPORT);
        m_isDevice = isDevice(found.st_mode);
        if (m_isDevice) return;
    }
    found = {};
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
    if (!S_ISREG(found.st_mode)) failToWrite(m_file, ESTALE);
    m_old = found;
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
        if (m_descriptor >= 0 && hasOtherPath()) return;
        if (m_descriptor >= 0) ::close(m_descriptor);
        m_descriptor = -1;
    }
    openNamed();
}

/// Whoever could not read the old file cannot read the new one meanwhile; commit gives it the old one's mode.
void DurableFile::openNamed() {
    const mode_t mode = m_old ? 0600 : 0666;
    for (int tries = 0; tries < 100; ++tries) {
        m_name = freshName();
        m_descriptor = ::open(m_name.constData(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC | O_NOFOLLOW, mode);
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

/// The way to an open file that needs no name.
QByteArray DurableFile::path() const {
    const bool isByName = m_use == Use::named || (!m_name.isEmpty() && !hasOtherPath());
    return isByName ? m_name : descriptorPath(m_descriptor);
}

bool DurableFile::hasOtherPath() const { return ::access(descriptorPath(m_descriptor).constData(), R_OK | W_OK) == 0; }

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
    const WriteSignals held;
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
    if (::fsync(m_descriptor) != 0 && !isUnknown(errno)) fail();
}

/// The old file's owner and group where the process may give them; else the new group gets no more than everybody.
void DurableFile::giveOwnerAndMode() const {
    if (!m_old) return;
    mode_t mode = m_old->st_mode & 07777;
    struct stat fresh {};
    if (::fstat(m_descriptor, &fresh) != 0) fail();
    const bool isSame = fresh.st_uid == m_old->st_uid && fresh.st_gid == m_old->st_gid;
    if (!isSame && ::fchown(m_descriptor, m_old->st_uid, m_old->st_gid) != 0) {
        mode &= 01777;  // rights of another user's program are not given on
        const bool isGroupSame = fresh.st_gid == m_old->st_gid || ::fchown(m_descriptor, -1, m_old->st_gid) == 0;
        if (!isGroupSame) mode = (mode & ~070U) | ((mode & 07U) << 3U);
    }
    if (::fchmod(m_descriptor, mode) != 0 && errno != EPERM && !isUnknown(errno)) fail();
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
    giveOwnerAndMode();
    sync();
    nameIt();
    close();
    moveIntoPlace();
}

/// Gives the whole file a name for its last step; one that had a name all the time must still have it.
void DurableFile::nameIt() {
    if (m_name.isEmpty()) {
        const QByteArray name = freshName();
        const QByteArray unnamed = descriptorPath(m_descriptor);
        if (::linkat(AT_FDCWD, unnamed.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) != 0) fail();
        m_name = name;
        return;
    }
    struct stat ours {};
    struct stat named {};
    if (::fstat(m_descriptor, &ours) != 0 || ::lstat(m_name.constData(), &named) != 0) fail();
    if (ours.st_dev != named.st_dev || ours.st_ino != named.st_ino) failToWrite(m_file, ESTALE);
}

/// The two files change their names, so that the old one can come back when the folder cannot be written to the disk.
void DurableFile::moveIntoPlace() {
    const Folder folder(m_folder);
    if (!folder.isUsable()) fail();
    const char* name = m_name.constData();
    const char* target = m_target.constData();
    const bool isExchanged = m_old && ::renameat2(AT_FDCWD, name, AT_FDCWD, target, RENAME_EXCHANGE) == 0;
    if (!isExchanged && m_old && errno != ENOENT && !isUnknown(errno)) fail();
    if (!isExchanged && ::rename(name, target) != 0) fail();
    const bool isDone = folder.sync() && (!isExchanged || ::unlink(name) == 0);
    const int error = errno;
    if (!isDone && isExchanged && ::renameat2(AT_FDCWD, name, AT_FDCWD, target, RENAME_EXCHANGE) != 0) fail();
    if (isDone || !isExchanged) m_name.clear();
    if (isDone) return;
    if (!m_old && ::unlink(target) != 0) fail();
    failToWrite(m_file, error);
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
        if (::fsync(device) != 0 && !isUnknown(errno)) fail();
    } catch (...) {
        ::close(device);
        throw;
    }
    if (::close(device) != 0) fail();
    close();
}

}  // namespace velcoran::system
