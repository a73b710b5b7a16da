// SPDX-License-Identifier: Apache-2.0
// Writing black boxes: a box never grows, and five failures are the end. Both functions that write do so.
#include "state/blackbox_test.hpp"
#include "state/box_writes.hpp"

#include <cerrno>

using namespace test;

namespace
{

using Writer = int32_t (*)(int32_t, uint32_t, uint32_t, const uint8_t *);

class BlackBoxWrite : public OpenBox, public testing::WithParamInterface<Writer>
{
  protected:
    Said write(std::uint32_t offset, std::uint32_t length)
    {
        return during([&] {
            errno = EDOM;
            result = GetParam()(handle, offset, length, bytes);
        });
    }
    using Sizes = std::vector<std::size_t>;
    // Of the writes into the box: what is said is written, too.
    Sizes sizes() const
    {
        Sizes all;
        for (const Call &call : calls("write"))
            if (call.fd == handle)
                all.push_back(call.size);
        return all;
    }
    Said failed_write(std::uint32_t offset, std::uint32_t length, std::uint32_t written, int error) const
    {
        return failure(text("Drvboot write black box info: 0x%x 0x%x 0x%x\n", offset, length, written)) +
               box_failure("unexpected count for write", error, report());
    }
    Said size_failure(std::uint32_t offset, std::uint32_t length) const
    {
        return failure(text("write black box st_size 0x10, offset 0x%x, length 0x%x\n", offset, length)) +
               box_failure("unexpected size for write", EDOM, report()) + report();
    }
    static Said gave_up()
    {
        return failure("Drvboot write black box for write not ok exceed 5 times\n");
    }
    const std::uint8_t bytes[17] = {'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I',
                                    'J', 'K', 'L', 'M', 'N', 'O', 'P', 'Q'};
};

TEST_P(BlackBoxWrite, PutsTheBytesAtTheOffset)
{
    EXPECT_EQ(write(0, 16), nothing());
    EXPECT_EQ(result, 16);
    EXPECT_EQ(content_of(path), "ABCDEFGHIJKLMNOP");
    EXPECT_EQ(write(10, 3), nothing());
    EXPECT_EQ(result, 3);
    EXPECT_EQ(content_of(path), "ABCDEFGHIJABCNOP");
    EXPECT_EQ(write(3, 0), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_EQ(sizes(), (Sizes{16, 3})) << "nothing to write is no call";
}

TEST_P(BlackBoxWrite, ReachesExactlyToTheEnd)
{
    EXPECT_EQ(write(12, 4), nothing());
    EXPECT_EQ(result, 4);
    EXPECT_EQ(content_of(path), "0123456789abABCD");
    EXPECT_EQ(write(16, 0), nothing());
    EXPECT_EQ(result, 0);
    for (auto [offset, length] : {std::pair{13u, 4u}, {16u, 1u}, {17u, 0u}, {0u, 17u}}) {
        EXPECT_EQ(write(offset, length), size_failure(offset, length));
        EXPECT_EQ(result, -6);
    }
    EXPECT_EQ(content_of(path), "0123456789abABCD");
    EXPECT_EQ(sizes(), Sizes{4});
}

TEST_P(BlackBoxWrite, NeverGrowsABoxThroughASumThatWraps)
{
    for (auto [offset, length] : {std::pair{0xFFFFFFFFu, 1u},
                                  {0xFFFFFFFFu, 2u},
                                  {0xFFFFFFF0u, 17u},
                                  {1u, 0xFFFFFFFFu},
                                  {0x80000000u, 0x80000000u}}) {
        EXPECT_EQ(write(offset, length), size_failure(offset, length));
        EXPECT_EQ(result, -6);
    }
    EXPECT_EQ(content_of(path), "0123456789abcdef");
    EXPECT_EQ(sizes(), Sizes{});
}

TEST_P(BlackBoxWrite, ContinuesAShortWriteWithTheRest)
{
    plan_writes(handle, {takes(3)});
    EXPECT_EQ(write(0, 10), nothing());
    EXPECT_EQ(result, 10);
    EXPECT_EQ(content_of(path), "DEFGHIJ789abcdef") << "the plan swallowed the first three";
    EXPECT_EQ(sizes(), (Sizes{10, 7}));
}

TEST_P(BlackBoxWrite, WriteOfNothingIsNeitherProgressNorFailure)
{
    plan_writes(handle, {takes(0), takes(0), takes(0), takes(0), takes(0), takes(0), takes(0)});
    EXPECT_EQ(write(0, 4), nothing());
    EXPECT_EQ(result, 4);
    EXPECT_EQ(content_of(path), "ABCD456789abcdef");
    EXPECT_EQ(sizes(), Sizes(8, 4));
}

TEST_P(BlackBoxWrite, FourFailuresAreReportedAndOvercome)
{
    plan_writes(handle, {fails_with(ENOSPC), fails_with(EINTR), fails_with(EIO), fails_with(EAGAIN)});
    // The report tells the state of the file, which does not change before the last write.
    const Said expected = failed_write(2, 4, 0, ENOSPC) + failed_write(2, 4, 0, EINTR) +
                          failed_write(2, 4, 0, EIO) + failed_write(2, 4, 0, EAGAIN);
    EXPECT_EQ(write(2, 4), expected);
    EXPECT_EQ(result, 4);
    EXPECT_EQ(content_of(path), "01ABCD6789abcdef");
    EXPECT_EQ(sizes(), Sizes(5, 4));
}

TEST_P(BlackBoxWrite, FiveFailuresAreTheEnd)
{
    plan_writes(handle, {fails_with(ENOSPC), fails_with(ENOSPC), fails_with(ENOSPC), fails_with(ENOSPC),
                         fails_with(EIO)});
    Said expected;
    for (int i = 0; i < 4; ++i)
        expected = expected + failed_write(0, 16, 0, ENOSPC);
    EXPECT_EQ(write(0, 16), expected + failed_write(0, 16, 0, EIO) + gave_up());
    EXPECT_EQ(result, -5);
    EXPECT_EQ(content_of(path), "0123456789abcdef");
    EXPECT_EQ(sizes(), Sizes(5, 16));
}

TEST_P(BlackBoxWrite, ProgressBetweenDoesNotForgiveFailures)
{
    plan_writes(handle, {fails_with(EIO), fails_with(EIO), takes(3), fails_with(EIO), takes(1),
                         fails_with(EIO), fails_with(ENOSPC)});
    EXPECT_EQ(write(0, 16), failed_write(0, 16, 0, EIO) + failed_write(0, 16, 0, EIO) +
                                failed_write(0, 16, 3, EIO) + failed_write(0, 16, 4, EIO) +
                                failed_write(0, 16, 4, ENOSPC) + gave_up());
    EXPECT_EQ(result, -5);
    EXPECT_EQ(sizes(), (Sizes{16, 16, 16, 13, 13, 12, 12}));
}

TEST_P(BlackBoxWrite, FailedFstatIsReported)
{
    fail_libc("fstat", EIO);
    EXPECT_EQ(write(0, 16), box_failure("fstat NOK for write", EIO, report()));
    EXPECT_EQ(result, -8);
    EXPECT_EQ(sizes(), Sizes{});
    // In the report that follows, too.
    fail_libc("fstat", EIO, 0, 2);
    EXPECT_EQ(write(0, 16),
              box_failure("fstat NOK for write", EIO,
                          descriptor_line(handle) +
                              information(text("Drvboot GetFdInfo unsuccessfully, result is %d\n", EIO))));
    EXPECT_EQ(result, -8);
}

TEST_P(BlackBoxWrite, NullBufferIsRefusedInSilence)
{
    EXPECT_EQ(during([&] { result = GetParam()(handle, 0, 1, nullptr); }), nothing());
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(calls("fstat").empty());
}

INSTANTIATE_TEST_SUITE_P(By, BlackBoxWrite, testing::Values(&MOX_WriteBlackbox, &MOX_WriteBlackboxOfNonNvram),
                         [](const auto &test) {
                             return test.index == 0 ? "MOX_WriteBlackbox" : "MOX_WriteBlackboxOfNonNvram";
                         });

} // namespace
