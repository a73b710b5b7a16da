// SPDX-License-Identifier: Apache-2.0
// The start-up footprint: which file is read, how much of it, and what happens when that fails.
#include "board/allocations.hpp"
#include "board/footprint_test.hpp"

#include <fcntl.h>
#include <sys/mman.h>

namespace test
{
namespace
{

// ---- how much is read ------------------------------------------------------------------------------------

TEST_F(FootprintTest, OnlyTheFirst1024BytesAreSeen)
{
    std::string first = step_text(0, 1, 2, "first");
    std::string second = step_text(1, 3, 4, "second");
    // The second step ends exactly at the limit ...
    std::string fits = first + std::string(1024 - first.size() - second.size(), '.') + second;
    parse(fits, 2);
    expect_step(1, 3, 4, "second");
    // ... its description lies across it ...
    parse("..." + fits, 2);
    expect_step(1, 3, 4, "seco");
    // ... or its last key does.
    parse(std::string(8, '.') + fits, 2);
    expect_step(0, 1, 2, "first");
    expect_step(1, 0, 0, "");
}

TEST_F(FootprintTest, ALongFileIsReadOnceAndOnlySoFar)
{
    parse(step_text(0, 1, 2, "first") + std::string(100000, 'x'), 1);
    expect_step(0, 1, 2, "first");
    ASSERT_EQ(calls("read").size(), 1u);
    EXPECT_EQ(calls("read")[0].size, 1024u);
    ASSERT_EQ(allocations().size(), 1u);
    EXPECT_EQ(allocations()[0].size, 1025u);
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(FootprintTest, AReadThatGivesLessIsNotRepeated)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::string first = step_text(0, 1, 2, "first");
    ASSERT_EQ(::write(ends[1], first.data(), first.size()), static_cast<ssize_t>(first.size()));
    answer_libc("open", ends[0]);
    records(2);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBSPRunTime(steps.data(), 2), 0u); }), nothing());
    expect_step(0, 1, 2, "first");
    expect_step(1, 0, 0, "");
    EXPECT_EQ(calls("read").size(), 1u);
    close(ends[1]);
}

// ---- which file ------------------------------------------------------------------------------------------

TEST_F(FootprintTest, TheBoardSupportLayersFileComesFirst)
{
    write(step_text(0, 9, 9, "other"));
    std::string own = step_text(0, 1, 2, "own");
    int file = memfd_create("footprint", 0);
    ASSERT_EQ(pwrite(file, own.data(), own.size(), 0), static_cast<ssize_t>(own.size()));
    answer_libc("open", file);
    records(1);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBSPRunTime(steps.data(), 1), 0u); }), nothing());
    expect_step(0, 1, 2, "own");
    ASSERT_EQ(calls("open").size(), 1u);
    EXPECT_EQ(calls("open")[0].path, "/proc/bsp/footprint");
    EXPECT_EQ(calls("open")[0].size, static_cast<std::size_t>(O_RDONLY));
    EXPECT_EQ(fcntl(file, F_GETFD), -1) << "left open";
}

TEST_F(FootprintTest, TheOtherFileIsReadWhereTheFirstDoesNotOpen)
{
    write(step_text(0, 1, 2, "first"));
    fail_libc("open", EACCES);
    records(1);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBSPRunTime(steps.data(), 1), 0u); }),
              failure("Drvboot get bsp run time not success for open /proc/bsp/footprint nok(13), fd -1\n"));
    expect_step(0, 1, 2, "first");
    ASSERT_EQ(calls("open").size(), 2u);
    EXPECT_EQ(calls("open")[1].path, "/tmp/footprint");
    EXPECT_EQ(calls("open")[1].size, static_cast<std::size_t>(O_RDONLY));
}

TEST_F(FootprintTest, WithoutEitherFileItFails)
{
    fail_libc("open", EACCES);
    fail_libc("open", EIO);
    records(1);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBSPRunTime(steps.data(), 1), minus_one); }),
              failure("Drvboot get bsp run time not success for open /proc/bsp/footprint nok(13), fd -1\n") +
                  failure("Drvboot get bsp run time not success for open /tmp/footprint nok(5), fd -1\n"));
    expect_untouched(0);
    EXPECT_TRUE(allocations().empty());
    EXPECT_TRUE(calls("close").empty());
}

// ---- failures and counts ---------------------------------------------------------------------------------

TEST_F(FootprintTest, WithoutMemoryItFails)
{
    write(step_text(0, 1, 2, "first"));
    during([] { EXPECT_EQ(MOX_GetBSPRunTime(nullptr, 0), 0u); });
    fail_allocation(allocations(), 0);
    forget_calls();
    records(1);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBSPRunTime(steps.data(), 1), minus_one); }),
              no_proc_file + failure("Drvboot get bsp run time not success for memory exhaust\n"));
    expect_untouched(0);
    EXPECT_TRUE(calls("read").empty());
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(FootprintTest, AFileThatCannotBeReadFails)
{
    write(step_text(0, 1, 2, "first"));
    fail_libc("read", EIO);
    records(1);
    EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBSPRunTime(steps.data(), 1), minus_one); }),
              no_proc_file + failure("Drvboot get bsp run time not success for read not ok(5)\n"));
    expect_untouched(0);
    EXPECT_EQ(calls("close").size(), 1u);
    EXPECT_EQ(blocks_held(), 0u);
}

TEST_F(FootprintTest, ACountBelowOneReadsTheFileAndStoresNothing)
{
    write(step_text(0, 1, 2, "first"));
    records(1);
    for (std::int32_t count : {0, -1, INT32_MIN}) {
        forget_calls();
        EXPECT_EQ(during([&] { EXPECT_EQ(MOX_GetBSPRunTime(steps.data(), count), 0u); }), no_proc_file);
        EXPECT_EQ(calls("read").size(), 1u);
        EXPECT_EQ(blocks_held(), 0u);
    }
    expect_untouched(0);
}

TEST_F(FootprintTest, ACountOfZeroFailsAsAnyOtherWithoutAFile)
{
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_GetBSPRunTime(nullptr, 0), minus_one); }),
              no_proc_file +
                  failure("Drvboot get bsp run time not success for open /tmp/footprint nok(2), fd -1\n"));
}

TEST_F(FootprintTest, AnArrayIsNeededForAnyCountButNone)
{
    write(step_text(0, 1, 2, "first"));
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_GetBSPRunTime(nullptr, 1), minus_one); }), nothing());
    EXPECT_EQ(during([] { EXPECT_EQ(MOX_GetBSPRunTime(nullptr, 0), 0u); }), no_proc_file);
}

} // namespace
} // namespace test
