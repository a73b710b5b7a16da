// SPDX-License-Identifier: Apache-2.0
#include "vboard/model/board.hpp"
#include "vboard/model/requests.hpp"

#include <gmock/gmock.h>

#include <cerrno>
#include <thread>

using namespace vboard_test;
using vboard::Board;
using vboard::IoctlReply;

namespace
{

TEST(Board, AnswersAGetWithHeaderCodeItemAndValue)
{
    Board board(small_profile());
    const IoctlReply reply = board.ioctl(get(board0, role_item));
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(reply.out, words({0x1000000, 24, 0x100, 4, 0, role_item, 4, 3}));
    EXPECT_EQ(reply.status, 0u);
}

TEST(Board, RefusesAnItemItDoesNotHaveWithCodeOneAndNoValue)
{
    Board board(small_profile());
    for (const auto &call :
         {get(board0, 0x10004711), set(board0, 0x10004711, 5), get("/dev/chassis0", role_item)}) {
        const IoctlReply reply = board.ioctl(call);
        EXPECT_EQ(reply.result, 0);
        EXPECT_EQ(word(reply.out, 16), 1u);
        EXPECT_EQ(word(reply.out, 28), 0u);
    }
    EXPECT_EQ(board.item(board0, 0x10004711), std::nullopt) << "a refused set must not make the item";
}

TEST(Board, SetChangesWhatTheNextGetAnswers)
{
    Board board(small_profile());
    const IoctlReply reply = board.ioctl(set(board0, role_item, 2));
    EXPECT_EQ(word(reply.out, 16), 0u);
    EXPECT_EQ(word(reply.out, 20), role_item);
    EXPECT_EQ(word(reply.out, 28), 2u);
    EXPECT_EQ(word(board.ioctl(get(board0, role_item)).out, 28), 2u);
    EXPECT_EQ(board.item(board0, role_item), 2u);
}

TEST(Board, ItemsSetAndRemovedFromOutsideAreWhatTheDriverKnows)
{
    Board board(small_profile());
    board.set_item("/dev/slot3", 0x10002202, 1);
    EXPECT_EQ(word(board.ioctl(get("/dev/slot3", 0x10002202)).out, 28), 1u);
    board.remove_item("/dev/slot3", 0x10002202);
    EXPECT_EQ(word(board.ioctl(get("/dev/slot3", 0x10002202)).out, 16), 1u);
    EXPECT_EQ(board.item("/dev/slot3", 0x10002202), std::nullopt);
    board.remove_item("/dev/nothing", 1);
}

TEST(Board, HardInformationHoldsTwelveByteEntriesAndASixByteAddress)
{
    Board board(small_profile());
    const IoctlReply reply = board.ioctl(hard_info({0x10002800, hard_type_item, 0x1000280f}));
    ASSERT_EQ(reply.out.size(), 20u + 12 + 12 + 14);
    EXPECT_EQ(word(reply.out, 0), 0x1000000u);
    EXPECT_EQ(word(reply.out, 4), reply.out.size() - 8);
    EXPECT_EQ(word(reply.out, 16), 0u);
    EXPECT_EQ(word(reply.out, 28), 7u);
    EXPECT_EQ(word(reply.out, 32), hard_type_item);
    EXPECT_EQ(word(reply.out, 40), 0x90020709u);
    EXPECT_EQ(word(reply.out, 44), 0x1000280fu);
    EXPECT_EQ(word(reply.out, 48), 6u);
    EXPECT_EQ(Bytes(reply.out.end() - 6, reply.out.end()), (Bytes{1, 2, 3, 4, 5, 6}));
}

TEST(Board, HardInformationWithOneAbsentItemIsRefused)
{
    Board board(small_profile());
    const IoctlReply reply = board.ioctl(hard_info({hard_type_item, 0x10004711}));
    EXPECT_EQ(reply.result, 0);
    EXPECT_EQ(word(reply.out, 16), 1u);
}

TEST(Board, CutsAReplyAtTheCallersBuffer)
{
    Board board(small_profile());
    auto call = hard_info({0x10002800, hard_type_item, 0x1000280f});
    const Bytes whole = board.ioctl(call).out;
    for (std::uint32_t size : {0u, 1u, 19u, 30u, 57u}) {
        call.out_size = size;
        EXPECT_EQ(board.ioctl(call).out, Bytes(whole.begin(), whole.begin() + size)) << size;
    }
}

TEST(Board, KeepsTheAddressSixBytesLongWhenItsFirstWordIsSet)
{
    Board board(small_profile());
    board.set_item(board0, 0x1000280f, 0x0a0b0c0d);
    const Bytes reply = board.ioctl(hard_info({hard_type_item, 0x1000280f})).out;
    EXPECT_EQ(Bytes(reply.end() - 6, reply.end()), (Bytes{0x0d, 0x0c, 0x0b, 0x0a, 5, 6}));
}

TEST(Board, UnknownRequestsGetWhatAKernelGives)
{
    Board board(small_profile());
    auto call = get(board0, role_item);
    for (std::uint32_t request : {0u, 2u, 4u, 201u, 0x4501u, 0xffffffffu}) {
        call.request = request;
        const IoctlReply reply = board.ioctl(call);
        EXPECT_EQ(reply.result, -1) << request;
        EXPECT_EQ(reply.error, ENOTTY) << request;
        EXPECT_TRUE(reply.out.empty());
    }
    for (const char *device : {envinfo0, "/dev/ttyS0", "/proc/wdt"}) {
        call = get(device, role_item);
        EXPECT_EQ(board.ioctl(call).error, ENOTTY) << device;
    }
    auto read = env(0x4504, "bootdelay");
    EXPECT_EQ(board.ioctl(read).error, ENOTTY);
}

TEST(Board, ServesItsDriversDevicesAndNothingElse)
{
    const Board board(small_profile());
    for (const char *device : {"/dev/board0", "/dev/chassis0", "/dev/envinfo0", "/dev/ttyS0", "/dev/slot1",
                               "/dev/slot9", "/dev/slot32", "/proc/wdt"})
        EXPECT_TRUE(board.serves(device)) << device;
    for (const char *device :
         {"", "/dev/", "/dev/slot", "/dev/slot0", "/dev/slot01", "/dev/slot33", "/dev/slot1x", "/dev/slot-1",
          "/dev/slot4294967297", "/dev/board1", "/dev/null", "board0", "/proc", "/proc/wdt0"})
        EXPECT_FALSE(board.serves(device)) << device;
}

TEST(Board, OpenOfADeviceThatIsNotOnThisBoardFails)
{
    Board board(small_profile());
    EXPECT_EQ(board.open("/dev/board1", 0, 1), ENOENT);
    EXPECT_EQ(board.open(board0, 0, 1), 0);
    EXPECT_EQ(board.open_files(), 1u);
    board.close(board0, 1);
    EXPECT_EQ(board.open_files(), 0u);
}

TEST(Board, ConsoleTakesTextAndHasNoneToGive)
{
    Board board(small_profile());
    EXPECT_EQ(board.write("/dev/ttyS0", {'h', 'i', '\n'}, 1).result, 3);
    EXPECT_EQ(board.write("/dev/ttyS0", {'x'}, 1).result, 1);
    EXPECT_EQ(board.console(), "hi\nx");
    EXPECT_EQ(board.read("/dev/ttyS0", 10, 1).result, 0);
    EXPECT_EQ(board.journal()[0].value, "hi\n");
}

TEST(Board, OtherDevicesCannotBeReadOrWritten)
{
    Board board(small_profile());
    EXPECT_EQ(board.read(board0, 10, 1).error, EINVAL);
    EXPECT_EQ(board.write(board0, {1}, 1).error, EINVAL);
    EXPECT_EQ(board.console(), "");
}

TEST(Board, ACallWithABadAddressFailsAndIsInTheJournal)
{
    Board board(small_profile());
    auto call = get(board0, role_item);
    call.memory_error = EFAULT;
    const IoctlReply reply = board.ioctl(call);
    EXPECT_EQ(reply.error, EFAULT);
    ASSERT_EQ(board.journal().size(), 1u);
    EXPECT_EQ(board.journal()[0].error, EFAULT);
}

TEST(Board, ManyThreadsSeeOneBoardAndEveryOperationIsCounted)
{
    Board board(small_profile());
    std::vector<std::thread> threads;
    constexpr unsigned each = 200;
    for (unsigned t = 0; t < 8; ++t)
        threads.emplace_back([&, t] {
            for (unsigned i = 0; i < each; ++i) {
                board.open(board0, 0, 1);
                board.ioctl(set(board0, role_item, t));
                EXPECT_LT(word(board.ioctl(get(board0, role_item)).out, 28), 8u);
                board.close(board0, 1);
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    const auto journal = board.journal();
    ASSERT_EQ(journal.size(), 8 * each * 3);
    for (std::size_t i = 0; i < journal.size(); ++i)
        ASSERT_EQ(journal[i].number, i + 1);
    EXPECT_EQ(board.open_files(), 0u);
}

} // namespace
