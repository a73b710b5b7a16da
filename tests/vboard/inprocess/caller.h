/* SPDX-License-Identifier: Apache-2.0 */
/* Calls of libc out of a shared library; the functions come twice, in the plain variants of libc's functions
   and in those with 64-bit offsets and times. Each gives libc's result and leaves its errno. */
#ifndef CALLER_H
#define CALLER_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Files, mappings, directories and mount tables. */
struct file_caller {
    int (*ftruncate)(int fd, long length);
    void *(*mmap)(int fd, size_t length);
    int (*msync)(void *address, size_t length);
    int (*stat)(const char *path);
    int (*lstat)(const char *path);
    int (*scandir)(const char *path, void *list);
    int (*unlink)(const char *path);
    int (*symlink)(const char *target, const char *path);
    long (*readlink)(const char *path, char *output, size_t size);
    int (*chmod)(const char *path, int mode);
    int (*fchmod)(int fd, int mode);
    void *(*opendir)(const char *path);
    void *(*setmntent)(const char *path);
};

struct caller {
    int (*open)(const char *path, int flags);
    int (*open_new)(const char *path, int flags, int mode);
    int (*openat)(int directory, const char *path, int flags);
    int (*close)(int fd);
    int (*ioctl)(int fd, unsigned long request, void *argument);
    long (*read)(int fd, void *buffer, size_t size);
    long (*write)(int fd, const void *buffer, size_t size);
    int (*dup)(int fd);
    int (*dup2)(int fd, int copy);
    int (*dup3)(int fd, int copy, int flags);
    int (*fcntl)(int fd, int command, long argument);
    long (*lseek)(int fd);
    int (*fstat)(int fd);
    int (*usleep)(unsigned microseconds);
    int (*nanosleep)(long microseconds);
    int (*select)(long seconds, long microseconds);
    long (*time)(void);
    int (*clock_gettime)(void);
    int (*localtime_r)(void); /* 1 for a pointer */
    int (*sysinfo)(void);
    void *(*malloc)(size_t size);
    void *(*calloc)(size_t count, size_t size);
    void (*free)(void *block);
    void (*log)(const char *text); /* openlog, syslog, closelog */
    const struct file_caller *files;
};

extern const struct caller plain_caller;
extern const struct caller wide_caller;

#ifdef __cplusplus
}
#endif
#endif
