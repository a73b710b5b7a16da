// SPDX-License-Identifier: Apache-2.0
#include "support/board_test.hpp"

#include <cerrno>
#include <sys/mman.h>
#include <unistd.h>

using namespace test;

namespace
{

class Write : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        file = memfd_create("written", 0);
        ASSERT_GE(file, 0);
    }
    void TearDown() override
    {
        close(file);
        BoardTest::TearDown();
    }

    std::string content() const
    {
        char piece[256];
        ssize_t got = pread(file, piece, sizeof piece, 0);
        return {piece, got > 0 ? static_cast<std::size_t>(got) : 0};
    }
    std::vector<std::size_t> sizes() const
    {
        std::vector<std::size_t> all;
        for (const Call &call : calls("write")) {
            EXPECT_EQ(call.fd, file);
            all.push_back(call.size);
        }
        return all;
    }
    std::int32_t full(std::uint32_t length)
    {
        return drvboot_full_write(file, reinterpret_cast<std::uint8_t *>(text), length);
    }

    using Sizes = std::vector<std::size_t>;
    int file = -1;
    char text[11] = "0123456789";
};

// ---- drvboot_safe_write ----------------------------------------------------------------------------------

TEST_F(Write, SafeWriteGivesTheCountOfOneWrite)
{
    EXPECT_EQ(drvboot_safe_write(file, text, 10), 10);
    EXPECT_EQ(content(), "0123456789");
    EXPECT_EQ(sizes(), Sizes{10});
}

TEST_F(Write, SafeWriteDoesNotContinueAShortWrite)
{
    answer_libc("write", 3);
    EXPECT_EQ(drvboot_safe_write(file, text, 10), 3);
    EXPECT_EQ(content(), "");
    EXPECT_EQ(sizes(), Sizes{10});
}

TEST_F(Write, SafeWriteRepeatsAnInterruptedWriteAsOftenAsItTakes)
{
    fail_libc("write", EINTR, 0, 5);
    EXPECT_EQ(drvboot_safe_write(file, text, 10), 10);
    EXPECT_EQ(content(), "0123456789");
    EXPECT_EQ(sizes(), (Sizes{10, 10, 10, 10, 10, 10}));
}

TEST_F(Write, SafeWriteGivesAnyOtherErrorBackAtOnce)
{
    fail_libc("write", EIO);
    errno = 0;
    EXPECT_EQ(drvboot_safe_write(file, text, 10), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(sizes(), Sizes{10});

    fail_libc("write", EAGAIN);
    EXPECT_EQ(drvboot_safe_write(file, text, 10), -1);
    EXPECT_EQ(errno, EAGAIN);
}

TEST_F(Write, SafeWriteGivesTheErrorThatFollowsAnInterruption)
{
    fail_libc("write", EINTR);
    fail_libc("write", ENOSPC);
    EXPECT_EQ(drvboot_safe_write(file, text, 10), -1);
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(sizes(), (Sizes{10, 10}));
}

TEST_F(Write, SafeWriteOfNothingStillAsksTheKernel)
{
    EXPECT_EQ(drvboot_safe_write(file, text, 0), 0);
    EXPECT_EQ(sizes(), Sizes{0});
}

TEST_F(Write, BadDescriptorIsAnErrorOfBoth)
{
    EXPECT_EQ(drvboot_safe_write(-1, text, 10), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(drvboot_full_write(-1, reinterpret_cast<std::uint8_t *>(text), 10), -1);
    EXPECT_EQ(errno, EBADF);
}

// ---- drvboot_full_write ----------------------------------------------------------------------------------

TEST_F(Write, FullWriteGivesTheTotal)
{
    EXPECT_EQ(full(10), 10);
    EXPECT_EQ(content(), "0123456789");
    EXPECT_EQ(sizes(), Sizes{10});
}

TEST_F(Write, FullWriteOfNothingMakesNoCall)
{
    EXPECT_EQ(full(0), 0);
    EXPECT_EQ(drvboot_full_write(-1, nullptr, 0), 0);
    EXPECT_TRUE(calls("write").empty());
}

TEST_F(Write, FullWriteContinuesWhereAPartialWriteStopped)
{
    answer_libc("write", 3);
    EXPECT_EQ(full(10), 10);
    EXPECT_EQ(content(), "3456789"); // the plan swallowed the first three
    EXPECT_EQ(sizes(), (Sizes{10, 7}));
}

TEST_F(Write, FullWriteTakesAsManyPiecesAsItNeeds)
{
    answer_libc("write", 1, 0, 8);
    EXPECT_EQ(full(10), 10);
    EXPECT_EQ(content(), "89");
    EXPECT_EQ(sizes(), (Sizes{10, 9, 8, 7, 6, 5, 4, 3, 2}));
}

TEST_F(Write, FullWriteTriesAgainAfterAWriteOfNothing)
{
    answer_libc("write", 0, 0, 2);
    EXPECT_EQ(full(10), 10);
    EXPECT_EQ(content(), "0123456789");
    EXPECT_EQ(sizes(), (Sizes{10, 10, 10}));
}

TEST_F(Write, FullWriteRepeatsAnInterruptedPiece)
{
    answer_libc("write", 4);
    fail_libc("write", EINTR, 0, 2);
    EXPECT_EQ(full(10), 10);
    EXPECT_EQ(content(), "456789");
    EXPECT_EQ(sizes(), (Sizes{10, 6, 6, 6}));
}

TEST_F(Write, FullWriteGivesTheErrorWhenTheFirstPieceFails)
{
    fail_libc("write", EIO);
    errno = 0;
    EXPECT_EQ(full(10), -1);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(sizes(), Sizes{10});
}

TEST_F(Write, FullWriteGivesTheTotalSoFarWhenALaterPieceFails)
{
    answer_libc("write", 4);
    answer_libc("write", 2);
    fail_libc("write", EIO);
    EXPECT_EQ(full(10), 6);
    EXPECT_EQ(sizes(), (Sizes{10, 6, 4}));
    EXPECT_EQ(content(), "");
}

} // namespace
