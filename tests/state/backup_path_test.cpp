// SPDX-License-Identifier: Apache-2.0
// Where the second copy of a directory lies on which board.
#include "board/family_rows.hpp"
#include "board/hard_type_lists.hpp"
#include "support/board_test.hpp"

#include <array>
#include <cerrno>

namespace test
{
namespace
{

const std::string rootbak = "/opt/moxv8/home/rootbak/";
const std::string backcc = "/opt/moxv8/home/backcc/";
const std::string bak_home = "/opt/moxv8bak/home/";
const std::string data_bak = "/opt/moxv8/data_bak/";
const std::string bak_data = "/opt/moxv8bak/data/";

const std::string ask_type = "get /dev/board0 0x8000001";
const std::string ask_family = "env read product_family_type";

// One board of each class, by what its home and its data have.
constexpr std::uint32_t rootbak_board = 0x900005d1;    // neither single backup nor next generation
constexpr std::uint32_t rootbak_ng_board = 0x90020709; // next generation, too
constexpr std::uint32_t single_board = 0x90000713;     // single backup
constexpr std::uint32_t ng_board = 0x90022028;         // next generation alone
constexpr std::uint32_t plain_board = 0x900034b9;      // none of them

Said not_ptn()
{
    return information("[drv_boot] product not ptn box.\n");
}

// The question under test: fills `out` and gives the result as 32 bits.
using Question = std::function<std::uint32_t(char *out, std::uint32_t size)>;

std::uint32_t home(char *out, std::uint32_t size)
{
    return DrvbootGetBackupPathofHome(out, size);
}
std::uint32_t data(char *out, std::uint32_t size)
{
    return DrvbootGetBackupPathofData(out, size);
}
Question directory(const std::string &dir)
{
    return [dir](char *out, std::uint32_t size) {
        return static_cast<std::uint32_t>(MOX_GetSysBackupPath(dir.c_str(), out, size));
    };
}

class BackupPathTest : public BoardTest
{
  protected:
    std::array<char, 64> out = {};

    std::uint32_t ask(const Question &question, std::uint32_t size = 64)
    {
        out.fill('#');
        return question(out.data(), size);
    }
    // The path is given in exactly its own room, with nothing written behind it.
    void expect_path(const Question &question, const std::string &path, const Said &said = nothing())
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(ask(question, static_cast<std::uint32_t>(path.size()) + 1), 0u); }),
                  said);
        EXPECT_EQ(std::string(out.data(), 64), path + '\0' + std::string(63 - path.size(), '#'));
        EXPECT_EQ(ask(question), 0u);
        EXPECT_STREQ(out.data(), path.c_str());
    }
    void expect_untouched() const
    {
        EXPECT_EQ(std::string(out.data(), 64), std::string(64, '#'));
    }
    // In no smaller room than its own.
    void expect_too_small(const Question &question, const std::string &path, const std::string &words,
                          const Said &said_before = nothing())
    {
        const Said said = words.empty() ? said_before : said_before + failure(words);
        for (std::uint32_t size = 0; size <= path.size(); ++size) {
            EXPECT_EQ(during([&] { EXPECT_EQ(ask(question, size), minus_one); }), said) << "size " << size;
            const std::string left = size == 0 ? "" : std::string(1, '\0');
            EXPECT_EQ(std::string(out.data(), 64), left + std::string(64 - left.size(), '#'));
        }
    }
    // A copy that fails for whatever reason hands its code to the log.
    void expect_copy_code(const Question &question, const std::string &format, const Said &said_before)
    {
        answer_platform("strncpy_s", 77);
        const Said said = format.empty() ? said_before : said_before + failure(format + "77\n\n");
        EXPECT_EQ(during([&] { EXPECT_EQ(ask(question), minus_one); }), said);
    }
    void be_ptn(bool ptn)
    {
        board.set_boot_env("product_family_type", ptn ? "8" : "7");
    }
};

const std::string unsuccessfully = "String copy unsuccessfully, return check code=";
const std::string not_success = "String copy not success, return check code=";

// ---- directories whose backup does not depend on the board -----------------------------------------------

struct FixedRow {
    std::string source, backup, words;
};

class FixedBackupPathTest : public BackupPathTest, public testing::WithParamInterface<FixedRow>
{
};

TEST_P(FixedBackupPathTest, IsGivenWithAndWithoutTheSlashUnasked)
{
    const FixedRow &row = GetParam();
    deny(board0, EACCES, 0);
    expect_path(directory(row.source), row.backup);
    expect_path(directory(row.source.substr(0, row.source.size() - 1)), row.backup);
    EXPECT_TRUE(operations().empty());
}

TEST_P(FixedBackupPathTest, NeedsItsRoomAndSaysSo)
{
    const FixedRow &row = GetParam();
    const std::string words = row.words + std::to_string(ERANGE) + "\n\n";
    expect_too_small(directory(row.source), row.backup, words);
    expect_too_small(directory(row.source.substr(0, row.source.size() - 1)), row.backup, words);
    expect_copy_code(directory(row.source), row.words, nothing());
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FixedBackupPathTest,
    testing::Values(FixedRow{"/opt/moxv8/private/", "/opt/moxv8bak/private/", unsuccessfully},
                    FixedRow{"/opt/moxv8bak/private/", "/opt/moxv8/private/", unsuccessfully},
                    FixedRow{"/opt/moxv8bak/home/", "/opt/moxv8/home/", unsuccessfully},
                    FixedRow{"/opt/moxv8/home/rootbak/", "/opt/moxv8/home/", not_success}));

// ---- home and data ---------------------------------------------------------------------------------------

TEST_F(BackupPathTest, HomeIsWhereTheBoardHasIt)
{
    std::set<std::uint32_t> types = family_candidates();
    types.insert(mpu_boards.begin(), mpu_boards.end());
    types.insert(lpu_boards.begin(), lpu_boards.end());
    EXPECT_EQ(during([&] {
                  for (std::uint32_t type : types) {
                      be(type);
                      EXPECT_EQ(ask(home), 0u);
                      EXPECT_EQ(out.data(), holds(root_backup_boards, type)     ? rootbak
                                            : holds(single_backup_boards, type) ? backcc
                                                                                : bak_home)
                          << "hard type 0x" << std::hex << type;
                  }
              }),
              nothing());
    EXPECT_EQ(requests(), std::vector<std::string>(types.size(), ask_type));
}

TEST_F(BackupPathTest, DataIsWhereTheBoardAndTheProductHaveIt)
{
    std::set<std::uint32_t> types = family_candidates();
    types.insert(mpu_boards.begin(), mpu_boards.end());
    for (bool ptn : {true, false}) {
        be_ptn(ptn);
        for (std::uint32_t type : types) {
            const bool single = holds(single_backup_boards, type);
            be(type);
            forget_journal();
            const Said said = ptn || single ? nothing() : not_ptn();
            EXPECT_EQ(during([&] { EXPECT_EQ(ask(data), 0u); }), said);
            EXPECT_EQ(out.data(), single                          ? backcc
                                  : ptn && holds(ng_boards, type) ? data_bak
                                                                  : bak_data)
                << "hard type 0x" << std::hex << type << " ptn " << ptn;
            EXPECT_EQ(requests(), single ? std::vector<std::string>{ask_type}
                                         : (std::vector<std::string>{ask_type, ask_family}));
        }
    }
}

TEST_F(BackupPathTest, BothAreReachedByTheirDirectories)
{
    be_ptn(true);
    for (const auto &[type, of_home, of_data] : {std::tuple{rootbak_board, rootbak, bak_data},
                                                 {rootbak_ng_board, rootbak, data_bak},
                                                 {single_board, backcc, backcc},
                                                 {ng_board, bak_home, data_bak},
                                                 {plain_board, bak_home, bak_data}}) {
        be(type);
        expect_path(home, of_home);
        expect_path(directory("/opt/moxv8/home/"), of_home);
        expect_path(directory("/opt/moxv8/home"), of_home);
        expect_path(data, of_data);
        expect_path(directory("/opt/moxv8/data/"), of_data);
        expect_path(directory("/opt/moxv8/data"), of_data);
    }
}

TEST_F(BackupPathTest, HomeNeedsItsRoomAndSaysSoButForSingleBackup)
{
    for (const auto &[type, path, words] : {std::tuple{rootbak_board, rootbak, unsuccessfully},
                                            {single_board, backcc, std::string()},
                                            {plain_board, bak_home, unsuccessfully}}) {
        be(type);
        const std::string line = words.empty() ? words : words + std::to_string(ERANGE) + "\n\n";
        expect_too_small(home, path, line);
        expect_too_small(directory("/opt/moxv8/home"), path, line);
        expect_copy_code(home, words, nothing());
    }
}

TEST_F(BackupPathTest, DataNeedsItsRoomAndSaysSoInTheCommonPlaceAlone)
{
    be_ptn(true);
    for (const auto &[type, path, words] : {std::tuple{single_board, backcc, std::string()},
                                            {ng_board, data_bak, std::string()},
                                            {plain_board, bak_data, unsuccessfully}}) {
        be(type);
        const std::string line = words.empty() ? words : words + std::to_string(ERANGE) + "\n\n";
        expect_too_small(data, path, line);
        expect_too_small(directory("/opt/moxv8/data/"), path, line);
    }
    be_ptn(false);
    be(ng_board);
    expect_too_small(data, bak_data, unsuccessfully + std::to_string(ERANGE) + "\n\n", not_ptn());
}

// The variable's name and value are copied first: the third copy is the path's.
TEST_F(BackupPathTest, AFailedCopyOfDataHandsOnItsCode)
{
    be_ptn(true);
    be(plain_board);
    answer_platform("strncpy_s", 77, 2);
    EXPECT_EQ(during([&] { EXPECT_EQ(ask(data), minus_one); }), failure(unsuccessfully + "77\n\n"));
    be(ng_board);
    answer_platform("strncpy_s", 77, 2);
    EXPECT_EQ(during([&] { EXPECT_EQ(ask(data), minus_one); }), nothing());
}

TEST_F(BackupPathTest, ABoardThatCannotTellItsTypeHasNoPath)
{
    for (const auto &[question, name] : {std::pair{Question(home), "home"},
                                         {Question(data), "data"},
                                         {directory("/opt/moxv8/home"), "home"},
                                         {directory("/opt/moxv8/data/"), "data"}}) {
        const Said own = failure(text("Drvboot get backup path of %s: get hardtype not OK\n", name));
        deny(board0, EACCES);
        EXPECT_EQ(during([&] { EXPECT_EQ(ask(question), minus_one); }),
                  failure("Not succeed to get board hardtype,ret=0xffffffff.\n") + own);
        expect_untouched();
        refuse(board0, item_hard_type);
        EXPECT_EQ(during([&] { EXPECT_EQ(ask(question), minus_one); }),
                  failure("Not succeed to get board hardtype,ret=0x2710.\n") + own);
        expect_untouched();
    }
    EXPECT_THAT(requests(), testing::Each(ask_type)); // the product is not asked
}

// ---- what is no such directory ---------------------------------------------------------------------------

TEST_F(BackupPathTest, AnyOtherDirectoryHasNoBackup)
{
    EXPECT_EQ(during([&] {
                  for (const char *dir : {"",
                                          "/",
                                          "/opt/moxv8/var/",
                                          "/opt/moxv8/",
                                          "/opt/moxv8",
                                          "/opt/moxv8/home//",
                                          "/opt/moxv8/hom",
                                          "/opt/moxv8/homes",
                                          "/opt/moxv8/home/x",
                                          "opt/moxv8/home/",
                                          " /opt/moxv8/home/",
                                          "/opt/moxv8/home/ ",
                                          "/OPT/MOXV8/HOME/",
                                          "/opt/moxv8//home/",
                                          "/opt/moxv8/data//",
                                          "/opt/moxv8/dat",
                                          "/opt/moxv8/data/x",
                                          "/opt/moxv8/data_bak/",
                                          "/opt/moxv8/private//",
                                          "/opt/moxv8/privat",
                                          "/opt/moxv8/private/x",
                                          "/opt/moxv8bak/data/",
                                          "/opt/moxv8bak/data",
                                          "/opt/moxv8bak/",
                                          "/opt/moxv8bak/private//",
                                          "/opt/moxv8bak/home//",
                                          "/opt/moxv8bak/homex",
                                          "/opt/moxv8/home/rootbak//",
                                          "/opt/moxv8/home/rootba",
                                          "/opt/moxv8/home/rootbakx",
                                          "/opt/moxv8/home/backcc/",
                                          "home",
                                          "data",
                                          "private"}) {
                      EXPECT_EQ(ask(directory(dir)), minus_one) << dir;
                      expect_untouched();
                  }
              }),
              nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_F(BackupPathTest, NullPointersAreRefusedSilentlyAndUnasked)
{
    EXPECT_EQ(during([&] {
                  EXPECT_EQ(MOX_GetSysBackupPath(nullptr, out.data(), 64), -1);
                  EXPECT_EQ(MOX_GetSysBackupPath("/opt/moxv8/home/", nullptr, 64), -1);
                  EXPECT_EQ(MOX_GetSysBackupPath("/opt/moxv8/private/", nullptr, 64), -1);
                  EXPECT_EQ(MOX_GetSysBackupPath(nullptr, nullptr, 0), -1);
              }),
              nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_F(BackupPathTest, HomeAndDataWithoutAnOutputAreFailures)
{
    be_ptn(true);
    for (std::uint32_t type : {rootbak_board, single_board, ng_board, plain_board}) {
        be(type);
        during([&] {
            EXPECT_EQ(DrvbootGetBackupPathofHome(nullptr, 64), minus_one);
            EXPECT_EQ(DrvbootGetBackupPathofData(nullptr, 64), minus_one);
        });
    }
}

} // namespace
} // namespace test
