// SPDX-License-Identifier: Apache-2.0
// What profiles say about TPMs, measured images, revocation lists and product names.
#include "platform/tpm.hpp"
#include "vboard/model/profile.hpp"

#include <gmock/gmock.h>
#include <mbedtls/sha256.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <set>

namespace
{

using testing::ElementsAre;
using vboard::Profile;

constexpr const char *board0 = "/dev/board0";

std::vector<Profile> all_boards()
{
    const std::filesystem::path boards = VBOARD_BOARDS;
    std::vector<Profile> profiles;
    for (const std::string &name : vboard::list_profiles(boards))
        profiles.push_back(vboard::load_profile(boards / (name + ".toml")));
    return profiles;
}

std::uint32_t hard_type(const Profile &profile)
{
    return profile.items.at(board0).at(0x8000001);
}

std::string sha256(const std::string &text)
{
    std::array<unsigned char, 32> digest{};
    EXPECT_EQ(mbedtls_sha256_ret(reinterpret_cast<const unsigned char *>(text.data()), text.size(),
                                 digest.data(), 0),
              0);
    std::string digits;
    for (const unsigned char byte : digest) {
        char two[3];
        std::snprintf(two, sizeof two, "%02x", byte);
        digits += two;
    }
    return digits;
}

// Which file a hash variable is about, on the boards of one measurement type.
struct Image {
    const char *variable, *keyword;
};
struct MeasuredBoards {
    std::set<std::uint32_t> hard_types;
    std::vector<Image> images;
};
const MeasuredBoards measured[] = {
    {{0x90000713}, {{"esbc", "bios_qs3520"}, {"kernel", "Image"}, {"initrd", "initrd"}, {"dtb", "dtb"}}},
    {{0x9002077b, 0x90020757, 0x9002202a, 0x90020720},
     {{"esbc", "esbc_qs3540_mpu.bin"}, {"bios", "bios_qs3540"}, {"ospkg", "ospkg_qs3540"}}},
    {{0x90b2077d}, {{"bios", "bios_qs3520"}, {"ospkg", "ospkg_qs3520"}}},
};

// The files that the keyword finds; those with "priv" in their names it passes over.
std::vector<std::string> found(const Profile &profile, const std::string &keyword)
{
    std::vector<std::string> names;
    for (const std::string &name : profile.boot_files)
        if (name.find(keyword) != std::string::npos && name.find("priv") == std::string::npos)
            names.push_back(name);
    return names;
}

TEST(TrustProfile, SaysNothingOnTheBaseBoard)
{
    const Profile profile = vboard::parse_profile("", "b.toml");
    EXPECT_FALSE(profile.crl_module || profile.tpm2 || profile.cgroup);
    EXPECT_TRUE(profile.boot_files.empty());
    for (const std::uint32_t item :
         {platform::item_tpm_active, platform::item_tpm_online, platform::item_secure_boot})
        EXPECT_FALSE(profile.items.at(board0).contains(item)) << "such a board cannot be asked";
}

TEST(TrustProfile, IsReadFromItsKeys)
{
    const Profile profile = vboard::parse_profile(R"(
name = "mine"
crl-module = true
tpm2 = true
cgroup = true
boot-files = ["Image-5.10", "x.dtb"]
[items."/dev/board0"]
"tpm active" = 1
"tpm online" = 0
"secure boot" = 1
)",
                                                  "b.toml");
    EXPECT_TRUE(profile.crl_module && profile.tpm2 && profile.cgroup);
    EXPECT_THAT(profile.boot_files, ElementsAre("Image-5.10", "x.dtb"));
    EXPECT_EQ(vboard::boot_file_content(profile, "x.dtb"), "x.dtb of the virtual board mine\n");
    EXPECT_EQ(profile.items.at(board0).at(0x7f000003), 1u);
    EXPECT_EQ(profile.items.at(board0).at(0x7f000004), 0u);
    EXPECT_EQ(profile.items.at(board0).at(0x7f000005), 1u);
    const Profile without =
        vboard::parse_profile("crl-module = false\ntpm2 = false\nboot-files = []", "b.toml");
    EXPECT_FALSE(without.crl_module || without.tpm2);
}

TEST(TrustProfile, EveryMeasurementTypeHasABoardWithAllItsImages)
{
    for (const MeasuredBoards &type : measured) {
        std::set<std::uint32_t> with_images;
        unsigned complete = 0;
        for (const Profile &profile : all_boards()) {
            if (!type.hard_types.contains(hard_type(profile)) || profile.boot_files.empty())
                continue;
            with_images.insert(hard_type(profile));
            const auto has_all = [&](const Image &image) {
                const std::string variable = image.variable;
                return found(profile, image.keyword).size() == 1 &&
                       profile.boot_env.contains(variable + "_filehash") &&
                       profile.boot_env.contains(variable + "_usepatch");
            };
            const bool equipped = profile.tpm2 && profile.crl_module && profile.cgroup;
            complete += equipped && std::ranges::all_of(type.images, has_all) ? 1 : 0;
        }
        EXPECT_EQ(complete, 1u) << std::hex << *type.hard_types.begin();
        EXPECT_EQ(with_images, type.hard_types);
    }
}

TEST(TrustProfile, HashesAreThoseOfTheFiles)
{
    unsigned hashes = 0;
    for (const Profile &profile : all_boards()) {
        for (const auto &[name, value] : profile.boot_env) {
            const std::size_t end = name.find("_filehash");
            if (end == std::string::npos)
                continue;
            for (const MeasuredBoards &type : measured) {
                for (const Image &image : type.images) {
                    if (!type.hard_types.contains(hard_type(profile)) ||
                        name.substr(0, end) != image.variable)
                        continue;
                    const std::vector<std::string> files = found(profile, image.keyword);
                    ASSERT_EQ(files.size(), 1u) << profile.name << " " << name;
                    EXPECT_EQ(value, sha256(boot_file_content(profile, files.front())))
                        << profile.name << " " << name;
                    ++hashes;
                }
            }
        }
    }
    EXPECT_EQ(hashes, 4u + 3u + 4u * 3u + 2u);
}

TEST(TrustProfile, SomeBoardsCanBeAskedAndSomeCannot)
{
    std::set<std::string> active, online, secure;
    const auto told = [](const Profile &profile, std::uint32_t item) {
        const auto &items = profile.items.at(board0);
        return items.contains(item) ? std::to_string(items.at(item)) : "not";
    };
    for (const Profile &profile : all_boards()) {
        active.insert(told(profile, platform::item_tpm_active));
        online.insert(told(profile, platform::item_tpm_online));
        secure.insert(told(profile, platform::item_secure_boot));
    }
    for (const auto &one : {active, online, secure})
        EXPECT_THAT(one, ElementsAre("0", "1", "not"));
}

TEST(TrustProfile, EveryProductNameHasABoard)
{
    std::set<std::pair<std::string, std::uint32_t>> rows;
    for (const Profile &profile : all_boards())
        if (profile.boot_env.contains("product_service_type"))
            rows.insert({profile.boot_env.at("product_service_type"),
                         profile.items.at("/dev/chassis0").at(0x10002401)});
    for (const auto &row : {std::pair{"102", 10010u}, {"148", 10011u}, {"149", 30002u}, {"119", 30000u}})
        EXPECT_TRUE(rows.contains({row.first, row.second})) << row.first;
    EXPECT_TRUE(rows.contains({"148", 255u})) << "one whose chassis does not match";
}

} // namespace
