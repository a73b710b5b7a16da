// SPDX-License-Identifier: Apache-2.0
// What a hook sees of a shared library's files, mappings and mount tables.
#include "hook_test.hpp"

#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <mntent.h>
#include <sys/mman.h>
#include <sys/stat.h>

using namespace hook_test;

namespace
{

class FilesHook : public Hook
{
  protected:
    const file_caller &files = *call.files;

    void SetUp() override
    {
        Hook::SetUp();
        ASSERT_NE(mkdtemp(directory), nullptr);
        file = std::string(directory) + "/file";
        link = std::string(directory) + "/link";
        fd = ::open(file.c_str(), O_RDWR | O_CREAT, 0600);
        ASSERT_GE(fd, 0);
    }
    void TearDown() override
    {
        ::close(fd);
        ::unlink(file.c_str());
        ::unlink(link.c_str());
        ::rmdir(directory);
        Hook::TearDown();
    }
    struct stat status() const
    {
        struct stat now = {};
        EXPECT_EQ(::fstat(fd, &now), 0);
        return now;
    }
    char directory[32] = "/tmp/files-hook-XXXXXX";
    std::string file, link;
    int fd = -1;
    char text[64] = "";
    void *list = nullptr;
};

TEST_P(FilesHook, FailsEveryFunction)
{
    fails("ftruncate", [&] { return files.ftruncate(fd, 5); });
    fails("msync", [&] { return files.msync(nullptr, 5); });
    fails("stat", [&] { return files.stat("/dev"); });
    fails("lstat", [&] { return files.lstat("/dev"); });
    fails("scandir", [&] { return files.scandir(directory, &list); });
    fails("unlink", [&] { return files.unlink(file.c_str()); });
    fails("symlink", [&] { return files.symlink("file", link.c_str()); });
    fails("readlink", [&] { return files.readlink(link.c_str(), text, sizeof text); });
    fails("chmod", [&] { return files.chmod(file.c_str(), 0444); });
    fails("fchmod", [&] { return files.fchmod(fd, 0444); });
    EXPECT_EQ(status().st_size, 0);
    EXPECT_EQ(status().st_mode & 07777, 0600u);
    EXPECT_EQ(access(link.c_str(), F_OK), -1);
}

TEST_P(FilesHook, FailsFunctionsThatGivePointers)
{
    plan("mmap", -1, ENOMEM);
    EXPECT_EQ(heard([&] { return files.mmap(fd, 5); }), MAP_FAILED);
    EXPECT_EQ(errno, ENOMEM);
    EXPECT_EQ(seen[0].fd, fd);
    EXPECT_EQ(seen[0].size, 5u);
    plan("opendir", 0, EMFILE);
    EXPECT_EQ(heard([&] { return files.opendir(directory); }), nullptr);
    EXPECT_EQ(errno, EMFILE);
    EXPECT_EQ(seen[0].path, directory);
    plan("setmntent", 0, EMFILE);
    EXPECT_EQ(heard([&] { return files.setmntent("/proc/mounts"); }), nullptr);
    EXPECT_EQ(errno, EMFILE);
    EXPECT_EQ(seen[0].path, "/proc/mounts");
}

TEST_P(FilesHook, LetsCallsThroughUnharmed)
{
    EXPECT_EQ(heard([&] { return files.ftruncate(fd, 4097); }), 0);
    EXPECT_EQ(seen[0].fd, fd);
    EXPECT_EQ(seen[0].size, 4097u);
    EXPECT_EQ(status().st_size, 4097);
    void *mapped = heard([&] { return files.mmap(fd, 4097); });
    ASSERT_NE(mapped, MAP_FAILED);
    EXPECT_EQ(static_cast<char *>(mapped)[4096], '\0');
    EXPECT_EQ(heard([&] { return files.msync(mapped, 4097); }), 0);
    EXPECT_EQ(seen[0].data, mapped);
    EXPECT_EQ(seen[0].size, 4097u);
    munmap(mapped, 4097);
    EXPECT_EQ(heard([&] { return files.symlink("nowhere", link.c_str()); }), 0);
    EXPECT_EQ(seen[0].path, link);
    EXPECT_EQ(heard([&] { return files.readlink(link.c_str(), text, sizeof text); }), 7);
    EXPECT_STREQ(text, "nowhere");
    EXPECT_EQ(heard([&] { return files.lstat(link.c_str()); }), 0);
    EXPECT_EQ(heard([&] { return files.stat(link.c_str()); }), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(heard([&] { return files.unlink(link.c_str()); }), 0);
    EXPECT_EQ(seen[0].path, link);
    EXPECT_EQ(heard([&] { return files.chmod(file.c_str(), 0640); }), 0);
    EXPECT_EQ(seen[0].size, 0640u);
    EXPECT_EQ(status().st_mode & 07777, 0640u);
    EXPECT_EQ(heard([&] { return files.fchmod(fd, 0444); }), 0);
    EXPECT_EQ(status().st_mode & 07777, 0444u);
}

// libc allocates for these, which a hook sees after the call itself. The directory is one whose entries'
// numbers fit the plain functions of a 32-bit program, whatever file system the host has.
TEST_P(FilesHook, LetsDirectoriesAndTablesThrough)
{
    const std::string at = "/proc/self/task";
    seen.clear();
    listening = true;
    const int count = files.scandir(at.c_str(), &list);
    void *opened = files.opendir(at.c_str());
    void *table = files.setmntent("/proc/mounts");
    listening = false;
    EXPECT_GE(count, 3); // ".", ".." and each thread
    ASSERT_NE(opened, nullptr);
    ASSERT_NE(table, nullptr);
    EXPECT_NE(readdir(static_cast<DIR *>(opened)), nullptr);
    closedir(static_cast<DIR *>(opened));
    endmntent(static_cast<FILE *>(table));
    auto **entries = static_cast<dirent **>(list);
    for (int i = 0; i < count; ++i)
        std::free(entries[i]);
    std::free(entries);

    std::vector<std::string> functions;
    for (const Seen &one : seen)
        if (one.function == "scandir" || one.function == "opendir" || one.function == "setmntent")
            functions.push_back(one.function + " " + one.path);
    EXPECT_THAT(functions, testing::ElementsAre("scandir " + at, "opendir " + at, "setmntent /proc/mounts"));
}

INSTANTIATE_TEST_SUITE_P(From, FilesHook, testing::Values(&plain_caller, &wide_caller), library_name);

} // namespace
