// SPDX-License-Identifier: Apache-2.0
// A product with boxes in NVRAM puts its own functions in front of the library's.
#include "state/blackbox_test.hpp"

#include <cerrno>
#include <dlfcn.h>

namespace
{

// What the product's NVRAM has, and what it was asked.
struct Nvram {
    std::uint32_t has = 1;
    std::int32_t index = -2;
    std::vector<std::string> asked;
};
Nvram nvram;

} // namespace

extern "C" {

uint32_t DrvBootHasNvramBlackBox(void)
{
    return nvram.has;
}

int32_t DrvBootGetNvramBoxIndex(const char *name, uint32_t size)
{
    nvram.asked.push_back(test::text("index %s %u", name, size));
    return nvram.index;
}

int32_t DrvBootReadNvramBoxIndex(uint32_t index, uint32_t offset, uint32_t length, uint8_t *buffer)
{
    nvram.asked.push_back(test::text("read %u %u %u", index, offset, length));
    *buffer = 'N';
    return 21;
}

int32_t DrvBootWriteNvramBoxIndex(uint32_t index)
{
    nvram.asked.push_back(test::text("write %u", index));
    return 22;
}

void DrvBootClearNvramBoxIndex(void)
{
    nvram.asked.push_back("clear");
}

} // extern "C"

namespace test
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;

class NvramBox : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        nvram = {};
    }
    Said destroy(const char *name)
    {
        nvram.asked.clear();
        return during([&] { result = MOX_DestroyBlackbox(name); });
    }
    std::int32_t result = 99;
    std::uint8_t byte = 'x';
};

TEST_F(NvramBox, KnownNameGivesItsIndexAsAHandle)
{
    for (std::int32_t index : {0, 5}) {
        nvram.index = index;
        nvram.asked.clear();
        EXPECT_EQ(during([&] { result = MOX_GetBlackbox("m", 100); }),
                  information(text("[GetBlackbox]Nvram m GetNvramBoxIndex: %d.", index)));
        EXPECT_EQ(result, 0x10000 + index);
        EXPECT_THAT(nvram.asked, ElementsAre("index m 100"));
    }
    EXPECT_TRUE(calls("open").empty());
}

TEST_F(NvramBox, IndexCountsAlsoOnABoardThatSaysItHasNone)
{
    nvram.has = 0;
    nvram.index = 1;
    EXPECT_EQ(MOX_GetBlackbox("m", 100), 0x10001);
}

TEST_F(NvramBox, UnknownNameIsAFile)
{
    for (std::int32_t index : {-1, -2}) {
        nvram.index = index;
        EXPECT_EQ(during([&] { result = MOX_GetBlackbox("m", 100); }), nothing());
        ASSERT_GE(result, 0);
        EXPECT_LT(result, 0x10000);
        EXPECT_EQ(MOX_PutBlackbox(result), 0);
    }
}

TEST_F(NvramBox, RefusedArgumentsAreNotAskedFor)
{
    EXPECT_EQ(MOX_GetBlackbox(nullptr, 1), -1);
    EXPECT_EQ(MOX_GetBlackbox("m", 0x100001), -1);
    EXPECT_EQ(MOX_GetBlackbox(std::string(55, 'n').c_str(), 1), -1);
    EXPECT_EQ(MOX_DestroyBlackbox(nullptr), -1);
    EXPECT_EQ(MOX_DestroyBlackbox(std::string(55, 'n').c_str()), -1);
    EXPECT_THAT(nvram.asked, IsEmpty());
}

TEST_F(NvramBox, ReadAndWriteGoToNvramByIndex)
{
    EXPECT_EQ(during([&] { result = MOX_ReadBlackbox(0x10000, 3, 4, &byte); }), nothing());
    EXPECT_EQ(result, 21);
    EXPECT_EQ(byte, 'N');
    EXPECT_EQ(MOX_ReadBlackbox(0x10007, 0xFFFFFFFF, 9, &byte), 21);
    EXPECT_EQ(MOX_WriteBlackbox(0x10000, 3, 4, &byte), 22);
    EXPECT_EQ(MOX_WriteBlackbox(0x10009, 0, 0, &byte), 22);
    EXPECT_THAT(nvram.asked, ElementsAre("read 0 3 4", "read 7 4294967295 9", "write 0", "write 9"));
    EXPECT_TRUE(calls("fstat").empty());
}

TEST_F(NvramBox, NullBufferIsRefusedFirst)
{
    EXPECT_EQ(MOX_ReadBlackbox(0x10000, 0, 1, nullptr), -1);
    EXPECT_EQ(MOX_WriteBlackbox(0x10000, 0, 1, nullptr), -1);
    EXPECT_THAT(nvram.asked, IsEmpty());
}

TEST_F(NvramBox, DescriptorsBelowTheRangeAreFiles)
{
    const std::int32_t handle = MOX_GetBlackbox("m", 8);
    nvram.asked.clear();
    EXPECT_EQ(MOX_WriteBlackbox(handle, 7, 1, &byte), 1);
    EXPECT_EQ(MOX_ReadBlackbox(handle, 7, 1, &byte), 1);
    EXPECT_EQ(byte, 'x');
    EXPECT_EQ(MOX_ReadBlackbox(0xFFFF, 0, 1, &byte), -8);
    EXPECT_EQ(MOX_WriteBlackbox(0xFFFF, 0, 1, &byte), -8);
    // The file path of a write never asks NVRAM.
    EXPECT_EQ(MOX_WriteBlackboxOfNonNvram(0x10000, 0, 1, &byte), -8);
    EXPECT_THAT(nvram.asked, IsEmpty());
    EXPECT_EQ(MOX_PutBlackbox(handle), 0);
}

TEST_F(NvramBox, WithoutNvramAHandleOfItsRangeIsADescriptor)
{
    nvram.has = 0;
    EXPECT_EQ(MOX_ReadBlackbox(0x10000, 0, 1, &byte), -8);
    EXPECT_EQ(MOX_WriteBlackbox(0x10000, 0, 1, &byte), -8);
    EXPECT_THAT(nvram.asked, IsEmpty());
}

// ---- destroy ---------------------------------------------------------------------------------------------

TEST_F(NvramBox, DestroyOfAKnownNameClearsItsIndexAndItsFile)
{
    nvram.index = 0;
    put_file(box_path("m"), "gone");
    EXPECT_EQ(destroy("m"), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_THAT(nvram.asked, ElementsAre(testing::StartsWith("index m "), "clear"));
    EXPECT_EQ(access(box_path("m").c_str(), F_OK), -1);
    // A file that is not there does not matter then.
    EXPECT_EQ(destroy("m"), nothing());
    EXPECT_EQ(result, 0);
    answer_platform("sprintf_s", -1);
    EXPECT_EQ(destroy("m"), nothing());
    EXPECT_EQ(result, -1);
}

TEST_F(NvramBox, DestroyOfAnUnknownNameNeedsItsFile)
{
    put_file(box_path("m"), "gone");
    EXPECT_EQ(destroy("m"), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_THAT(nvram.asked, ElementsAre(testing::StartsWith("index m ")));
    EXPECT_EQ(destroy("m"), failure(text("[Destroy Blackbox]unlink errno is %d.\n", ENOENT)));
    EXPECT_EQ(result, -9);
    fail_libc("unlink", EROFS);
    EXPECT_EQ(destroy("m"), failure(text("[Destroy Blackbox]unlink errno is %d.\n", EROFS)));
    EXPECT_EQ(result, -9);
    answer_platform("sprintf_s", -1);
    EXPECT_EQ(destroy("m"), nothing());
    EXPECT_EQ(result, -1);
}

TEST_F(NvramBox, DestroyWithoutNvramAsksNothing)
{
    nvram.has = 0;
    nvram.index = 3;
    EXPECT_EQ(destroy("m"), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_THAT(nvram.asked, IsEmpty());
}

// What stands behind the product's functions: a board without boxes in NVRAM.
TEST_F(NvramBox, TheLibrarysOwnFunctionsKnowNoBox)
{
    const auto own = [](const char *name) {
        void *found = dlsym(RTLD_NEXT, name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    };
    EXPECT_EQ(reinterpret_cast<uint32_t (*)()>(own("DrvBootHasNvramBlackBox"))(), 0u);
    EXPECT_EQ(reinterpret_cast<int32_t (*)(const char *, uint32_t)>(own("DrvBootGetNvramBoxIndex"))("m", 1),
              -2);
    EXPECT_EQ(reinterpret_cast<int32_t (*)(uint32_t, uint32_t, uint32_t, uint8_t *)>(
                  own("DrvBootReadNvramBoxIndex"))(0, 0, 1, &byte),
              -1);
    EXPECT_EQ(byte, 'x');
    EXPECT_EQ(reinterpret_cast<int32_t (*)(uint32_t)>(own("DrvBootWriteNvramBoxIndex"))(0), -1);
    reinterpret_cast<void (*)()>(own("DrvBootClearNvramBoxIndex"))();
    EXPECT_THAT(nvram.asked, IsEmpty());
}

} // namespace
} // namespace test
