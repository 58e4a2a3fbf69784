/* Stands in front of the system's calls and lets one of them fail: the VELCORAN_FAIL_AT-th call of the kind
 * VELCORAN_FAIL_CALL (write, fwrite, fflush, fclose, fsync, close, linkat, renameat2, unlink, rename, thread) fails with
 * the number VELCORAN_FAIL_ERRNO. Calls on standard streams and sockets do not count. A stream's fwrite fails from that
 * call on, as on a disk that is full. With VELCORAN_FAIL_COUNT the number of calls is written to that file at the end.
 * VELCORAN_SLOW_WRITE waits so many milliseconds before each write that counts. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

static atomic_long g_count;

static int is_kind(const char* kind) {
    const char* wanted = getenv("VELCORAN_FAIL_CALL");
    return wanted != NULL && strcmp(wanted, kind) == 0;
}

static int fails(const char* kind) {
    if (!is_kind(kind)) return 0;
    const char* at = getenv("VELCORAN_FAIL_AT");
    const long number = atomic_fetch_add(&g_count, 1) + 1;
    const long first = at == NULL ? 0 : strtol(at, NULL, 10);
    const int isLasting = strcmp(kind, "fwrite") == 0;
    if (first < 1 || (isLasting ? number < first : number != first)) return 0;
    const char* error = getenv("VELCORAN_FAIL_ERRNO");
    errno = error == NULL ? EIO : (int)strtol(error, NULL, 10);
    return 1;
}

/* Files on a disk alone: what the export writes. */
static int counts(int descriptor) {
    struct stat found;
    if (descriptor <= 2 || fstat(descriptor, &found) != 0) return 0;
    return S_ISREG(found.st_mode) && found.st_size < (1 << 28);
}

static void slow_down(void) {
    const char* wait = getenv("VELCORAN_SLOW_WRITE");
    if (wait != NULL) usleep((useconds_t)strtol(wait, NULL, 10) * 1000);
}

__attribute__((destructor)) static void tell(void) {
    const char* path = getenv("VELCORAN_FAIL_COUNT");
    FILE* file = path == NULL ? NULL : fopen(path, "w");
    if (file == NULL) return;
    fprintf(file, "%ld\n", atomic_load(&g_count));
    fclose(file);
}

#define REAL(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))

ssize_t write(int descriptor, const void* bytes, size_t count) {
    if (counts(descriptor)) {
        slow_down();
        if (fails("write")) return -1;
    }
    return REAL(write)(descriptor, bytes, count);
}

/* A folder is written to the disk like a file. */
static int counts_or_folder(int descriptor) {
    struct stat found;
    return counts(descriptor) || (fstat(descriptor, &found) == 0 && S_ISDIR(found.st_mode));
}

int fsync(int descriptor) { return counts_or_folder(descriptor) && fails("fsync") ? -1 : REAL(fsync)(descriptor); }

int close(int descriptor) {
    const int isFailing = counts(descriptor) && fails("close");
    const int error = errno;
    const int result = REAL(close)(descriptor);
    if (!isFailing) return result;
    errno = error;
    return -1;
}

int rename(const char* from, const char* to) { return fails("rename") ? -1 : REAL(rename)(from, to); }

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
    return fails("renameat2") ? -1 : REAL(renameat2)(fromFolder, from, toFolder, to, flags);
}

int unlink(const char* path) { return fails("unlink") ? -1 : REAL(unlink)(path); }

int linkat(int from, const char* old, int to, const char* fresh, int flags) {
    return fails("linkat") ? -1 : REAL(linkat)(from, old, to, fresh, flags);
}

/* The library's own writes do not pass write(): they are made inside the C library. */
size_t fwrite(const void* bytes, size_t size, size_t count, FILE* file) {
    if (counts(fileno(file))) {
        slow_down();
        if (fails("fwrite")) return 0;
    }
    return REAL(fwrite)(bytes, size, count, file);
}

int fflush(FILE* file) { return file != NULL && counts(fileno(file)) && fails("fflush") ? EOF : REAL(fflush)(file); }

int fclose(FILE* file) {
    const int isFailing = counts(fileno(file)) && fails("fclose");
    const int result = REAL(fclose)(file);
    return isFailing ? EOF : result;
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*), void* argument) {
    /* Threads of the program's own come from the standard library; the toolkit's painting waits for its own for ever. */
    Dl_info caller;
    const int isOurs = dladdr(__builtin_return_address(0), &caller) != 0 && strstr(caller.dli_fname, "libstdc++") != NULL;
    if (isOurs && fails("thread")) return EAGAIN;
    return REAL(pthread_create)(thread, attributes, start, argument);
}
