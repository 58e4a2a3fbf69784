#include "file_system.h"

#include "base/error.h"

#include <sqlite3.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <new>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velcoran::sqlite {

namespace {

constexpr const char* kName = "velcoran";

/// The smallest page of a database. Shorter reads are of its header, which a new file has not.
constexpr int kSmallestPage = 512;

/// The locks of a write-ahead log are bytes of its "-shm" file (https://sqlite.org/walformat.html#locks). With readers
/// on the first one nothing is written back to the database, with readers on the second the log is not begun anew.
constexpr off_t kFirstReadLock = 123;
constexpr off_t kReadLocks = 2;

sqlite3_vfs& baseSystem() { return *sqlite3_vfs_find(nullptr); }

/// A database file. The file of the database's own system follows it in memory.
struct DatabaseFile {
    sqlite3_file file;
    std::string* lockName;  ///< of the "-shm" file
    int locks;              ///< that file, opened; -1 for not yet

    [[nodiscard]] sqlite3_file* inner() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};
static_assert(sizeof(DatabaseFile) % alignof(std::max_align_t) == 0 || sizeof(DatabaseFile) % 8 == 0);

DatabaseFile& self(sqlite3_file* file) { return *reinterpret_cast<DatabaseFile*>(file); }
sqlite3_file* innerOf(sqlite3_file* file) { return self(file).inner(); }
const sqlite3_io_methods& methodsOf(sqlite3_file* file) { return *innerOf(file)->pMethods; }

void closeLocks(DatabaseFile& file) {
    if (file.locks >= 0) ::close(file.locks);
    file.locks = -1;
}

int closeFile(sqlite3_file* file) {
    closeLocks(self(file));
    delete self(file).lockName;
    return methodsOf(file).xClose(innerOf(file));
}

int read(sqlite3_file* file, void* buffer, int amount, sqlite3_int64 offset) {
    const int result = methodsOf(file).xRead(innerOf(file), buffer, amount, offset);
    return result == SQLITE_IOERR_SHORT_READ && amount >= kSmallestPage ? SQLITE_CORRUPT : result;
}

// The provider opens for reading alone.
int refuseWrite(sqlite3_file*, const void*, int, sqlite3_int64) { return SQLITE_READONLY; }
int refuseTruncate(sqlite3_file*, sqlite3_int64) { return SQLITE_READONLY; }

int sync(sqlite3_file* file, int flags) { return methodsOf(file).xSync(innerOf(file), flags); }
int fileSize(sqlite3_file* file, sqlite3_int64* size) { return methodsOf(file).xFileSize(innerOf(file), size); }
int lock(sqlite3_file* file, int level) { return methodsOf(file).xLock(innerOf(file), level); }
int unlock(sqlite3_file* file, int level) { return methodsOf(file).xUnlock(innerOf(file), level); }
int checkReservedLock(sqlite3_file* file, int* isReserved) {
    return methodsOf(file).xCheckReservedLock(innerOf(file), isReserved);
}
int fileControl(sqlite3_file* file, int operation, void* argument) {
    return methodsOf(file).xFileControl(innerOf(file), operation, argument);
}
int sectorSize(sqlite3_file* file) { return methodsOf(file).xSectorSize(innerOf(file)); }
int deviceCharacteristics(sqlite3_file* file) { return methodsOf(file).xDeviceCharacteristics(innerOf(file)); }

/// Opens the file of the locks, as the database itself would: with the rights of the database file, made where it is
/// missing. For a lock of readers, reading is enough.
int openLocks(DatabaseFile& file) {
    if (file.locks >= 0) return SQLITE_OK;
    constexpr std::size_t kSuffix = 4;
    constexpr mode_t kRights = 0777;
    struct stat status = {};
    const std::string database = file.lockName->substr(0, file.lockName->size() - kSuffix);
    if (::stat(database.c_str(), &status) != 0) return SQLITE_CANTOPEN;
    constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW;
    file.locks = ::open(file.lockName->c_str(), O_RDWR | O_CREAT | kFlags, status.st_mode & kRights);
    if (file.locks < 0) file.locks = ::open(file.lockName->c_str(), O_RDONLY | kFlags);
    return file.locks < 0 ? SQLITE_CANTOPEN : SQLITE_OK;
}

/// Says that there is no shared memory to trust, so that the database makes an index of its own from the log, and looks
/// for changes of the log at the start of each statement.
int mapShared(sqlite3_file* file, int, int, int, void volatile** memory) {
    *memory = nullptr;
    const int result = openLocks(self(file));
    return result == SQLITE_OK ? SQLITE_READONLY_CANTINIT : result;
}

/// Locks belong to the open file, so that two connections of one process do not take each other's away.
int lockShared(sqlite3_file* file, int, int, int flags) {
    if ((flags & SQLITE_SHM_EXCLUSIVE) != 0 && (flags & SQLITE_SHM_LOCK) != 0) return SQLITE_BUSY;
    if (self(file).locks < 0) return SQLITE_OK;
    struct flock range = {};
    range.l_type = (flags & SQLITE_SHM_UNLOCK) != 0 ? F_UNLCK : F_RDLCK;
    range.l_whence = SEEK_SET;
    range.l_start = kFirstReadLock;
    range.l_len = kReadLocks;
    return ::fcntl(self(file).locks, F_OFD_SETLK, &range) == 0 ? SQLITE_OK : SQLITE_BUSY;
}

void shareBarrier(sqlite3_file*) { std::atomic_thread_fence(std::memory_order_seq_cst); }

int unmapShared(sqlite3_file* file, int) {
    closeLocks(self(file));
    return SQLITE_OK;
}

/// Without the functions of the third version, which map the file.
constexpr sqlite3_io_methods kMethods = {.iVersion = 2,
                                         .xClose = closeFile,
                                         .xRead = read,
                                         .xWrite = refuseWrite,
                                         .xTruncate = refuseTruncate,
                                         .xSync = sync,
                                         .xFileSize = fileSize,
                                         .xLock = lock,
                                         .xUnlock = unlock,
                                         .xCheckReservedLock = checkReservedLock,
                                         .xFileControl = fileControl,
                                         .xSectorSize = sectorSize,
                                         .xDeviceCharacteristics = deviceCharacteristics,
                                         .xShmMap = mapShared,
                                         .xShmLock = lockShared,
                                         .xShmBarrier = shareBarrier,
                                         .xShmUnmap = unmapShared,
                                         .xFetch = nullptr,
                                         .xUnfetch = nullptr};

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
    sqlite3_vfs& system = baseSystem();
    if ((flags & SQLITE_OPEN_MAIN_DB) == 0) return system.xOpen(&system, name, file, flags, outFlags);
    DatabaseFile& database = self(file);
    database.file.pMethods = nullptr;
    std::unique_ptr<std::string> lockName(new (std::nothrow) std::string(name));
    if (!lockName) return SQLITE_NOMEM;
    lockName->append("-shm");
    const int result = system.xOpen(&system, name, database.inner(), flags, outFlags);
    if (result != SQLITE_OK) return result;
    database.lockName = lockName.release();
    database.locks = -1;
    database.file.pMethods = &kMethods;
    return SQLITE_OK;
}

int registerSystem() {
    static sqlite3_vfs system = baseSystem();
    system.pNext = nullptr;
    system.zName = kName;
    system.szOsFile += static_cast<int>(sizeof(DatabaseFile));
    system.xOpen = openFile;
    return sqlite3_vfs_register(&system, 0);
}

}  // namespace

const char* fileSystemName() {
    static const int result = registerSystem();
    if (result != SQLITE_OK) throw base::Error(base::kProviderFailure, QString::fromUtf8(sqlite3_errstr(result)));
    return kName;
}

}  // namespace velcoran::sqlite
