// SPDX-License-Identifier: Apache-2.0
// A product's own definitions stand in front of the library's, and the models that build upon them then ask
// those.
#include "support/board_test.hpp"

#include <moxboot/model.h>
#include <moxboot/work_mode.h>

namespace
{

struct Asked {
    std::uint8_t before;
    std::uintptr_t argument;
    bool operator==(const Asked &) const = default;
};
std::vector<Asked> asked; // predicates: the flag they were given, and the argument
std::uint8_t answer;
constexpr std::uint8_t answers[] = {0, 1, 2};
std::uint32_t service_type;
std::vector<std::uint32_t> list;

std::uint32_t say(std::uint8_t *flag, std::uintptr_t argument)
{
    asked.push_back({*flag, argument});
    *flag = answer;
    return 0;
}

} // namespace

extern "C" {

std::uint32_t DrvBoot_IsInstallRunFile_KYP247(std::uint8_t *flag, std::uintptr_t argument)
{
    return say(flag, argument);
}

std::uint32_t DrvBoot_PtnMode(std::uint8_t *flag, std::uintptr_t)
{
    asked.push_back({*flag, 0});
    *flag = 1;
    return 0;
}

std::uint32_t DrvBoot_GetProductServiceType(std::uint32_t *type)
{
    *type = service_type;
    return 0;
}

std::uint32_t DrvBootInstallRunFile(const std::uint32_t *types, std::int32_t count, std::uint8_t *flag,
                                    std::uint32_t)
{
    list.assign(types, types + count);
    asked.push_back({*flag, 0});
    *flag = answer;
    return 0;
}

} // extern "C"

namespace test
{
namespace
{

class ModelOverrideTest : public BoardTest
{
  protected:
    ModelOverrideTest()
    {
        asked.clear();
        list.clear();
    }
    std::uint8_t flag = 0xAA;
};

TEST_F(ModelOverrideTest, AModelInPtnModeAsksThePlainOneAndTheModeWithClearedFlags)
{
    for (std::uint8_t said : answers) {
        asked.clear();
        answer = said;
        EXPECT_EQ(DrvBoot_IsInstallPtnRunFile_KYP247(&flag, 77), 0u);
        EXPECT_EQ(flag, said == 1 ? 1 : 0);
        EXPECT_EQ(asked, (std::vector<Asked>{{0, 0}, {0, 0}}));
    }
    EXPECT_TRUE(operations().empty());
}

TEST_F(ModelOverrideTest, TheServiceTypeIsAskedOfTheProduct)
{
    be(0x90020720);
    for (std::uint32_t type : {148u, 147u}) {
        service_type = type;
        EXPECT_EQ(DrvBoot_InstallKYP362VHWithoutPack(&flag, 0), 0u);
        EXPECT_EQ(flag, type == 148 ? 1 : 0);
    }
    EXPECT_THAT(requests(), testing::Each("get /dev/board0 0x8000001"));
}

TEST_F(ModelOverrideTest, AListIsAskedOfTheProduct)
{
    for (std::uint8_t said : answers) {
        answer = said;
        EXPECT_EQ(DrvBootInstallRunFileKYP467R(&flag, 0), 0u);
        EXPECT_EQ(flag, said);
        EXPECT_EQ(list, (std::vector<std::uint32_t>{0x90020709, 0x9002071F}));
        asked.clear();
        list.clear();
        EXPECT_EQ(DrvBootInstallRunFileKYP467RPtnMode(&flag, 0), 0u);
        EXPECT_EQ(flag, said == 1 ? 1 : 0);
        EXPECT_EQ(list, (std::vector<std::uint32_t>{0x90020709, 0x9002071F}));
        EXPECT_EQ(asked, (std::vector<Asked>{{0, 0}, {0, 0}}));
    }
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
