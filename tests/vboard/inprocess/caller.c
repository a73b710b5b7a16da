/* SPDX-License-Identifier: Apache-2.0 */
#include "caller.h"

#include <dirent.h>
#include <fcntl.h>
#include <mntent.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/select.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>
#include <syslog.h>
#include <time.h>
#include <unistd.h>

static int call_open(const char *path, int flags)
{
    return open(path, flags);
}
static int call_open_new(const char *path, int flags, int mode)
{
    return open(path, flags, (mode_t)mode);
}
static int call_openat(int directory, const char *path, int flags)
{
    return openat(directory, path, flags);
}
static int call_close(int fd)
{
    return close(fd);
}
static int call_ioctl(int fd, unsigned long request, void *argument)
{
    return ioctl(fd, request, argument);
}
static long call_read(int fd, void *buffer, size_t size)
{
    /* A buffer of known size and a count that is not known make the fortified variant. */
    char copy[4096];
    long result = read(fd, copy, size);
    for (long i = 0; i < result; ++i)
        ((char *)buffer)[i] = copy[i];
    return result;
}
static long call_write(int fd, const void *buffer, size_t size)
{
    return write(fd, buffer, size);
}
static int call_dup(int fd)
{
    return dup(fd);
}
static int call_dup2(int fd, int copy)
{
    return dup2(fd, copy);
}
static int call_dup3(int fd, int copy, int flags)
{
    return dup3(fd, copy, flags);
}
static int call_fcntl(int fd, int command, long argument)
{
    return fcntl(fd, command, argument);
}
static long call_lseek(int fd)
{
    return (long)lseek(fd, 0, SEEK_CUR);
}
static int call_fstat(int fd)
{
    struct stat info;
    return fstat(fd, &info);
}
static int call_usleep(unsigned microseconds)
{
    return usleep(microseconds);
}
static int call_nanosleep(long microseconds)
{
    struct timespec wanted = {microseconds / 1000000, microseconds % 1000000 * 1000};
    return nanosleep(&wanted, NULL);
}
static int call_select(long seconds, long microseconds)
{
    struct timeval wait = {seconds, microseconds};
    return select(1, NULL, NULL, NULL, &wait);
}
static long call_time(void)
{
    return (long)time(NULL);
}
static int call_clock_gettime(void)
{
    struct timespec now;
    return clock_gettime(CLOCK_MONOTONIC, &now);
}
static int call_localtime_r(void)
{
    time_t now = 0;
    struct tm out;
    return localtime_r(&now, &out) != NULL;
}
static int call_sysinfo(void)
{
    struct sysinfo info;
    return sysinfo(&info);
}
static void *call_malloc(size_t size)
{
    return malloc(size);
}
static void *call_calloc(size_t count, size_t size)
{
    return calloc(count, size);
}
static void call_free(void *block)
{
    free(block);
}
static void call_log(const char *text)
{
    openlog("caller", 0, LOG_DAEMON);
    syslog(LOG_INFO, "%s", text);
    closelog();
}
static int call_ftruncate(int fd, long length)
{
    return ftruncate(fd, length);
}
static void *call_mmap(int fd, size_t length)
{
    return mmap(NULL, length, PROT_READ, MAP_SHARED, fd, 0);
}
static int call_msync(void *address, size_t length)
{
    return msync(address, length, MS_SYNC);
}
static int call_stat(const char *path)
{
    struct stat info;
    return stat(path, &info);
}
static int call_lstat(const char *path)
{
    struct stat info;
    return lstat(path, &info);
}
static int call_scandir(const char *path, void *list)
{
    return scandir(path, (struct dirent ***)list, NULL, NULL);
}
static int call_unlink(const char *path)
{
    return unlink(path);
}
static int call_symlink(const char *target, const char *path)
{
    return symlink(target, path);
}
static long call_readlink(const char *path, char *output, size_t size)
{
    return readlink(path, output, size);
}
static int call_chmod(const char *path, int mode)
{
    return chmod(path, (mode_t)mode);
}
static int call_fchmod(int fd, int mode)
{
    return fchmod(fd, (mode_t)mode);
}
static void *call_opendir(const char *path)
{
    return opendir(path);
}
static void *call_setmntent(const char *path)
{
    return setmntent(path, "r");
}

static const struct file_caller file_calls = {
    call_ftruncate, call_mmap,     call_msync, call_stat,   call_lstat,   call_scandir,  call_unlink,
    call_symlink,   call_readlink, call_chmod, call_fchmod, call_opendir, call_setmntent};

#ifdef CALLER64
const struct caller wide_caller
#else
const struct caller plain_caller
#endif
    = {call_open,   call_open_new, call_openat,        call_close,       call_ioctl,
       call_read,   call_write,    call_dup,           call_dup2,        call_dup3,
       call_fcntl,  call_lseek,    call_fstat,         call_usleep,      call_nanosleep,
       call_select, call_time,     call_clock_gettime, call_localtime_r, call_sysinfo,
       call_malloc, call_calloc,   call_free,          call_log,         &file_calls};
