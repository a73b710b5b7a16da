// SPDX-License-Identifier: Apache-2.0
#include "vboard/model/profile.hpp"

#include <gmock/gmock.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <tuple>

namespace fs = std::filesystem;
using testing::HasSubstr;
using vboard::Profile;

namespace
{

const fs::path boards = VBOARD_BOARDS;

std::vector<Profile> all_boards()
{
    std::vector<Profile> profiles;
    for (const std::string &name : vboard::list_profiles(boards))
        profiles.push_back(vboard::load_profile(boards / (name + ".toml")));
    return profiles;
}

std::uint32_t hard_type(const Profile &profile)
{
    return profile.items.at("/dev/board0").at(0x8000001);
}

TEST(Profile, EveryBoardLoadsAndHasEveryItem)
{
    const std::uint32_t board_items[] = {
        0x8000001,  0x10002987, 0x1000299d, 0x10002980, 0x10002982, 0x10002858, 0x10002205, 0x10003044,
        0x100030ad, 0x10002801, 0x1000474b, 0x100030a9, 0x10004723, 0x1100aaaa, 0x10004725, 0x10004726,
        0x1000221e, 0x10002808, 0x1000280a, 0x7f000001, 0x1000280e, 0x10002800, 0x10002200, 0x100029b4};
    const std::uint32_t chassis_items[] = {0x8000001, 0x8000003, 0x10002400};
    for (const Profile &profile : all_boards()) {
        for (const std::uint32_t item : board_items)
            EXPECT_TRUE(profile.items.at("/dev/board0").contains(item)) << profile.name << std::hex << item;
        for (const std::uint32_t item : chassis_items)
            EXPECT_TRUE(profile.items.at("/dev/chassis0").contains(item)) << profile.name << std::hex << item;
        for (int slot = 1; slot <= 32; ++slot)
            EXPECT_TRUE(profile.items.at("/dev/slot" + std::to_string(slot)).contains(0x10002202))
                << profile.name;
        const std::string own = "/dev/slot" + std::to_string(profile.items.at("/dev/board0").at(0x10002800));
        EXPECT_EQ(profile.items.at(own).at(0x10002202), 1u) << profile.name << " is not in its own slot";
        EXPECT_TRUE(profile.items.at(own).contains(0x10002636)) << profile.name;
        EXPECT_FALSE(profile.description.empty()) << profile.name;
        EXPECT_TRUE(profile.boot_env.contains("BOOTMEDIA")) << profile.name;
        EXPECT_TRUE(profile.platform_env.contains("actx_led_support")) << profile.name;
        EXPECT_THAT(profile.footprint, HasSubstr("t0_s=")) << profile.name;
        EXPECT_THAT(profile.footprint, HasSubstr("t0_ms=")) << profile.name;
        EXPECT_THAT(profile.footprint, HasSubstr("t0_des=")) << profile.name;
        EXPECT_NE(hard_type(profile), 0u) << profile.name;
    }
}

TEST(Profile, BoardsDifferAndAreCalledAsTheirFiles)
{
    const auto profiles = all_boards();
    ASSERT_GE(profiles.size(), 12u);
    std::set<std::string> descriptions;
    std::set<std::array<std::uint8_t, 6>> addresses;
    // Some differ only in what their environments say of the product.
    std::set<std::tuple<decltype(Profile::items), decltype(Profile::boot_env), decltype(Profile::memory_env)>>
        makes;
    const auto names = vboard::list_profiles(boards);
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        EXPECT_EQ(profiles[i].name, names[i]);
        descriptions.insert(profiles[i].description);
        addresses.insert(profiles[i].address);
        makes.insert({profiles[i].items, profiles[i].boot_env, profiles[i].memory_env});
    }
    EXPECT_EQ(descriptions.size(), profiles.size());
    EXPECT_EQ(addresses.size(), profiles.size());
    EXPECT_EQ(makes.size(), profiles.size());
}

TEST(Profile, BoardsCoverTheFamiliesThatTheLibraryTellsApart)
{
    std::set<std::uint32_t> types, cpus, chassis;
    std::set<std::string> led, media;
    for (const Profile &profile : all_boards()) {
        types.insert(hard_type(profile));
        cpus.insert(profile.items.at("/dev/board0").at(0x10002801));
        chassis.insert(profile.items.at("/dev/chassis0").at(0x8000001));
        led.insert(profile.platform_env.at("actx_led_support"));
        media.insert(profile.boot_env.at("BOOTMEDIA"));
    }
    // Types that stand for: a pair, root backup, both Qs families, the next generation of both, A53le, each
    // line card range, and a board that is neither; with them every OS type there is.
    for (const std::uint32_t type : {0x900005e6u, 0x900005d1u, 0x900005d2u, 0x90020757u, 0x90020759u,
                                     0x900005f3u, 0x9000054bu, 0x900005f8u, 0x90020709u, 0x90422022u,
                                     0x90020786u, 0x9002202au, 0x10000a42u, 0x900034b9u, 0x90000869u})
        EXPECT_TRUE(types.contains(type)) << std::hex << type;
    for (const std::uint32_t cpu : {10u, 4u, 9u, 1u})
        EXPECT_TRUE(cpus.contains(cpu)) << cpu;
    EXPECT_GE(chassis.size(), 3u);
    EXPECT_THAT(led, testing::ElementsAre("0", "1"));
    EXPECT_TRUE(media.contains("NAND") && media.contains("SPI") && media.contains("SFC"));
}

TEST(Profile, SaysOnlyWhatDiffersFromTheBaseBoard)
{
    const Profile profile = vboard::parse_profile(R"(
address = "0a:Bc:00:01:02:ff"
occupied-slots = [2, 32]
logic-id = 0x6001
footprint = "t0_s=1\n"
[items."/dev/board0"]
"hard type" = 0x90020709
"0x10002987" = 2
"slot number" = 32
[items."/dev/slot2"]
"0xabcdef01" = 4294967295
[boot-env]
one = "1"
[memory-env]
two = "2"
)",
                                                  "/somewhere/my-board.toml");
    EXPECT_EQ(profile.name, "my-board");
    EXPECT_EQ(profile.address, (std::array<std::uint8_t, 6>{0x0a, 0xbc, 0, 1, 2, 0xff}));
    EXPECT_EQ(hard_type(profile), 0x90020709u);
    EXPECT_EQ(profile.items.at("/dev/board0").at(0x10002987), 2u);
    EXPECT_EQ(profile.items.at("/dev/board0").at(0x10002801), 1u) << "as on the base board";
    EXPECT_EQ(profile.items.at("/dev/slot1").at(0x10002202), 0u);
    EXPECT_EQ(profile.items.at("/dev/slot2").at(0x10002202), 1u);
    EXPECT_EQ(profile.items.at("/dev/slot2").at(0xabcdef01), 0xffffffffu);
    EXPECT_EQ(profile.items.at("/dev/slot32").at(0x10002636), 0x6001u);
    EXPECT_EQ(profile.boot_env.at("one"), "1");
    EXPECT_EQ(profile.memory_env.at("two"), "2");
    EXPECT_EQ(profile.platform_env.at("actx_led_support"), "0");
}

TEST(Profile, TellsOfWatchdogMcuAndTheLastReset)
{
    const Profile plain = vboard::parse_profile("", "b.toml");
    EXPECT_EQ(plain.watchdog_period_ms, 1000u);
    EXPECT_EQ(plain.watchdog_threshold, 10u);
    EXPECT_EQ(plain.items.at("/dev/board0").at(0x7f000001), 1u) << "no MCU is online";
    EXPECT_TRUE(plain.mcu_die_id.empty());
    EXPECT_TRUE(plain.reset_reason_record.empty());

    const Profile profile = vboard::parse_profile(R"(
watchdog-period-ms = 250
watchdog-threshold = 1
mcu-die-id = "00fFa5"
[reset]
reason = 0x10100d9
date = 2026-11-21T08:30:59
)",
                                                  "b.toml");
    EXPECT_EQ(profile.watchdog_period_ms, 250u);
    EXPECT_EQ(profile.watchdog_threshold, 1u);
    EXPECT_EQ(profile.mcu_die_id, (vboard::Bytes{0, 0xff, 0xa5}));
    EXPECT_EQ(profile.reset_reason_record, (vboard::Bytes{0xd9, 0, 1, 1, 0xea, 0x07, 11, 21, 8, 30, 59, 0}));
    EXPECT_EQ(vboard::parse_profile("[reset]\nreason = 1", "b.toml").reset_reason_record,
              (vboard::Bytes{1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(Profile, SomeBoardsHaveAnMcuWithAnId)
{
    std::set<std::size_t> sizes;
    for (const Profile &profile : all_boards())
        if (profile.items.at("/dev/board0").at(0x7f000001) == 0)
            sizes.insert(profile.mcu_die_id.size());
    EXPECT_THAT(sizes, testing::ElementsAre(8u, 16u, 32u));
}

TEST(Profile, ErrorsNameFileLineAndWhatIsWrong)
{
    const std::string long_text(256, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"\ncolour = 1", "b.toml:2: unknown key \"colour\""},
        {"description = 1", "b.toml:1: \"description\" must be a text"},
        {"address = \"00:01\"", "b.toml:1: \"address\" must be six bytes as in \"00:1b:63:84:45:e6\""},
        {"address = \"00:01:02:03:04:0x\"", "b.toml:1: \"address\" must be six bytes"},
        {"address = \"00-01-02-03-04-05\"", "b.toml:1: \"address\" must be six bytes"},
        {"address = \"00:01:02:03:04:05:06\"", "b.toml:1: \"address\" must be six bytes"},
        {"watchdog-period-ms = 0", "b.toml:1: \"watchdog-period-ms\" must be at least 1"},
        {"watchdog-threshold = 0", "b.toml:1: \"watchdog-threshold\" must be at least 1"},
        {"watchdog-threshold = -1", "b.toml:1: \"watchdog-threshold\" must be between 0 and 0xffffffff"},
        {"mcu-die-id = \"\"", "b.toml:1: \"mcu-die-id\" must be 1 to 32 bytes"},
        {"mcu-die-id = \"0\"", "b.toml:1: \"mcu-die-id\" must be 1 to 32 bytes"},
        {"mcu-die-id = \"0x\"", "b.toml:1: \"mcu-die-id\" must be 1 to 32 bytes"},
        {"mcu-die-id = \"" + std::string(66, '0') + "\"", "b.toml:1: \"mcu-die-id\" must be 1 to 32 bytes"},
        {"crl-module = 1", "b.toml:1: \"crl-module\" must be true or false"},
        {"tpm2 = \"yes\"", "b.toml:1: \"tpm2\" must be true or false"},
        {"cgroup = []", "b.toml:1: \"cgroup\" must be true or false"},
        {"boot-files = \"Image\"", "b.toml:1: \"boot-files\" must be a list of file names"},
        {"boot-files = [1]", "b.toml:1: \"boot-files\" must be a text"},
        {"boot-files = [\"\"]", "b.toml:1: \"\" cannot be the name of a file in \"/boot\""},
        {"boot-files = [\n\"..\"]", "b.toml:2: \"..\" cannot be the name of a file"},
        {"boot-files = [\"a/b\"]", "b.toml:1: \"a/b\" cannot be the name of a file"},
        {"boot-files = [\"a\\u0000\"]", "cannot be the name of a file"},
        {"boot-files = [\"" + long_text + "\"]", "cannot be the name of a file"},
        {"boot-files = [\"a\", \"b\", \"a\"]", "b.toml:1: \"boot-files\" names \"a\" twice"},
        {"[items.\"/dev/board0\"]\n\"tpm active\" = true", "b.toml:2: \"tpm active\" must be a whole number"},
        {"reset = 1", "b.toml:1: \"reset\" must be a table"},
        {"[reset]", "b.toml:1: \"reset\" needs a \"reason\""},
        {"[reset]\ndate = 2026-11-21T08:30:00", "b.toml:1: \"reset\" needs a \"reason\""},
        {"[reset]\nreason = 0", "b.toml:2: \"reason\" must be at least 1"},
        {"[reset]\nreason = 1\ncolour = 1", "b.toml:3: unknown key \"colour\" of \"reset\""},
        {"[reset]\nreason = 1\ndate = 2026-11-31T08:30:00", "b.toml:3: "},
        {"[reset]\nreason = 1\ndate = 2026-11-21T08:30:00Z", "b.toml:3: \"date\" must be a date and time"},
        {"[reset]\nreason = 1\ndate = \"2026\"", "b.toml:3: \"date\" must be a date and time without a zone"},
        {"[items.\"/dev/board0\"]\n\"mcu die id\" = 4",
         "b.toml:2: the MCU's die id is given as \"mcu-die-id\""},
        {"[items.\"/dev/board0\"]\n\"reset reason record\" = 4",
         "b.toml:2: the reset reason record is given as \"reset\""},
        {"[items.\"/dev/board0\"]\n\"0x10002208\" = 4",
         "b.toml:2: the reset mode record is the driver's to write"},
        {"occupied-slots = 3", "b.toml:1: \"occupied-slots\" must be a list of slot numbers"},
        {"occupied-slots = [\n1,\n33]", "b.toml:3: there is no slot 33"},
        {"occupied-slots = [0]", "b.toml:1: there is no slot 0"},
        {"logic-id = -1", "b.toml:1: \"logic-id\" must be between 0 and 0xffffffff"},
        {"logic-id = 0x100000000", "b.toml:1: \"logic-id\" must be between 0 and 0xffffffff"},
        {"items = 1", "b.toml:1: \"items\" must be a table"},
        {"[items.\"/dev/envinfo0\"]\na = 1", "no device \"/dev/envinfo0\" has items"},
        {"[items.\"/dev/board0\"]\n\n\"colour\" = 1", "b.toml:3: /dev/board0 has no item \"colour\""},
        {"[items.\"/dev/board0\"]\n\"0x1234567890\" = 1",
         "b.toml:2: /dev/board0 has no item \"0x1234567890\""},
        {"[items.\"/dev/board0\"]\n\"cpu id\" = \"4\"", "b.toml:2: \"cpu id\" must be a whole number"},
        {"[items.\"/dev/board0\"]\n\"hardware address\" = 4",
         "b.toml:2: the hardware address is given as \"address\""},
        {"[boot-env]\na = 1", "b.toml:2: \"a\" must be a text"},
        {"[boot-env]\n\"a=b\" = \"1\"", "b.toml:2: \"a=b\" cannot be the name of a variable"},
        {"[boot-env]\na = \"" + long_text + "\"",
         "b.toml:2: the value of \"a\" has more than 255 characters"},
        {"a = \n", "b.toml:1: "},
        {"a = 1\na = 2", "b.toml:2: "},
    };
    for (const auto &[text, words] : cases) {
        try {
            vboard::parse_profile(text, "b.toml");
            ADD_FAILURE() << text;
        } catch (const vboard::ProfileError &error) {
            EXPECT_THAT(error.what(), HasSubstr(words)) << text;
        }
    }
}

TEST(Profile, IsFoundByNameOrFile)
{
    const fs::path directories[] = {"/nonexistent-but-first", boards};
    EXPECT_THROW(vboard::find_profile("qs3540-mpu", directories), vboard::ProfileError);
    const fs::path only[] = {boards};
    EXPECT_EQ(vboard::find_profile("qs3540-mpu", only), boards / "qs3540-mpu.toml");
    const std::string file = boards / "other-board.toml";
    EXPECT_EQ(vboard::find_profile(file, {}), file);
    try {
        vboard::find_profile("nonesuch", only);
        ADD_FAILURE();
    } catch (const vboard::ProfileError &error) {
        EXPECT_THAT(error.what(), HasSubstr("there is no board \"nonesuch\"; there are a53le-mpu, "));
    }
    EXPECT_THROW(vboard::find_profile("./nonesuch.toml", only), vboard::ProfileError);
    EXPECT_THROW(vboard::load_profile("/nonexistent/x.toml"), vboard::ProfileError);
    EXPECT_THROW(vboard::load_profile(boards), vboard::ProfileError) << "a directory";
}

TEST(Profile, TakesAnyHardType)
{
    const Profile profile = vboard::with_hard_type(all_boards().front(), 0x4711);
    EXPECT_EQ(hard_type(profile), 0x4711u);
}

} // namespace
