// SPDX-License-Identifier: Apache-2.0
// A change of the flash that fails or is killed anywhere leaves what was or what should be, whole.
#include "platform/calls.hpp"
#include "platform/flash_area.hpp"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

using namespace std::string_literals;
using Content = std::optional<std::string>;

// No two parts are alike, so that one in the wrong place shows.
std::string image_of(size_t size, unsigned step)
{
    std::string bytes(size, '\0');
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * step + i / 251);
    return bytes;
}
const std::string old_image = image_of(40'000, 7);
const std::string new_image = image_of(50'000, 11); // several blocks

struct Change {
    const char *name;
    const char *file; // that it changes
    std::uint32_t (*run)(const char *image);
    Content before, after;
};

std::uint32_t write_bios(const char *image)
{
    return drv_update_startup_file(test::bios, image);
}

const Change replaces{"Replaces", "startup-256", write_bios, old_image, new_image};
const Change fills{"Fills", "startup-256", write_bios, std::nullopt, new_image};
const Change empties{"Empties", "startup-256",
                     [](const char *) { return drv_update_delete_startup_file(test::bios, 0, 1); }, old_image,
                     std::nullopt};
const Change refreshes{"Refreshes", "nor-data-area",
                       [](const char *) { return bsp_update_norflash_data_area(); }, "refreshed=7\0"s,
                       "refreshed=8\0"s};
const Change hands_over{"HandsOver", test::list_name, [](const char *) { return test::hand_over(new_image); },
                        old_image, new_image};

class FlashChange : public testing::TestWithParam<Change>, protected test::FlashFolder
{
  protected:
    const Change &change = GetParam();
    const std::string path = path_of(change.file);
    const std::string image = source(new_image);

    // As it was, without a folder where nothing was.
    void restore() const
    {
        std::filesystem::remove_all(folder);
        if (change.before) {
            std::filesystem::create_directory(folder);
            test::write_file(path, *change.before);
        }
    }
    bool run() const
    {
        return change.run(image.c_str()) == 0;
    }
    bool names_are_clean() const
    {
        for (const std::string &name : names())
            if (name != change.file && name != change.file + ".lock"s)
                return false;
        return true;
    }
};

INSTANTIATE_TEST_SUITE_P(Flash, FlashChange, testing::Values(replaces, fills, empties, refreshes, hands_over),
                         [](const auto &each) { return std::string(each.param.name); });

// Letting go of a lock, or of a file that was read or flushed, has nothing to lose.
bool lets_go(const test::Call &call)
{
    const std::string function = call.function;
    return function == "close" || (function == "flock" && call.flags == 8);
}

TEST_P(FlashChange, AFailureOfAnyCallIsReportedAndLeavesTheOldOrTheNew)
{
    unsigned failures = 0;
    for (unsigned failing = 0;; ++failing) {
        ASSERT_LT(failing, 100u);
        restore();
        const auto descriptors = test::open_descriptors();
        unsigned number = 0;
        std::string failed;
        bool changed = false;
        bool good = false;
        {
            test::Watch watch([&](const test::Call &call) -> std::optional<long> {
                if (lets_go(call))
                    return std::nullopt;
                const std::string function = call.function;
                if (number++ != failing) {
                    if (failed.empty() && (function == "rename" || function == "unlink"))
                        changed = true;
                    return std::nullopt;
                }
                failed = function;
                errno = EIO;
                return -1;
            });
            good = run();
        }
        if (failed.empty()) {
            EXPECT_TRUE(good);
            break;
        }
        SCOPED_TRACE("call " + std::to_string(failing) + ": " + failed);
        ++failures;
        EXPECT_FALSE(good);
        EXPECT_EQ(content(path), changed ? change.after : change.before);
        EXPECT_TRUE(names_are_clean()) << testing::PrintToString(names());
        EXPECT_EQ(test::open_descriptors(), descriptors);
        if (!changed) {
            EXPECT_TRUE(run()) << "the next one does not work";
            EXPECT_EQ(content(path), change.after);
        }
    }
    EXPECT_GE(failures, 4u);
    EXPECT_EQ(content(path), change.after);
}

TEST_P(FlashChange, AKillBeforeAnyCallLeavesTheOldOrTheNewAndHindersNothing)
{
    unsigned kills = 0;
    unsigned found_new = 0;
    for (;; ++kills) {
        ASSERT_LT(kills, 100u);
        restore();
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            unsigned number = 0;
            test::Watch watch([&](const test::Call &) -> std::optional<long> {
                if (number++ == kills)
                    kill(getpid(), SIGKILL);
                return std::nullopt;
            });
            _exit(run() ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        if (WIFEXITED(status)) {
            EXPECT_EQ(WEXITSTATUS(status), 0);
            break;
        }
        SCOPED_TRACE("killed before call " + std::to_string(kills));
        const Content left = content(path);
        EXPECT_TRUE(left == change.before || left == change.after);
        found_new += left == change.after ? 1 : 0;
        EXPECT_TRUE(run());
        if (left == change.before) {
            EXPECT_EQ(content(path), change.after);
        }
        EXPECT_TRUE(names_are_clean()) << "what was left is still there" << testing::PrintToString(names());
    }
    EXPECT_GE(kills, 4u);
    EXPECT_GE(found_new, 1u);
    EXPECT_EQ(content(path), change.after);
}

TEST_P(FlashChange, InterruptedCallsAreCarriedOn)
{
    restore();
    std::set<std::string> interrupted;
    {
        test::Watch watch([&](const test::Call &call) -> std::optional<long> {
            const std::string function = call.function;
            if ((function != "read" && function != "write") || !interrupted.insert(function).second)
                return std::nullopt;
            errno = EINTR;
            return -1;
        });
        EXPECT_TRUE(run());
    }
    EXPECT_EQ(content(path), change.after);
    // A list comes from the caller's memory; the others read what they change or write.
    EXPECT_EQ(interrupted.count("read"),
              change.after && std::string(change.file) != test::list_name ? 1u : 0u);
    EXPECT_EQ(interrupted.count("write"), change.after ? 1u : 0u);
}

// ---- the area's file alone -------------------------------------------------------------------------------

class FlashWrite : public testing::Test, protected test::FlashFolder
{
  protected:
    const std::string image = source(new_image);
    bool run() const
    {
        return write_bios(image.c_str()) == 0;
    }
};

TEST_F(FlashWrite, AFileIsOnTheDeviceBeforeItGetsItsNameAndTheNameBeforeSuccessIsTold)
{
    for (const bool folder_is_there : {false, true}) {
        std::vector<std::string> steps;
        {
            test::Watch watch([&](const test::Call &call) -> std::optional<long> {
                const std::string function = call.function;
                if (function != "open" && function != "fstat" && function != "close" && function != "read" &&
                    (steps.empty() || steps.back() != function))
                    steps.push_back(function);
                return std::nullopt;
            });
            EXPECT_TRUE(run());
        }
        std::vector<std::string> expected = {"mkdir", "fsync", "write", "fchmod", "fsync", "rename", "fsync"};
        if (folder_is_there)
            expected.erase(expected.begin() + 1); // its name lasts already
        EXPECT_EQ(steps, expected);
    }
}

TEST_F(FlashWrite, PartialWritesAreCarriedOn)
{
    unsigned writes = 0;
    {
        test::Watch watch([&](const test::Call &call) -> std::optional<long> {
            if (strcmp(call.function, "write") != 0)
                return std::nullopt;
            ++writes;
            return ::write(call.fd, call.argument, std::min<size_t>(call.size, 1000));
        });
        EXPECT_TRUE(run());
    }
    EXPECT_GE(writes, 50u);
    EXPECT_EQ(area(test::bios), new_image);
}

TEST_F(FlashWrite, AFlashThatFillsUpKeepsTheOldFile)
{
    ASSERT_EQ(write(test::bios, old_image), 0u);
    test::write_file(image, new_image);
    for (const long given : {-1L, 0L})
        for (unsigned good_writes : {0u, 1u, 3u}) {
            unsigned number = 0;
            {
                test::Watch watch([&](const test::Call &call) -> std::optional<long> {
                    if (strcmp(call.function, "write") != 0 || number++ < good_writes)
                        return std::nullopt;
                    errno = ENOSPC;
                    return given;
                });
                EXPECT_FALSE(run());
            }
            EXPECT_EQ(area(test::bios), old_image);
            EXPECT_THAT(names(), testing::UnorderedElementsAre("startup-256"));
        }
}

TEST_F(FlashWrite, ALongerLeftOverOfAnInterruptedWriteIsNoPartOfTheNextFile)
{
    ASSERT_EQ(write(test::bios, old_image), 0u);
    test::write_file(image, new_image);
    test::write_file(path_of("startup-256.new"), std::string(90'000, 'x'));
    std::filesystem::permissions(path_of("startup-256.new"), std::filesystem::perms::owner_write);
    EXPECT_TRUE(run());
    EXPECT_EQ(area(test::bios), new_image);
    EXPECT_THAT(names(), testing::UnorderedElementsAre("startup-256"));
}

TEST_F(FlashWrite, AKillAtAnyMomentLeavesAWholeFile)
{
    const std::string images[] = {source(old_image, "old.bin"), source(new_image, "new.bin")};
    ASSERT_EQ(write(test::bios, old_image), 0u);
    std::mt19937 random(20240502);
    for (int round = 0; round < 25; ++round) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
            for (unsigned n = 0;; ++n)
                if (write_bios(images[n % 2].c_str()) != 0)
                    _exit(1);
        const timespec pause{0,
                             static_cast<long>(std::uniform_int_distribution<>(1, 20)(random)) * 1'000'000};
        nanosleep(&pause, nullptr);
        kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "a write was refused";
        const Content left = area(test::bios);
        EXPECT_TRUE(left == old_image || left == new_image);
    }
    EXPECT_TRUE(run());
}

} // namespace
