// SPDX-License-Identifier: Apache-2.0
// The revocation list that the secure driver keeps.
#include "platform/flash_area.hpp"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace
{

namespace fs = std::filesystem;
using testing::UnorderedElementsAre;

class SecureDriverList : public testing::Test, protected test::FlashFolder
{
  protected:
    SecureDriverList()
    {
        fs::create_directory(folder);
    }
    std::optional<std::string> list() const
    {
        return content(path_of(test::list_name));
    }
};

TEST_F(SecureDriverList, IsTheLatestThatWasHandedOver)
{
    for (const size_t size : {2500u, 1u, 70'000u}) {
        std::string bytes(size, '\0');
        for (size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i * 7 + size);
        EXPECT_EQ(test::hand_over(bytes), 0u);
        EXPECT_EQ(list(), bytes) << size;
    }
    EXPECT_THAT(names(), UnorderedElementsAre(test::list_name));
}

TEST_F(SecureDriverList, IsForTheSystemAlone)
{
    const mode_t before = umask(0);
    EXPECT_EQ(test::hand_over("list"), 0u);
    umask(before);
    struct stat status = {};
    ASSERT_EQ(stat(path_of(test::list_name).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, mode_t{S_IFREG | 0600});
}

TEST_F(SecureDriverList, StaysWhenNothingIsHandedOver)
{
    EXPECT_EQ(test::hand_over("list"), 0u);
    EXPECT_NE(drv_crl_patch_write(nullptr, 4), 0u);
    EXPECT_NE(test::hand_over(""), 0u);
    EXPECT_EQ(list(), "list");
}

TEST_F(SecureDriverList, IsRefusedWhereThereIsNoPlaceForIt)
{
    setenv("MOXPLATFORM_CRL", (folder + "/missing/list").c_str(), 1);
    EXPECT_NE(test::hand_over("list"), 0u);
    EXPECT_THAT(names(), UnorderedElementsAre());
}

TEST_F(SecureDriverList, NamesNoPlaceByAnEmptyVariable)
{
    if (fs::exists("/opt/moxv8"))
        GTEST_SKIP() << "the list would go to the platform's own place";
    setenv("MOXPLATFORM_CRL", "", 1);
    EXPECT_NE(test::hand_over("list"), 0u);
}

} // namespace
