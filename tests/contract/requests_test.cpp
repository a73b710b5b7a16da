// SPDX-License-Identifier: Apache-2.0
// Requests that are not in order, and those that a device does not know.
#include "contract/contract.hpp"

using namespace contract;

namespace
{

class Requests : public OpenBoard
{
  protected:
    void TearDown() override
    {
        EXPECT_EQ(value_through(fd, item_a), 0x11223344) << "the device goes on as before";
        OpenBoard::TearDown();
    }

    static void expect_failure(const ItemCall &call, int error)
    {
        EXPECT_EQ(call.result, -1);
        EXPECT_EQ(call.error, error);
        EXPECT_TRUE(call.untouched_from(0));
        EXPECT_EQ(call.status, untouched_status);
    }
};

TEST_F(Requests, OfAnUnknownNumberGetEnotty)
{
    const Open environment(envinfo0), chassis(chassis0), list(module_crl);
    const struct {
        int fd;
        std::uint32_t request;
    } cases[] = {{fd, 4711},         {fd, 4},
                 {fd, 0x4501},       {environment, DRVBOOT_CMD_GET},
                 {environment, 200}, {environment, 0x4504},
                 {environment, 1},   {chassis, DRVBOOT_CMD_SELF_RESET},
                 {list, 200},        {list, DRVBOOT_CMD_GET}};
    for (const auto &[device, request] : cases)
        expect_failure(get_call({item_a}).ask(device, request), ENOTTY);
    std::size_t unknown = 0;
    for (const vboard::Event &event : events())
        unknown += event.what == "unknown" && event.error == ENOTTY ? 1 : 0;
    EXPECT_EQ(unknown, std::size(cases));
}

TEST_F(Requests, OfAnUnknownNumberNeedNoArgument)
{
    EXPECT_EQ(ioctl(fd, 4711, nullptr), -1);
    EXPECT_EQ(errno, ENOTTY);
}

TEST_F(Requests, WithoutAnArgumentGetEfault)
{
    for (const unsigned request : {DRVBOOT_CMD_GET, DRVBOOT_CMD_SET, DRVBOOT_CMD_SELF_RESET}) {
        EXPECT_EQ(ioctl(fd, request, nullptr), -1);
        EXPECT_EQ(errno, EFAULT);
    }
    const Open environment(envinfo0);
    EXPECT_EQ(ioctl(environment, DRVBOOT_ENV_READ, nullptr), -1);
    EXPECT_EQ(errno, EFAULT);
}

TEST_F(Requests, WithoutABufferGetEfault)
{
    ItemCall no_input = get_call({item_a});
    no_input.block.in.count = sizeof(void *);
    expect_failure(no_input.ask(fd), EFAULT);
    ItemCall no_output = get_call({item_a});
    no_output.block.out.count = sizeof(void *);
    expect_failure(no_output.ask(fd), EFAULT);
}

TEST_F(Requests, OfAWrongShapeGetEinval)
{
    const Words shapes[] = {{0x1000001, 8, item_a, 0},                  // another outer type
                            {DRVBOOT_TLV_L1_TYPE, 0},                   // nothing asked for
                            {DRVBOOT_TLV_L1_TYPE, 4, item_a},           // half an item
                            {DRVBOOT_TLV_L1_TYPE, 8, item_a, 4},        // a value that is not there
                            {DRVBOOT_TLV_L1_TYPE, 57, item_a, 0},       // longer than the buffer
                            {DRVBOOT_TLV_L1_TYPE, 12, item_a, 4, 5},    // a get with a value
                            {DRVBOOT_TLV_L1_TYPE, 0xFFFFFFF8, item_a}}; // a length that wraps
    for (const Words &shape : shapes)
        expect_failure(ItemCall(shape).ask(fd), EINVAL);
    expect_failure(get_call({item_a}).ask(fd, DRVBOOT_CMD_SET), EINVAL);
}

TEST_F(Requests, OfAWrongLengthGetEinval)
{
    for (const std::uint32_t length : {0u, 4u, 12u, 65537u, 0xFFFFFFFFu}) {
        ItemCall call = get_call({item_a});
        call.in_length = length;
        expect_failure(call.ask(fd), EINVAL);
    }
    ItemCall call = get_call({item_a});
    call.out_length = 65537;
    expect_failure(call.ask(fd), EINVAL);
}

TEST_F(Requests, MayBeExactlyAsLongAsWhatTheySay)
{
    ItemCall call = get_call({item_a});
    call.in_length = 16;
    EXPECT_EQ(call.ask(fd).result, 0);
    EXPECT_EQ(call.out[7], 0x11223344u);
}

TEST_F(Requests, WithAnAddressOfAnOddSizeGetEinval)
{
    for (const std::uint32_t count : {1u, 3u, 5u, 9u}) {
        ItemCall call = get_call({item_a});
        call.block.in = address(call.in.data());
        call.block.in.count = count;
        expect_failure(call.ask(fd), EINVAL);
    }
}

TEST_F(Requests, GetAsMuchOfTheReplyAsTheyHaveRoomFor)
{
    ItemCall call = get_call({item_a});
    call.out_length = 20;
    EXPECT_EQ(call.ask(fd).result, 0);
    EXPECT_EQ(call.first(5), (Words{DRVBOOT_TLV_L1_TYPE, 24, DRVBOOT_TLV_RET_TYPE, 4, 0}));
    EXPECT_TRUE(call.untouched_from(5));
    EXPECT_EQ(call.status, 0u);
    ItemCall none = get_call({item_a});
    none.out_length = 0;
    EXPECT_EQ(none.ask(fd).result, 0);
    EXPECT_TRUE(none.untouched_from(0));
    EXPECT_EQ(none.status, 0u);
}

TEST_F(Requests, NeedNotWantTheStatus)
{
    ItemCall call = get_call({item_a});
    call.block.status.count = 4; // at no address
    EXPECT_EQ(call.ask(fd).result, 0);
    EXPECT_EQ(call.out[7], 0x11223344u);
    EXPECT_EQ(call.status, untouched_status);
}

TEST_F(Requests, MayHaveLargeBuffers)
{
    Words in(16384);
    in[0] = DRVBOOT_TLV_L1_TYPE;
    in[1] = 8;
    in[2] = item_a;
    ItemCall call(in);
    call.out.assign(16384, untouched);
    call.out_length = 65536;
    EXPECT_EQ(call.ask(fd).result, 0) << call.error;
    EXPECT_EQ(call.out[7], 0x11223344u);
    EXPECT_TRUE(call.untouched_from(8));
}

TEST_F(Requests, ReadAndWriteAreNoneOfADriversDevice)
{
    const Open both(board0, O_RDWR);
    char byte = 0;
    EXPECT_EQ(read(both, &byte, 1), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(write(both, &byte, 1), -1);
    EXPECT_EQ(errno, EINVAL);
}

} // namespace
