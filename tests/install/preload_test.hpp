// SPDX-License-Identifier: Apache-2.0
// A board whose start-up flash is written by an updater of the test's own.
#pragma once

#include "install/preload_files.hpp"
#include "install/preload_spies.hpp"
#include "support/board_test.hpp"
#include "support/front_library.hpp"

#include <filesystem>
#include <fstream>

namespace test
{

constexpr const char *updater = "libdrv_basic.so";

using Words = std::vector<std::string>;

// An answer of the updater that refuses one file.
inline std::function<std::uint32_t(std::uint32_t, const std::string &)> refusing(const std::string &path,
                                                                                 std::uint32_t code = 1)
{
    return [=](std::uint32_t, const std::string &given) { return given == path ? code : 0u; };
}

inline Said not_written(const std::string &path, std::uint32_t type)
{
    return failure(text("[Preload]preload file(%s) and type(%u) unsuccessfully.\n", path.c_str(), type));
}

inline Said deleted(std::uint32_t result)
{
    return information(text("[Preload]delete startup file ret is %u.\n", result));
}

// What is said when a question for the hard type is refused by the driver, by whoever asked.
inline Said type_unread(const std::string &words)
{
    return failure("Not succeed to get board hardtype,ret=0x2710.\n") + failure(words);
}

class PreloadTest : public BoardTest
{
  protected:
    void SetUp() override
    {
        clear_boot();
        g_nandFlashDeleteFlag = 0;
        BoardTest::SetUp();
    }
    void TearDown() override
    {
        remove_from_front(updater);
        EXPECT_FALSE(loaded(updater)) << "the updater is still open";
        forget_spies();
        clear_boot();
        BoardTest::TearDown();
    }
    void be_board(std::uint32_t hard_type, const char *medium)
    {
        be(hard_type);
        board.set_boot_env("BOOTMEDIA", medium);
    }
    // This board's files are written, or deleted where the flag says so, by this program.
    static std::uint32_t walk()
    {
        return DrvBootUpdateStartupFile(test_update_startup_file, test_delete_startup_file);
    }
    static void put_file(const std::string &path, const std::string &bytes = "bytes")
    {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    // Fails `question` of the following questions for the hard type, counted from 0.
    void refuse_question(unsigned question)
    {
        vboard::Fault fault;
        fault.device = board0;
        fault.item = item_hard_type;
        fault.code = 1;
        fault.skip = question;
        board.add_fault(fault);
    }

  private:
    static void clear_boot()
    {
        for (const auto &entry : std::filesystem::directory_iterator("/boot"))
            std::filesystem::remove_all(entry.path());
    }
};

// With an updater library.
class UpdaterTest : public PreloadTest
{
  protected:
    void SetUp() override
    {
        PreloadTest::SetUp();
        copy_to_front(updater, WHOLE_UPDATER);
    }
    // What the library did with the updater, and when it spoke: "syslog", "dlopen", "dlclose".
    static Words steps()
    {
        Words all;
        for (const Call &call : calls())
            if (call.function == "dlopen" || call.function == "dlclose" || call.function == "syslog")
                all.push_back(call.function);
        return all;
    }
};

const Said enter = information("[Preload]pre load boot file enter\n");
const Said end = information("[Preload]pre load boot file end\n");
const Said no_delete = failure("[Preload]update_delete_startup_file does not exist.\n");

} // namespace test
