// SPDX-License-Identifier: Apache-2.0
// Getting, putting and destroying black boxes.
#include "state/blackbox_test.hpp"

#include <cerrno>
#include <fcntl.h>

using namespace test;

namespace
{

class BlackBox : public BoardTest
{
  protected:
    Said get(const char *name, std::uint32_t size)
    {
        return during([&] { result = MOX_GetBlackbox(name, size); });
    }
    Said destroy(const char *name)
    {
        return during([&] { result = MOX_DestroyBlackbox(name); });
    }
    // A get that succeeds in silence, and the put.
    void resize(const std::string &name, std::uint32_t size)
    {
        EXPECT_EQ(get(name.c_str(), size), nothing());
        ASSERT_GE(result, 0);
        EXPECT_EQ(MOX_PutBlackbox(result), 0);
    }
    std::int32_t result = 99;
};

TEST_F(BlackBox, IsMadeWithItsSizeAndMode)
{
    umask(0);
    EXPECT_EQ(get("crash", 100), nothing());
    ASSERT_GE(result, 0);
    struct stat status = {}, opened = {};
    ASSERT_EQ(stat("/opt/moxv8/var/crash_blackbox", &status), 0);
    EXPECT_EQ(status.st_mode, S_IFREG | 0640u);
    EXPECT_EQ(status.st_size, 100);
    ASSERT_EQ(fstat(result, &opened), 0);
    EXPECT_EQ(opened.st_ino, status.st_ino);
    EXPECT_EQ(fcntl(result, F_GETFL) & O_ACCMODE, O_RDWR);
    EXPECT_EQ(content_of(box_path("crash")), std::string(100, '\0'));
    EXPECT_EQ(MOX_PutBlackbox(result), 0);
    EXPECT_EQ(fcntl(result, F_GETFD), -1);
}

TEST_F(BlackBox, EveryGetSetsTheSizeAndKeepsWhatFits)
{
    put_file(box_path("m"), "0123456789");
    resize("m", 10);
    EXPECT_EQ(content_of(box_path("m")), "0123456789");
    resize("m", 4);
    EXPECT_EQ(content_of(box_path("m")), "0123");
    resize("m", 8);
    EXPECT_EQ(content_of(box_path("m")), std::string("0123\0\0\0\0", 8));
    resize("m", 0);
    EXPECT_EQ(content_of(box_path("m")), "");
}

TEST_F(BlackBox, HoldsAtMostOneMebibyte)
{
    resize("m", 0x100000);
    struct stat status = {};
    ASSERT_EQ(stat(box_path("m").c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 0x100000);
    for (std::uint32_t size : {0x100001u, 0x80000000u, minus_one}) {
        EXPECT_EQ(get("m", size), nothing());
        EXPECT_EQ(result, -1);
    }
    ASSERT_EQ(stat(box_path("m").c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 0x100000) << "a refused get leaves the box alone";
}

TEST_F(BlackBox, NameHasAtMost54Characters)
{
    const std::string longest(54, 'n');
    resize(longest, 8);
    EXPECT_EQ(access(box_path(longest).c_str(), F_OK), 0);
    EXPECT_EQ(destroy(longest.c_str()), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_EQ(access(box_path(longest).c_str(), F_OK), -1);

    for (std::size_t length : {55u, 56u, 300u}) {
        const std::string name(length, 'n');
        EXPECT_EQ(get(name.c_str(), 8), nothing());
        EXPECT_EQ(result, -1);
    }
    EXPECT_EQ(calls("open").size(), 1u);
}

TEST_F(BlackBox, LengthTestSaysOneForTooLong)
{
    for (std::uint32_t good : {0u, 1u, 53u, 54u})
        EXPECT_EQ(DrvBootBlackBoxInvalidLen(good), 0u) << good;
    for (std::uint32_t bad : {55u, 56u, 0x7FFFFFFFu, minus_one - 10})
        EXPECT_EQ(DrvBootBlackBoxInvalidLen(bad), 1u) << bad;
}

TEST_F(BlackBox, EmptyNameIsAName)
{
    resize("", 3);
    EXPECT_EQ(content_of("/opt/moxv8/var/_blackbox"), std::string(3, '\0'));
}

TEST_F(BlackBox, NullNameIsRefusedInSilence)
{
    EXPECT_EQ(get(nullptr, 8), nothing());
    EXPECT_EQ(result, -1);
    EXPECT_EQ(destroy(nullptr), nothing());
    EXPECT_EQ(result, -1);
}

TEST_F(BlackBox, PathThatCannotBeFormedIsToldAsInformation)
{
    answer_platform("sprintf_s", -1);
    EXPECT_EQ(get("m", 8), information("[GetBlackBox]Format path of black box m unsuccessfully.\n"));
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(calls("open").empty());
}

TEST_F(BlackBox, FileThatDoesNotOpenIsReported)
{
    ASSERT_EQ(mkdir(box_path("m").c_str(), 0755), 0);
    EXPECT_EQ(
        get("m", 8),
        failure(text("Drvboot info:open /opt/moxv8/var/m_blackbox unsuccessfully, result is %d, fd is -1\n",
                     EISDIR)));
    EXPECT_EQ(result, -2);
    fail_libc("open", EMFILE);
    EXPECT_EQ(
        get("n", 8),
        failure(text("Drvboot info:open /opt/moxv8/var/n_blackbox unsuccessfully, result is %d, fd is -1\n",
                     EMFILE)));
    EXPECT_EQ(result, -2);
}

TEST_F(BlackBox, FileThatCannotBeResizedIsReportedAndClosed)
{
    put_file(box_path("m"), "old");
    fail_libc("ftruncate", ENOSPC);
    const Said said = get("m", 8);
    EXPECT_EQ(result, -7);
    ASSERT_EQ(calls("ftruncate").size(), 1u);
    EXPECT_EQ(calls("ftruncate")[0].size, 8u);
    const int fd = calls("ftruncate")[0].fd;
    EXPECT_EQ(said, failure(text("Drvboot info:ftruncate unsuccessfully, result is %d\n", ENOSPC)) +
                        report_of(fd, box_path("m")));
    EXPECT_EQ(fcntl(fd, F_GETFD), -1);
    EXPECT_EQ(content_of(box_path("m")), "old");
}

TEST_F(BlackBox, FileIdTakesAnyPathAndSize)
{
    const Said made = during([&] { result = DrvBootGetBlackBoxFileId("/tmp/own", 5); });
    EXPECT_EQ(made, nothing());
    ASSERT_GE(result, 0);
    EXPECT_EQ(content_of("/tmp/own"), std::string(5, '\0'));
    EXPECT_EQ(MOX_PutBlackbox(result), 0);

    const Said refused = during([&] { result = DrvBootGetBlackBoxFileId("/tmp/own", -1); });
    EXPECT_EQ(result, -7);
    EXPECT_EQ(refused, failure(text("Drvboot info:ftruncate unsuccessfully, result is %d\n", EINVAL)) +
                           report_of(calls("ftruncate").back().fd, "/tmp/own"));
}

TEST_F(BlackBox, PutOfWhatIsNotOpenGivesItsCode)
{
    EXPECT_EQ(during([&] { result = MOX_PutBlackbox(-1); }), nothing());
    EXPECT_EQ(result, -3);
    fail_libc("close", EIO);
    EXPECT_EQ(during([&] { result = MOX_PutBlackbox(200); }), nothing());
    EXPECT_EQ(result, -3);
}

// ---- destroy ---------------------------------------------------------------------------------------------

TEST_F(BlackBox, DestroyRemovesTheBoxOfThatName)
{
    put_file(box_path("m"), "gone");
    put_file(box_path("mm"), "stays");
    EXPECT_EQ(destroy("m"), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_EQ(access(box_path("m").c_str(), F_OK), -1);
    EXPECT_EQ(content_of(box_path("mm")), "stays");
}

TEST_F(BlackBox, DestroyOfNoBoxIsFine)
{
    EXPECT_EQ(destroy("none"), nothing());
    EXPECT_EQ(result, 0);
    put_file(box_path("m"), "stays");
    fail_libc("unlink", EROFS);
    EXPECT_EQ(destroy("m"), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_EQ(content_of(box_path("m")), "stays");
}

TEST_F(BlackBox, DestroyRefusesWhatGetRefuses)
{
    const std::string name(55, 'n');
    put_file(box_path(name), "stays");
    EXPECT_EQ(destroy(name.c_str()), nothing());
    EXPECT_EQ(result, -1);
    put_file(box_path("m"), "stays");
    answer_platform("sprintf_s", -1);
    EXPECT_EQ(destroy("m"), nothing());
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(calls("unlink").empty());
}

TEST_F(BlackBox, OpenHandleOutlivesItsBox)
{
    ASSERT_EQ(get("m", 4), nothing());
    EXPECT_EQ(MOX_DestroyBlackbox("m"), 0);
    const std::uint8_t bytes[4] = {'a', 'b', 'c', 'd'};
    EXPECT_EQ(MOX_WriteBlackbox(result, 0, 4, bytes), 4);
    std::uint8_t back[4] = {};
    EXPECT_EQ(MOX_ReadBlackbox(result, 0, 4, back), 4);
    EXPECT_EQ(back[3], 'd');
    EXPECT_EQ(MOX_PutBlackbox(result), 0);
}

} // namespace
