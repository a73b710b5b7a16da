// SPDX-License-Identifier: Apache-2.0
#include "vboard/model/env_store.hpp"
#include "vboard/model/requests.hpp"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;
using vboard::make_env_store;
using Variables = std::map<std::string, std::string>;

namespace
{

constexpr std::size_t copy_size = 0x4000;

class EnvImage : public testing::Test
{
  protected:
    fs::path directory;
    vboard::Profile profile = vboard_test::small_profile();

    void SetUp() override
    {
        std::string name = (fs::temp_directory_path() / "env-image-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        directory = name;
    }
    void TearDown() override
    {
        fs::remove_all(directory);
    }
    fs::path image() const
    {
        return directory / vboard::env_image_name;
    }
    std::string content() const
    {
        std::ifstream file(image(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // Both copies' flag bytes: the byte behind the checksum.
    std::pair<int, int> flags() const
    {
        const std::string bytes = content();
        return {static_cast<unsigned char>(bytes.at(4)), static_cast<unsigned char>(bytes.at(copy_size + 4))};
    }
    // What an independent reader finds.
    std::string printed(const std::string &variable) const
    {
        const std::string command = "fw_printenv -c '" + (directory / vboard::env_config_name).string() +
                                    "' -n " + variable + " 2>&1";
        FILE *pipe = popen(command.c_str(), "r");
        std::string text;
        for (int c; (c = std::fgetc(pipe)) != EOF;)
            text += static_cast<char>(c);
        pclose(pipe);
        while (text.ends_with('\n'))
            text.pop_back();
        return text;
    }
};

TEST_F(EnvImage, IsMadeFactoryNewWithBothCopiesGood)
{
    auto store = make_env_store(directory, profile);
    EXPECT_EQ(store->load(), profile.boot_env) << "a variable with an empty value is there too";
    EXPECT_EQ(fs::file_size(image()), 2 * copy_size);
    const std::string bytes = content();
    EXPECT_NE(bytes.find("BOOTMEDIA=NAND"), std::string::npos);
    EXPECT_NE(bytes.find("BOOTMEDIA=NAND", copy_size), std::string::npos);
}

TEST_F(EnvImage, KeepsWhatIsSavedAndDropsWhatIsGone)
{
    const Variables wanted{{"one", "1"}, {"a:b", "x;y = \"z\" $q"}, {"full", std::string(255, 'v')}};
    EXPECT_TRUE(make_env_store(directory, profile)->save(wanted));
    EXPECT_EQ(make_env_store(directory, profile)->load(), wanted);
}

TEST_F(EnvImage, EachSaveGoesToTheCopyThatIsNotInUse)
{
    auto store = make_env_store(directory, profile);
    Variables variables = store->load();
    auto before = content();
    int last_copy = -1;
    for (int round = 0; round < 600; ++round) { // more rounds than a flag byte has values
        variables["round"] = std::to_string(round);
        ASSERT_TRUE(store->save(variables));
        const auto after = content();
        const bool first = before.compare(0, copy_size, after, 0, copy_size) != 0;
        const bool second = before.compare(copy_size, copy_size, after, copy_size, copy_size) != 0;
        ASSERT_NE(first, second) << "exactly one copy changes";
        if (last_copy >= 0) {
            ASSERT_EQ(second ? 1 : 0, 1 - last_copy);
        }
        last_copy = second ? 1 : 0;
        ASSERT_EQ(store->load().at("round"), std::to_string(round));
        before = after;
    }
    EXPECT_NE(flags().first, flags().second);
}

TEST_F(EnvImage, FallsBackToTheOtherCopyWhenOneIsDamaged)
{
    auto store = make_env_store(directory, profile);
    ASSERT_TRUE(store->save({{"which", "older"}}));
    ASSERT_TRUE(store->save({{"which", "newer"}}));
    const std::string bytes = content();
    const std::size_t newer = bytes.find("which=newer");
    std::fstream file(image(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(newer));
    file.put('X');
    file.close();
    EXPECT_EQ(store->load(), (Variables{{"which", "older"}}));
    EXPECT_TRUE(store->save({{"which", "mended"}}));
    EXPECT_EQ(store->load(), (Variables{{"which", "mended"}}));
}

TEST_F(EnvImage, WithBothCopiesDamagedTheBoardIsFactoryNew)
{
    auto store = make_env_store(directory, profile);
    ASSERT_TRUE(store->save({{"which", "saved"}}));
    std::ofstream(image(), std::ios::binary) << std::string(2 * copy_size, '\x5a');
    EXPECT_EQ(store->load(), profile.boot_env);
    EXPECT_TRUE(store->save({{"which", "again"}}));
    EXPECT_EQ(store->load(), (Variables{{"which", "again"}}));
    fs::resize_file(image(), 100);
    EXPECT_EQ(store->load(), profile.boot_env) << "a cut image";
}

TEST_F(EnvImage, RefusesToSaveMoreThanItHolds)
{
    auto store = make_env_store(directory, profile);
    Variables too_many;
    for (int i = 0; i < 100; ++i)
        too_many["variable" + std::to_string(i)] = std::string(250, 'x');
    EXPECT_FALSE(store->save(too_many));
    EXPECT_EQ(store->load(), profile.boot_env);
    // Just full: five bytes of header, each variable with '=' and a zero, and the zero at the end.
    Variables full{{"v", std::string(copy_size - 5 - 1 - 3, 'x')}};
    EXPECT_TRUE(store->save(full));
    EXPECT_EQ(store->load(), full);
    full["v"] += 'x';
    EXPECT_FALSE(store->save(full));
}

TEST_F(EnvImage, ASaveThatIsKilledAtAnyInstantLeavesAWholeEnvironment)
{
    auto store = make_env_store(directory, profile);
    ASSERT_TRUE(store->save({{"a", std::string(200, '0')}, {"b", std::string(200, '0')}}));
    for (int round = 0; round < 40; ++round) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            auto own = make_env_store(directory, profile);
            for (char c = '0';; c = c == '9' ? '0' : static_cast<char>(c + 1))
                own->save({{"a", std::string(200, c)}, {"b", std::string(200, c)}});
        }
        usleep(static_cast<useconds_t>(2000 + 531 * round));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const Variables found = make_env_store(directory, profile)->load();
        ASSERT_EQ(found.size(), 2u);
        ASSERT_EQ(found.at("a").size(), 200u);
        ASSERT_EQ(found.at("a"), found.at("b")) << "both are of one save";
    }
}

TEST_F(EnvImage, IsReadByFwPrintenv)
{
    if (std::system("command -v fw_printenv >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "fw_printenv is not installed (package libubootenv-tool)";
    auto store = make_env_store(directory, profile);
    EXPECT_EQ(printed("BOOTMEDIA"), "NAND");
    Variables variables = store->load();
    variables["BOOTMEDIA"] = "SFC";
    variables["greeting"] = "hello board";
    ASSERT_TRUE(store->save(variables));
    EXPECT_EQ(printed("BOOTMEDIA"), "SFC");
    EXPECT_EQ(printed("greeting"), "hello board");
}

TEST_F(EnvImage, WorksByALongPathAndAfterTheDirectoryHasMoved)
{
    fs::path deep = directory;
    for (int i = 0; i < 12; ++i)
        deep /= std::string(40, static_cast<char>('a' + i));
    fs::create_directories(deep);
    auto store = make_env_store(deep, profile);
    ASSERT_TRUE(store->save({{"x", "1"}}));
    fs::rename(deep, directory / "moved");
    ASSERT_TRUE(store->save({{"x", "2"}}));
    EXPECT_EQ(store->load().at("x"), "2");
}

TEST_F(EnvImage, SaysWhenTheDirectoryCannotBeUsed)
{
    EXPECT_THROW(make_env_store(directory / "nonesuch", profile), std::runtime_error);
    auto store = make_env_store(directory, profile);
    fs::remove(image());
    fs::create_directory(image());
    EXPECT_FALSE(store->save({{"x", "1"}}));
}

TEST_F(EnvImage, StandsBehindABoard)
{
    {
        vboard::Board board(profile, make_env_store(directory, profile));
        board.ioctl(vboard_test::env(0x4502, "saved", "1"));
        EXPECT_EQ(board.ioctl(vboard_test::env(0x4503, "")).result, 0);
        board.ioctl(vboard_test::env(0x4502, "unsaved", "1"));
    }
    const vboard::Board again(profile, make_env_store(directory, profile));
    EXPECT_EQ(again.boot_env("saved"), "1");
    EXPECT_EQ(again.boot_env("unsaved"), std::nullopt);
}

} // namespace
