// Preloaded into a program, fails one of its calls on files. NUV_FAULT_AT says which, counted from
// 0, NUV_FAULT how: an errno's number, or "short" for a read or write of half of what is asked. A
// call counts where it names a file in the current folder or below, or has one open. Past the last
// call the program is as it would be; it creates the file NUV_FAULT_MARK where the call was failed.
#define _GNU_SOURCE
#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdarg.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdio_ext.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/uio.h>
#include <unistd.h>

static atomic_int calls;

static int LiesWithin(const char* path) {
  char folder[PATH_MAX];
  if (path == NULL || path[0] != '/') return path != NULL;
  return getcwd(folder, sizeof folder) != NULL && strncmp(path, folder, strlen(folder)) == 0;
}

static int IsOpenWithin(int descriptor) {
  char link[64];
  char path[PATH_MAX];
  if (descriptor < 0) return 0;
  snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
  const ssize_t size = readlink(link, path, sizeof path - 1);
  if (size <= 0) return 0;
  path[size] = '\0';
  return path[0] == '/' && LiesWithin(path);
}

static int IsStreamWithin(FILE* stream) {
  return stream != NULL && IsOpenWithin(fileno(stream));
}

/// Whether this call is the one: -1 for a short one, else errno's number, which is set; 0 if not.
static int Fault(int concerns, const char* name) {
  const char* at = getenv("NUV_FAULT_AT");
  const char* how = getenv("NUV_FAULT");
  const int error = errno;
  if (at == NULL || how == NULL || !concerns) return errno = error, 0;
  if (atomic_fetch_add(&calls, 1) != atoi(at)) return errno = error, 0;
  const int mark = creat(getenv("NUV_FAULT_MARK"), 0600);
  dprintf(mark, "%s", name);
  close(mark);
  errno = atoi(how);
  return strcmp(how, "short") == 0 ? -1 : errno;
}

#define REAL(name) ((__typeof__(&name))dlsym(RTLD_NEXT, #name))
/// A call that fails with an answer, or is not changed.
#define FAILING(type, name, parameters, arguments, concerns, failure) \
  type name parameters {                                              \
    if (Fault(concerns, #name) > 0) return failure;                   \
    return REAL(name) arguments;                                      \
  }
/// One that transfers `count`, and may do half of it.
#define PARTIAL(type, name, parameters, arguments, concerns, failure) \
  type name parameters {                                              \
    const int fault = Fault(concerns, #name);                         \
    if (fault > 0) return failure;                                    \
    if (fault < 0) count = (count + 1) / 2;                           \
    return REAL(name) arguments;                                      \
  }
/// One that closes, whatever it answers.
#define CLOSING(type, name, parameters, arguments, concerns) \
  type name parameters {                                     \
    const int fault = Fault(concerns, #name);                \
    const type answer = REAL(name) arguments;                \
    if (fault > 0) errno = fault;                            \
    return fault > 0 ? -1 : answer;                          \
  }

#define PATH_CALL(name, parameters, arguments, path) \
  FAILING(int, name, parameters, arguments, LiesWithin(path), -1)
#define FILE_CALL(name, parameters, arguments, descriptor) \
  FAILING(int, name, parameters, arguments, IsOpenWithin(descriptor), -1)

PATH_CALL(stat, (const char* path, struct stat* status), (path, status), path)
PATH_CALL(lstat, (const char* path, struct stat* status), (path, status), path)
PATH_CALL(statvfs, (const char* path, struct statvfs* disk), (path, disk), path)
PATH_CALL(faccessat, (int folder, const char* path, int mode, int flags),
          (folder, path, mode, flags), path)
PATH_CALL(mkdir, (const char* path, mode_t mode), (path, mode), path)
PATH_CALL(rmdir, (const char* path), (path), path)
PATH_CALL(remove, (const char* path), (path), path)
PATH_CALL(unlink, (const char* path), (path), path)
PATH_CALL(unlinkat, (int folder, const char* path, int flags), (folder, path, flags), path)
PATH_CALL(rename, (const char* from, const char* to), (from, to), from)
PATH_CALL(renameat2, (int folder, const char* from, int other, const char* to, unsigned flags),
          (folder, from, other, to, flags), from)
PATH_CALL(mkostemp, (char* path, int flags), (path, flags), path)
PATH_CALL(truncate, (const char* path, off_t size), (path, size), path)
FAILING(FILE*, fopen, (const char* path, const char* mode), (path, mode), LiesWithin(path), NULL)
FAILING(FILE*, fopen64, (const char* path, const char* mode), (path, mode), LiesWithin(path), NULL)

FILE_CALL(fstat, (int file, struct stat* status), (file, status), file)
FILE_CALL(fstat64, (int file, struct stat64* status), (file, status), file)
FILE_CALL(fsync, (int file), (file), file)
FILE_CALL(fchmod, (int file, mode_t mode), (file, mode), file)
FILE_CALL(fchown, (int file, uid_t owner, gid_t group), (file, owner, group), file)
FAILING(FILE*, fdopen, (int file, const char* mode), (file, mode), IsOpenWithin(file), NULL)
FAILING(DIR*, fdopendir, (int file), (file), IsOpenWithin(file), NULL)
FAILING(struct dirent*, readdir, (DIR * folder), (folder), IsOpenWithin(dirfd(folder)), NULL)
FAILING(int, fflush, (FILE * file), (file), IsStreamWithin(file) && __fwriting(file), EOF)

PARTIAL(ssize_t, read, (int file, void* bytes, size_t count), (file, bytes, count),
        IsOpenWithin(file), -1)
PARTIAL(ssize_t, write, (int file, const void* bytes, size_t count), (file, bytes, count),
        IsOpenWithin(file), -1)
PARTIAL(ssize_t, writev, (int file, const struct iovec* bytes, int count), (file, bytes, count),
        IsOpenWithin(file), -1)
FAILING(size_t, fread, (void* bytes, size_t size, size_t count, FILE* file),
        (bytes, size, count, file), IsStreamWithin(file), 0)
FAILING(size_t, fwrite, (const void* bytes, size_t size, size_t count, FILE* file),
        (bytes, size, count, file), IsStreamWithin(file), 0)
CLOSING(int, close, (int file), (file), IsOpenWithin(file))
CLOSING(int, fclose, (FILE * file), (file), IsStreamWithin(file))

int open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = va_arg(more, mode_t);
  va_end(more);
  return Fault(LiesWithin(path), "open") > 0 ? -1 : REAL(open)(path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = va_arg(more, mode_t);
  va_end(more);
  return Fault(LiesWithin(path), "openat") > 0 ? -1 : REAL(openat)(folder, path, flags, mode);
}
