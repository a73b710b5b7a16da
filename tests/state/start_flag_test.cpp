// SPDX-License-Identifier: Apache-2.0
// The start flag: a number in a small file, and who may write it when.
#include "support/board_test.hpp"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>

namespace test
{
namespace
{

constexpr const char *file = "/tmp/v8_start_flag";
constexpr std::uint32_t none = 0xFFFFFFFF;

const Said time_line = information("Drvboot set product check mode return check time 120s\n");
const Said there_already =
    information("Drvboot set product check mode, start flag already exist, return ok\n");

Said no_flag(int error = ENOENT)
{
    return information(text("Drvboot get start flag not success for fopen not ok(%d)\n", error));
}
Said mode_line(std::uint32_t mode)
{
    return information(text("Drvboot set product check mode 0x%x\n", mode));
}
Said need_reboot(std::uint32_t flag)
{
    return information(text("Drvboot check startup return need reboot(0x%x)\n", flag));
}

class StartFlagTest : public BoardTest
{
  protected:
    std::uint32_t time = 7;

    static void hold(const std::string &content)
    {
        std::ofstream(file) << content;
    }
    static std::string content()
    {
        std::ostringstream whole;
        whole << std::ifstream(file).rdbuf();
        return whole.str();
    }
    static mode_t mode_of_file()
    {
        struct stat status = {};
        EXPECT_EQ(stat(file, &status), 0);
        return status.st_mode;
    }
    void expect_check(std::int32_t result, std::uint32_t stored, const Said &said)
    {
        std::uint32_t flag = 0x5a5a;
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtStartupCheck(&flag), result); }), said);
        EXPECT_EQ(flag, stored);
    }
};

// ---- reading ---------------------------------------------------------------------------------------------

TEST_F(StartFlagTest, TheFilesTextIsReadAsHexadecimal)
{
    const std::pair<std::string, std::uint32_t> rows[] = {
        {"0x2", 2},
        {"0x0", 0},
        {"2", 2},
        {"10", 0x10},
        {"", 0},
        {"garbage", 0},
        {"beef", 0xbeef},
        {"0XfF", 0xff},
        {" 0x12\n", 0x12},
        {"0x7 0x8", 7},
        {"0xFFFFFFFF", none},
        {std::string(30, '0') + "5", 5},
        {std::string(30, '0') + "59", 5},        // 31 characters are read
        {std::string(31, '0') + "999999999", 0}, // of 40
        {std::string(31, 'f'), none},            // more than a number can hold
        {std::string("0x3\0"
                     "4",
                     5),
         3},
    };
    for (const auto &[given, flag] : rows) {
        hold(given);
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetStartFlag(), flag) << given; }), nothing());
    }
}

TEST_F(StartFlagTest, OneOpenOneReadOneClose)
{
    hold("0x1");
    forget_calls();
    EXPECT_EQ(MOX_GetStartFlag(), 1u);
    std::vector<std::string> made;
    for (const Call &call : calls())
        made.push_back(call.function);
    EXPECT_EQ(made, (std::vector<std::string>{"open", "read", "close"}));
    EXPECT_EQ(calls("read")[0].size, 31u);
}

TEST_F(StartFlagTest, AFileThatDoesNotOpenIsNoFlag)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetStartFlag(), none); }), no_flag());
    hold("0x2");
    fail_libc("open", EACCES);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetStartFlag(), none); }), no_flag(EACCES));
}

TEST_F(StartFlagTest, AFileThatCannotBeReadReadsAsZero)
{
    hold("0x2");
    fail_libc("read", EIO);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetStartFlag(), 0u); }), nothing());
}

// ---- writing ---------------------------------------------------------------------------------------------

TEST_F(StartFlagTest, IsWrittenAsHexadecimalTextAndNothingElse)
{
    for (const auto &[mode, written] :
         {std::pair{0u, "0x0"}, {1u, "0x1"}, {0x1au, "0x1a"}, {none, "0xffffffff"}}) {
        std::filesystem::remove(file);
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(mode, nullptr), 0u); }),
                  mode_line(mode) + no_flag());
        EXPECT_EQ(content(), written);
        EXPECT_EQ(MOX_GetStartFlag(), mode);
    }
}

TEST_F(StartFlagTest, TheFileHasItsModeWhateverTheMask)
{
    for (const mode_t mask : {0, 022, 077, 0777}) {
        std::filesystem::remove(file);
        const mode_t before = umask(mask);
        EXPECT_EQ(MOX_SetPdtCheckMode(1, nullptr), 0u);
        umask(before);
        EXPECT_EQ(mode_of_file(), S_IFREG | 0640u) << std::oct << mask;
    }
    chmod(file, 0666);
    EXPECT_EQ(MOX_SetPdtCheckMode(1, nullptr), 0u);
    EXPECT_EQ(mode_of_file(), S_IFREG | 0640u);
}

TEST_F(StartFlagTest, WithoutACheckTimeAnOldFlagIsOverwrittenWhole)
{
    hold("0x123456789 and more");
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(5, nullptr), 0u); }), mode_line(5));
    EXPECT_EQ(content(), "0x5");
}

TEST_F(StartFlagTest, WithACheckTimeTheFirstWriterWins)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(1, &time), 0u); }),
              time_line + mode_line(1) + no_flag());
    EXPECT_EQ(time, 120u);
    EXPECT_EQ(content(), "0x1");
    time = 7;
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(9, &time), 0u); }),
              time_line + mode_line(9) + there_already);
    EXPECT_EQ(time, 120u);
    EXPECT_EQ(content(), "0x1");
}

TEST_F(StartFlagTest, AFlagOfAllOnesIsNone)
{
    EXPECT_EQ(MOX_SetPdtCheckMode(none, &time), 0u);
    EXPECT_EQ(content(), "0xffffffff");
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetStartFlag(), none); }), nothing());
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(2, &time), 0u); }), time_line + mode_line(2));
    EXPECT_EQ(content(), "0x2");
}

TEST_F(StartFlagTest, AnEmptyFileIsAFlag)
{
    hold("");
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(2, &time), 0u); }),
              time_line + mode_line(2) + there_already);
    EXPECT_EQ(content(), "");
}

TEST_F(StartFlagTest, AFileThatCannotBeMadeIsReported)
{
    const auto not_opened = [](int error) {
        return failure(text(
            "Drvboot set product check mode NOK, open /tmp/v8_start_flag not ok(%d), fp is NULL\n", error));
    };
    fail_libc("open", EROFS, 1);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(3, nullptr), minus_one); }),
              mode_line(3) + no_flag() + not_opened(EROFS));
    fail_libc("open", ENOSPC, 1);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(3, &time), minus_one); }),
              time_line + mode_line(3) + no_flag() + not_opened(ENOSPC));
    EXPECT_EQ(time, 120u);
    EXPECT_FALSE(std::filesystem::exists(file));
    std::filesystem::create_directory(file); // the other way to be there
    fail_libc("read", EISDIR);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(3, nullptr), minus_one); }),
              mode_line(3) + not_opened(EISDIR));
}

// Each line that is reported is written to standard error first.
TEST_F(StartFlagTest, AWriteThatFailsIsReported)
{
    const auto not_written = [](int error) {
        return failure(text("Drvboot set product check mode not success for fwrite not ok %d\n", error));
    };
    fail_libc("write", ENOSPC, 2);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(3, nullptr), minus_one); }),
              mode_line(3) + no_flag() + not_written(ENOSPC));
    std::filesystem::remove(file);
    fail_libc("write", EIO, 3);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(3, &time), minus_one); }),
              time_line + mode_line(3) + no_flag() + not_written(EIO));
}

TEST_F(StartFlagTest, AWriteThatIsCutShortIsAFailure)
{
    for (const long count : {0L, 2L}) {
        std::filesystem::remove(file);
        answer_libc("write", count, 2);
        const Said said = during([&] { EXPECT_EQ(MOX_SetPdtCheckMode(3, nullptr), minus_one); });
        EXPECT_THAT(said.out, testing::HasSubstr("not success for fwrite not ok"));
        EXPECT_EQ(said.trace.back().level, 4u);
    }
}

TEST_F(StartFlagTest, ATextThatCannotBePrintedIsAFailure)
{
    answer_platform("sprintf_s", -1);
    EXPECT_EQ(MOX_SetPdtCheckMode(3, nullptr), minus_one);
    EXPECT_EQ(content(), "");
}

// ---- asking for a reboot ---------------------------------------------------------------------------------

TEST_F(StartFlagTest, OneAndTwoNeedNoReboot)
{
    for (const char *flag : {"0x1", "0x2", "1", "02"}) {
        hold(flag);
        expect_check(-1, 0, nothing());
    }
}

TEST_F(StartFlagTest, EverythingElseNeedsAReboot)
{
    for (const std::uint32_t flag : {0u, 3u, 4u, 0x10u, 0x20000001u, none}) {
        hold(text("0x%x", flag));
        expect_check(0, flag, need_reboot(flag));
    }
    std::filesystem::remove(file);
    expect_check(0, none, no_flag() + need_reboot(none));
}

TEST_F(StartFlagTest, ANullOutputIsAFailure)
{
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_PdtStartupCheck(nullptr), -1); }), nothing());
}

TEST_F(StartFlagTest, NothingIsAskedOfTheDriver)
{
    MOX_SetPdtCheckMode(1, &time);
    std::uint32_t flag = 0;
    MOX_PdtStartupCheck(&flag);
    EXPECT_TRUE(operations().empty());
}

} // namespace
} // namespace test
