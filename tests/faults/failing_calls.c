/* Stands in front of the system's calls and lets one of them go wrong.
 *
 *   FAULT_FOLDERS  folders, with ":" between them: only calls on files that lie there count, named or not; fsync of
 *                  such a folder itself too
 *   FAULT_CALL     which calls count: write, pwrite, writev, fflush, fclose, fsync, fdatasync, close, rename (an
 *                  exchange too), link, unlink (of hidden names), fchmod, thread, one-thread (of the program's own)
 *   FAULT_AT       the number of the call that goes wrong, from 1; a thread fails from this one on
 *   FAULT_HOW      the number of the error; "short" for a write that takes half; "hold:N" waits N milliseconds and
 *                  goes on
 *   FAULT_MARK     a file that is made when a call is held
 *   FAULT_COUNT    a file that gets the number of calls at the end
 *
 * Streams of files that count are led through write() here, so that a write that fails within fprintf, fflush or fclose
 * fails as it does on a full disk: the stream remembers it.
 */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdarg.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <time.h>
#include <unistd.h>

#define REAL(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))

static atomic_long g_count;

/* --- which calls count, and what becomes of them */

static int is_inside(const char* path) {
    const char* folders = getenv("FAULT_FOLDERS");
    while (folders != NULL && *folders != '\0') {
        const size_t length = strcspn(folders, ":");
        if (strncmp(path, folders, length) == 0 && (path[length] == '/' || path[length] == '\0')) return 1;
        folders += length + (folders[length] == ':');
    }
    return 0;
}

static int counts_as(int descriptor, mode_t type) {
    char link[64];
    char path[4096];
    struct stat found;
    const int error = errno;
    snprintf(link, sizeof(link), "/proc/self/fd/%d", descriptor);
    const ssize_t length = readlink(link, path, sizeof(path) - 1);
    const int isWanted = length > 0 && fstat(descriptor, &found) == 0 && (found.st_mode & S_IFMT) == type;
    errno = error;
    if (!isWanted) return 0;
    path[length] = '\0';
    return is_inside(path);
}

static int counts(int descriptor) { return counts_as(descriptor, S_IFREG); }

static int counts_path(const char* path) {
    char whole[4096];
    if (path[0] == '/') return is_inside(path);
    if (getcwd(whole, sizeof(whole) / 2) == NULL) return 0;
    strcat(whole, "/");
    return is_inside(strncat(whole, path, sizeof(whole) / 2 - 1));
}

static int is_kind(const char* kind) {
    const char* wanted = getenv("FAULT_CALL");
    return wanted != NULL && strcmp(wanted, kind) == 0;
}

/* Waits without being woken by signals. */
static void hold(long milliseconds) {
    const char* mark = getenv("FAULT_MARK");
    if (mark != NULL) REAL(close)(open(mark, O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    struct timespec left = {milliseconds / 1000, milliseconds % 1000 * 1000000};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

enum Fate { GOES, FAILS, TAKES_HALF };

/* Counts a call of a kind. Of a call that fails, errno says why. */
static enum Fate fate(const char* kind, int isLasting) {
    if (!is_kind(kind)) return GOES;
    const char* at = getenv("FAULT_AT");
    const char* how = getenv("FAULT_HOW");
    const long number = atomic_fetch_add(&g_count, 1) + 1;
    const long wanted = at == NULL ? 0 : strtol(at, NULL, 10);
    if (wanted < 1 || how == NULL || (isLasting ? number < wanted : number != wanted)) return GOES;
    if (strcmp(how, "short") == 0) return TAKES_HALF;
    if (strncmp(how, "hold:", 5) == 0) {
        hold(strtol(how + 5, NULL, 10));
        return GOES;
    }
    errno = (int)strtol(how, NULL, 10);
    return FAILS;
}

static int fails(const char* kind) { return fate(kind, 0) == FAILS; }

__attribute__((destructor)) static void tell(void) {
    const char* path = getenv("FAULT_COUNT");
    const int file = path == NULL ? -1 : open(path, O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600);
    if (file < 0) return;
    dprintf(file, "%ld\n", atomic_load(&g_count));
    REAL(close)(file);
}

/* --- descriptors */

ssize_t write(int descriptor, const void* bytes, size_t count) {
    const enum Fate fated = counts(descriptor) ? fate("write", 0) : GOES;
    if (fated == FAILS) return -1;
    return REAL(write)(descriptor, bytes, fated == TAKES_HALF ? (count + 1) / 2 : count);
}

ssize_t pwrite(int descriptor, const void* bytes, size_t count, off_t place) {
    const enum Fate fated = counts(descriptor) ? fate("pwrite", 0) : GOES;
    if (fated == FAILS) return -1;
    return REAL(pwrite)(descriptor, bytes, fated == TAKES_HALF ? (count + 1) / 2 : count, place);
}

ssize_t pwrite64(int descriptor, const void* bytes, size_t count, off64_t place) {
    return pwrite(descriptor, bytes, count, place);
}

ssize_t writev(int descriptor, const struct iovec* pieces, int count) {
    const enum Fate fated = counts(descriptor) ? fate("writev", 0) : GOES;
    if (fated == FAILS) return -1;
    return REAL(writev)(descriptor, pieces, fated == TAKES_HALF ? (count + 1) / 2 : count);
}

/* A folder is written to the disk like a file. */
int fsync(int descriptor) {
    const int isOurs = counts(descriptor) || counts_as(descriptor, S_IFDIR);
    return isOurs && fails("fsync") ? -1 : REAL(fsync)(descriptor);
}

int fdatasync(int descriptor) {
    return counts(descriptor) && fails("fdatasync") ? -1 : REAL(fdatasync)(descriptor);
}

int fchmod(int descriptor, mode_t mode) {
    return counts(descriptor) && fails("fchmod") ? -1 : REAL(fchmod)(descriptor, mode);
}

/* The descriptor is gone though close() fails. */
int close(int descriptor) {
    const int isFailing = counts(descriptor) && fails("close");
    const int error = errno;
    const int result = REAL(close)(descriptor);
    if (!isFailing) return result;
    errno = error;
    return -1;
}

/* --- names */

int rename(const char* from, const char* to) {
    return counts_path(to) && fails("rename") ? -1 : REAL(rename)(from, to);
}

int renameat(int from, const char* old, int to, const char* fresh) {
    return counts_path(fresh) && fails("rename") ? -1 : REAL(renameat)(from, old, to, fresh);
}

int renameat2(int from, const char* old, int to, const char* fresh, unsigned flags) {
    return counts_path(fresh) && fails("rename") ? -1 : REAL(renameat2)(from, old, to, fresh, flags);
}

/* A library that cannot take its working file's name away could do nothing more; hidden names are the program's own. */
int unlink(const char* path) {
    return counts_path(path) && strstr(path, "/.") != NULL && fails("unlink") ? -1 : REAL(unlink)(path);
}

int link(const char* old, const char* fresh) {
    return counts_path(fresh) && fails("link") ? -1 : REAL(link)(old, fresh);
}

int linkat(int from, const char* old, int to, const char* fresh, int flags) {
    return counts_path(fresh) && fails("link") ? -1 : REAL(linkat)(from, old, to, fresh, flags);
}

/* --- streams */

#define STREAMS 64
static pthread_mutex_t g_lock = PTHREAD_MUTEX_INITIALIZER;
static struct Stream {
    FILE* file; /* what the program has */
    FILE* real;
} g_streams[STREAMS];

static struct Stream* find(FILE* file) {
    for (struct Stream* each = g_streams; each < g_streams + STREAMS; ++each)
        if (each->file == file) return each;
    return NULL;
}

static FILE* real_of(FILE* file) {
    pthread_mutex_lock(&g_lock);
    struct Stream* found = file == NULL ? NULL : find(file);
    FILE* real = found == NULL ? NULL : found->real;
    pthread_mutex_unlock(&g_lock);
    return real;
}

static ssize_t take(void* real, char* bytes, size_t count) { return read(REAL(fileno)(real), bytes, count); }

static ssize_t give(void* real, const char* bytes, size_t count) {
    const ssize_t written = write(REAL(fileno)(real), bytes, count);
    return written < 0 ? 0 : written;
}

static int go(void* real, off64_t* place, int from) {
    *place = lseek(REAL(fileno)(real), *place, from);
    return *place < 0 ? -1 : 0;
}

static int leave(void* real) {
    const int isFailing = counts(REAL(fileno)(real)) && fails("close");
    const int error = errno;
    const int result = REAL(fclose)(real);
    if (!isFailing) return result;
    errno = error;
    return -1;
}

/* A stream in place of one that counts, through the calls above. */
static FILE* lead(FILE* real, const char* mode) {
    if (real == NULL || mode[strcspn(mode, "wa+")] == '\0' || !counts(REAL(fileno)(real))) return real;
    pthread_mutex_lock(&g_lock);
    struct Stream* free = find(NULL);
    FILE* file = free == NULL ? NULL : fopencookie(real, mode, (cookie_io_functions_t){take, give, go, leave});
    if (file != NULL) *free = (struct Stream){file, real};
    pthread_mutex_unlock(&g_lock);
    return file == NULL ? real : file;
}

FILE* fopen(const char* path, const char* mode) { return lead(REAL(fopen)(path, mode), mode); }
FILE* fopen64(const char* path, const char* mode) { return lead(REAL(fopen64)(path, mode), mode); }
FILE* fdopen(int descriptor, const char* mode) { return lead(REAL(fdopen)(descriptor, mode), mode); }
FILE* tmpfile(void) { return lead(REAL(tmpfile)(), "w+"); }
FILE* tmpfile64(void) { return lead(REAL(tmpfile64)(), "w+"); }

int fileno(FILE* file) {
    FILE* real = real_of(file);
    return REAL(fileno)(real == NULL ? file : real);
}

int fflush(FILE* file) {
    if (real_of(file) == NULL) return REAL(fflush)(file);
    if (fails("fflush")) return EOF;
    return REAL(fflush)(file);
}

int fclose(FILE* file) {
    const int isOurs = real_of(file) != NULL;
    const int isFailing = isOurs && fails("fclose");
    const int error = errno;
    if (isOurs) {
        pthread_mutex_lock(&g_lock);
        struct Stream* found = find(file);
        if (found != NULL) *found = (struct Stream){NULL, NULL};
        pthread_mutex_unlock(&g_lock);
    }
    const int result = REAL(fclose)(file);
    if (!isFailing) return result;
    errno = error;
    return EOF;
}

/* --- threads */

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*), void* argument) {
    if (fate("thread", 1) == FAILS) return EAGAIN;
    /* Threads of the program's own come from the standard library; Qt's painting waits for its own for ever. */
    Dl_info caller;
    const int isOurs = dladdr(__builtin_return_address(0), &caller) != 0 && strstr(caller.dli_fname, "libstdc++") != NULL;
    if (isOurs && fate("one-thread", 0) == FAILS) return EAGAIN;
    return REAL(pthread_create)(thread, attributes, start, argument);
}
