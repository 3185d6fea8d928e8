// Preloaded into the program: lets one of the calls that save fail, and sets its clock back. Only in the program itself,
// and only below one folder, its website data excepted: what the engine does with its own files is not the matter.
//   FAULT_PROGRAM  the program's name
//   FAULT_FOLDER   where calls count
//   FAULT_LOG      gets a line for each of them
//   FAULT_AT       which of them fails, from 1; none when 0
//   FAULT_ERROR    its errno
//   FAULT_CLOCK    while this file exists it is a year earlier

#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

static int counted;
static __thread int inside;

static const char* setting(const char* name)
{
    const char* program = getenv("FAULT_PROGRAM");
    return program && strcmp(program, program_invocation_short_name) == 0 ? getenv(name) : NULL;
}

// Whether this call is the one.
static int fails(const char* call, int folder, const char* path)
{
    const char* below = setting("FAULT_FOLDER");
    if (!below || inside)
        return 0;
    inside = 1;
    int result = 0;
    char link[64];
    char whole[2 * PATH_MAX];
    ssize_t length = 0;
    if (!path || (path[0] != '/' && folder >= 0)) {
        snprintf(link, sizeof link, "/proc/self/fd/%d", folder);
        length = readlink(link, whole, PATH_MAX);
    }
    snprintf(whole + (length > 0 ? length : 0), PATH_MAX, "%s%s", length > 0 && path ? "/" : "", path ? path : "");
    if (strncmp(whole, below, strlen(below)) == 0 && !strstr(whole, "/WebsiteData")) {
        int number = __atomic_add_fetch(&counted, 1, __ATOMIC_SEQ_CST);
        const char* at = setting("FAULT_AT");
        result = at && atoi(at) == number;
        FILE* log = fopen(setting("FAULT_LOG"), "ae");
        if (log) {
            fprintf(log, "%d %s %s%s\n", number, call, whole + strlen(below), result ? " FAILS" : "");
            fclose(log);
        }
    }
    inside = 0;
    if (result)
        errno = atoi(setting("FAULT_ERROR"));
    return result;
}

#define REAL(name) ((__typeof__(&(name)))dlsym(RTLD_NEXT, #name))

#define OPEN_AT(name)                                                                             \
    int name(int folder, const char* path, int flags, ...)                                        \
    {                                                                                             \
        va_list more;                                                                             \
        va_start(more, flags);                                                                    \
        mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(more, mode_t) : 0;                 \
        va_end(more);                                                                             \
        if ((flags & (O_WRONLY | O_RDWR | O_CREAT | O_DIRECTORY)) && fails(#name, folder, path))  \
            return -1;                                                                            \
        return REAL(name)(folder, path, flags, mode);                                             \
    }
#define OPEN(name)                                                                                \
    int name(const char* path, int flags, ...)                                                    \
    {                                                                                             \
        va_list more;                                                                             \
        va_start(more, flags);                                                                    \
        mode_t mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(more, mode_t) : 0;                 \
        va_end(more);                                                                             \
        if ((flags & (O_WRONLY | O_RDWR | O_CREAT | O_DIRECTORY)) && fails(#name, -1, path))      \
            return -1;                                                                            \
        return REAL(name)(path, flags, mode);                                                     \
    }
OPEN(open)
OPEN(open64)
OPEN_AT(openat)
OPEN_AT(openat64)

ssize_t write(int file, const void* data, size_t size)
{
    return fails("write", file, NULL) ? -1 : REAL(write)(file, data, size);
}
int fsync(int file)
{
    return fails("fsync", file, NULL) ? -1 : REAL(fsync)(file);
}
int fchmod(int file, mode_t mode)
{
    return fails("fchmod", file, NULL) ? -1 : REAL(fchmod)(file, mode);
}
int mkdir(const char* path, mode_t mode)
{
    return fails("mkdir", -1, path) ? -1 : REAL(mkdir)(path, mode);
}
int renameat(int from, const char* path, int to, const char* target)
{
    return fails("renameat", to, target) ? -1 : REAL(renameat)(from, path, to, target);
}
int rename(const char* path, const char* target)
{
    return fails("rename", -1, target) ? -1 : REAL(rename)(path, target);
}

static time_t shift(void)
{
    const char* file = inside ? NULL : setting("FAULT_CLOCK");
    return file && access(file, F_OK) == 0 ? 365 * 24 * 3600 : 0;
}
int clock_gettime(clockid_t clock, struct timespec* now)
{
    int result = REAL(clock_gettime)(clock, now);
    if (clock == CLOCK_REALTIME)
        now->tv_sec -= shift();
    return result;
}
int gettimeofday(struct timeval* restrict now, void* restrict zone)
{
    int result = REAL(gettimeofday)(now, zone);
    now->tv_sec -= shift();
    return result;
}
