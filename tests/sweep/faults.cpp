// SPDX-License-Identifier: Apache-2.0
#include "sweep/faults.hpp"

#include <cerrno>
#include <cstring>
#include <vector>

namespace sweep
{
namespace
{

// A result of -1, a null pointer, a result that says by itself what is wrong.
std::vector<Fault> minus_one(std::initializer_list<int> errors)
{
    std::vector<Fault> all;
    for (int error : errors)
        all.push_back({-1, error});
    return all;
}

std::vector<Fault> null(std::initializer_list<int> errors)
{
    std::vector<Fault> all;
    for (int error : errors)
        all.push_back({0, error});
    return all;
}

std::vector<Fault> results(std::initializer_list<long> values)
{
    std::vector<Fault> all;
    for (long value : values)
        all.push_back({value});
    return all;
}

std::vector<Fault> operator+(std::vector<Fault> some, const std::vector<Fault> &more)
{
    some.insert(some.end(), more.begin(), more.end());
    return some;
}

struct Row {
    const char *function;
    std::vector<Fault> faults;
};

// A row's first way is one that can also last: no signal comes for ever.
const std::vector<Row> &table()
{
    static const auto *all = new std::vector<Row>{
        // files and descriptors
        {"open", minus_one({ENOENT, EACCES, EMFILE, ENXIO, EINTR, EIO})},
        {"close", minus_one({EIO, EINTR})},
        {"ioctl", minus_one({EIO, EINTR, ENOTTY, EFAULT, EBUSY})},
        {"read", minus_one({EIO, EINTR, EAGAIN}) + results({0})}, // 0: nothing there
        {"write", minus_one({EIO, EINTR, EAGAIN, ENOSPC, EINVAL})},
        {"lseek", minus_one({ESPIPE, EINVAL})},
        {"fstat", minus_one({EIO, EOVERFLOW})},
        {"stat", minus_one({ENOENT, EACCES, ELOOP, EIO})},
        {"lstat", minus_one({ENOENT, EACCES, EIO})},
        {"access", minus_one({ENOENT, EACCES, EIO})},
        {"readlink", minus_one({ENOENT, EINVAL, EACCES})},
        {"realpath", null({ENOENT, EACCES, ELOOP, ENOMEM})},
        {"symlink", minus_one({EEXIST, ENOSPC, EACCES, EROFS})},
        {"unlink", minus_one({ENOENT, EACCES, EBUSY, EROFS})},
        {"remove", minus_one({ENOENT, EACCES, EBUSY})},
        {"mkfifo", minus_one({EEXIST, EACCES, ENOSPC})},
        {"fchmod", minus_one({EPERM, EROFS})},
        {"ftruncate", minus_one({EINVAL, EIO, EFBIG, EINTR})},
        {"mmap", minus_one({ENOMEM, EACCES, ENODEV})},
        {"msync", minus_one({EIO, ENOMEM})},
        {"opendir", null({ENOENT, EACCES, EMFILE, ENOMEM})},
        {"readdir", null({0, EBADF})},
        {"closedir", minus_one({EBADF})},
        {"scandir", minus_one({ENOENT, EACCES, ENOMEM})},
        {"setmntent", null({ENOENT, EMFILE, ENOMEM})},
        {"getmntent_r", null({0, EIO})},
        {"fopen", null({ENOENT, EACCES, EMFILE, ENOMEM})},
        {"fclose", minus_one({EIO, ENOSPC})},
        {"fread", null({0, EIO})},
        {"fseek", minus_one({EIO, ESPIPE})},
        {"ftell", minus_one({EIO, ESPIPE})},
        {"printf", minus_one({EIO, EPIPE})},
        // memory, libraries, threads, processes
        {"malloc", null({ENOMEM})},
        {"dlopen", null({0})},
        {"dlsym", null({0})},
        {"dlclose", results({-1})},
        {"pthread_create", results({EAGAIN, EPERM})},
        {"execv", minus_one({ENOENT, EACCES, ENOMEM})},
        {"sigprocmask", minus_one({EINVAL})},
        // time
        {"select", minus_one({EINVAL, ENOMEM, EINTR})},
        {"usleep", minus_one({EINVAL, EINTR})},
        {"sleep", results({1})}, // a signal came
        {"clock_gettime", minus_one({EINVAL, EFAULT})},
        {"localtime_r", null({EOVERFLOW})},
        {"mktime", minus_one({EOVERFLOW})},
        {"strftime", results({0})},
        {"sysinfo", minus_one({EFAULT})},
        {"settimeofday", minus_one({EPERM, EINVAL})},
        // the platform's functions
        {"memcpy_s", results({EINVAL, ERANGE})},
        {"memset_s", results({EINVAL, ERANGE})},
        {"strcpy_s", results({EINVAL, ERANGE})},
        {"strncpy_s", results({EINVAL, ERANGE})},
        {"strncat_s", results({EINVAL, ERANGE})},
        {"sprintf_s", results({-1})},
        {"vsprintf_s", results({-1})},
        {"snprintf_s", results({-1})},
        {"vsnprintf_s", results({-1})},
        {"snprintf_truncated_s", results({-1})},
        {"sscanf_s", results({-1, 0})},
        {"GetEnv", results({1, -1})},
        {"SetEnv", results({1, -1})},
        {"bsp_getmemenv_s", results({1, -1})},
        {"bsp_setenv_s", results({1, -1})},
        {"bsp_update_norflash_data_area", results({1, -1})},
        {"CCPKG_ExtractFileFromCCExt", results({1, -1})},
        {"IsNeedRootProxy", results({1})}, // no failure: the other answer
        {"RootProxyExecCmd", results({1, -1})},
        {"iof_get_attr_value", results({1, -1})},
        {"iof_timer_get_base_64bit", results({1})},
        {"iof_timer_get_freq", results({0})},
    };
    return *all;
}

} // namespace

std::span<const Fault> faults_of(const char *function)
{
    for (const Row &row : table())
        if (std::strcmp(row.function, function) == 0)
            return row.faults;
    return {};
}

bool works_all_the_same(const char *function)
{
    for (const char *one : {"close", "closedir", "fclose", "dlclose"})
        if (std::strcmp(one, function) == 0)
            return true;
    return false;
}

} // namespace sweep
