// SPDX-License-Identifier: Apache-2.0
#include "support/board_test.hpp"

#include <array>
#include <cerrno>
#include <cstring>

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

constexpr std::uint32_t item = 0x10002907;
constexpr const char *memory_copy_erange = "memcpy_s not success, not ok code is 34.\n";
constexpr const char *memory_copy_einval = "memcpy_s not success, not ok code is 22.\n";
constexpr const char *path_too_long = "String print unsuccessfully, return check code=-1\n\n";

class Driver : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        board.set_item(board0, item, 0x11223344);
    }

    Said getting(const char *device, std::uint32_t l2type)
    {
        return during([&] { result = drvboot_get_value_by_tlv(device, l2type, &value); });
    }
    Said setting(const char *device, std::uint32_t l2type, std::uint32_t wanted)
    {
        return during([&] { result = drvboot_set_value_by_tlv(device, l2type, wanted); });
    }
    Said sending(DrvbootCmdRequest &request)
    {
        return during([&] { result = drvboot_ioctrl(&request); });
    }
    DrvbootCmdRequest request(std::uint32_t cmd)
    {
        DrvbootCmdRequest made = {};
        std::string(board0).copy(made.device, sizeof made.device - 1);
        made.cmd = cmd;
        made.l1type = 0x1000000;
        made.l2type = item;
        made.result = &value;
        return made;
    }
    void reply_fault(std::map<std::uint32_t, std::uint32_t> words,
                     std::optional<std::uint32_t> cut = std::nullopt)
    {
        vboard::Fault fault;
        fault.device = board0;
        fault.item = item;
        fault.reply_words = std::move(words);
        fault.cut = cut;
        board.add_fault(fault);
    }
    void ioctl_fault(int error, std::optional<int> answer)
    {
        vboard::Fault fault;
        fault.device = board0;
        fault.item = item;
        fault.error = error;
        fault.result = answer;
        board.add_fault(fault);
    }
    void expect_untouched(std::uint32_t code)
    {
        EXPECT_EQ(result, code);
        EXPECT_EQ(value, 0xabababab) << "the output changed on a failure";
    }
    // One open, one request, one close, and nothing beside them.
    void expect_one_round(const std::string &request_line)
    {
        EXPECT_THAT(operations(), ElementsAre("open /dev/board0", request_line));
        EXPECT_EQ(calls("open").size(), 1u);
        EXPECT_EQ(calls("ioctl").size(), 1u);
        EXPECT_EQ(calls("close").size(), 1u);
    }

    std::uint32_t value = 0xabababab;
    std::uint32_t result = 77;
};

Said mismatch(std::uint32_t echoed, std::uint32_t asked)
{
    return failure(
        text("Drvboot excute cmd not success for data dismatch, output cmd type 0x%x, input cmd type 0x%x\n",
             echoed, asked));
}

Said set_failed(const char *device, std::uint32_t code)
{
    return failure(text("Not succeed to set %s l2_type=0x%x, ret=0x%x.\n", device, item, code));
}

// ---- the way of one request ------------------------------------------------------------------------------

TEST_F(Driver, GetTakesOneOpenOneRequestAndOneClose)
{
    EXPECT_EQ(getting(board0, item), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(value, 0x11223344u);
    expect_one_round("get /dev/board0 0x10002907");
}

TEST_F(Driver, SetTakesOneOpenOneRequestAndOneClose)
{
    EXPECT_EQ(setting(board0, item, 3), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(board.item(board0, item), 3u);
    expect_one_round("set /dev/board0 0x10002907 3");
}

TEST_F(Driver, DeviceIsOpenedAgainForEveryRequest)
{
    getting(board0, item);
    getting(board0, item);
    EXPECT_THAT(operations(), ElementsAre("open /dev/board0", "get /dev/board0 0x10002907",
                                          "open /dev/board0", "get /dev/board0 0x10002907"));
    EXPECT_EQ(calls("close").size(), 2u);
}

TEST_F(Driver, EachDeviceHasItsOwnItems)
{
    board.set_item(chassis0, item, 1);
    board.set_item("/dev/slot5", item, 2);
    EXPECT_EQ(getting(chassis0, item), nothing());
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(getting("/dev/slot5", item), nothing());
    EXPECT_EQ(value, 2u);
    EXPECT_THAT(requests(), ElementsAre("get /dev/chassis0 0x10002907", "get /dev/slot5 0x10002907"));
}

TEST_F(Driver, EveryValueComesThrough)
{
    for (std::uint32_t wanted : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu, 10000u}) {
        EXPECT_EQ(setting(board0, item, wanted), nothing());
        EXPECT_EQ(result, 0u);
        EXPECT_EQ(getting(board0, item), nothing());
        EXPECT_EQ(result, 0u);
        EXPECT_EQ(value, wanted);
    }
}

// ---- drvboot_ioctrl --------------------------------------------------------------------------------------

TEST_F(Driver, RequestRecordGetsAnItem)
{
    DrvbootCmdRequest get = request(DRVBOOT_CMD_GET);
    EXPECT_EQ(sending(get), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(value, 0x11223344u);
    expect_one_round("get /dev/board0 0x10002907");
}

TEST_F(Driver, NumbersOfTheChannelAreThoseOfTheDriver)
{
    EXPECT_EQ(DRVBOOT_CMD_GET, 3u);
    EXPECT_EQ(DRVBOOT_CMD_SET, 200u);
    EXPECT_EQ(DRVBOOT_TLV_L1_TYPE, 0x1000000u);
    EXPECT_EQ(DRVBOOT_TLV_RET_TYPE, 0x100u);
    EXPECT_EQ(DRVBOOT_ERR_IOCTL, 10000u);
    EXPECT_EQ(sizeof(AddrDes), 12u);
    EXPECT_EQ(sizeof(DrvbootIoctlBlock), 44u);
}

TEST_F(Driver, NullRequestIsRefusedSilently)
{
    EXPECT_EQ(during([&] { result = drvboot_ioctrl(nullptr); }), nothing());
    EXPECT_EQ(result, minus_one);
    EXPECT_THAT(operations(), IsEmpty());
}

TEST_F(Driver, RequestWithoutAPlaceForItsResultIsRefused)
{
    for (std::uint32_t cmd : {DRVBOOT_CMD_GET, DRVBOOT_CMD_SET}) {
        DrvbootCmdRequest made = request(cmd);
        made.result = nullptr;
        sending(made);
        EXPECT_EQ(result, minus_one);
    }
    EXPECT_THAT(operations(), IsEmpty());
}

TEST_F(Driver, DeviceThatDoesNotOpenIsAnErrorWithoutAMessage)
{
    deny(board0, ENOENT, 2);
    DrvbootCmdRequest get = request(DRVBOOT_CMD_GET);
    EXPECT_EQ(sending(get), nothing());
    expect_untouched(minus_one);
    EXPECT_EQ(getting(board0, item), nothing());
    expect_untouched(minus_one);
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(calls("close"), IsEmpty());
}

TEST_F(Driver, UnknownCommandIsReportedAndNeverReachesTheDriver)
{
    for (std::uint32_t cmd : {0u, 1u, 2u, 4u, 199u, 201u, 0xFFFFFFFFu}) {
        forget_journal();
        forget_calls();
        DrvbootCmdRequest made = request(cmd);
        EXPECT_EQ(sending(made),
                  failure(text("Drvboot excute cmd 0x%x not success for the cmd is unknown\n", cmd)));
        expect_untouched(minus_one);
        EXPECT_THAT(operations(), ElementsAre("open /dev/board0"));
        EXPECT_EQ(calls("close").size(), 1u);
    }
}

TEST_F(Driver, DataOf48BytesFits)
{
    std::array<std::uint8_t, 48> data = {5};
    DrvbootCmdRequest set = request(DRVBOOT_CMD_SET);
    set.data = data.data();
    set.data_length = 48;
    EXPECT_EQ(sending(set), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(calls("ioctl").size(), 1u);
}

TEST_F(Driver, DataOf49BytesIsRefusedBeforeAnyRequest)
{
    std::array<std::uint8_t, 64> data = {};
    for (std::uint32_t length : {49u, 64u, 0xFFFFFFFFu}) {
        forget_calls();
        DrvbootCmdRequest set = request(DRVBOOT_CMD_SET);
        set.data = data.data();
        set.data_length = length;
        EXPECT_EQ(sending(set), failure(memory_copy_erange)) << length;
        expect_untouched(minus_one);
        EXPECT_EQ(calls("open").size(), 1u);
        EXPECT_EQ(calls("close").size(), 1u);
    }
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(calls("ioctl"), IsEmpty());
}

TEST_F(Driver, MissingDataIsRefusedBeforeAnyRequest)
{
    DrvbootCmdRequest set = request(DRVBOOT_CMD_SET);
    set.data_length = 4;
    EXPECT_EQ(sending(set), failure(memory_copy_einval));
    expect_untouched(minus_one);
    EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(Driver, CodeOfAFailedCopyIsReported)
{
    answer_platform("memcpy_s", 7);
    EXPECT_EQ(setting(board0, item, 1),
              failure("memcpy_s not success, not ok code is 7.\n") + set_failed(board0, minus_one));
    EXPECT_EQ(result, minus_one);
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_EQ(calls("close").size(), 1u);
}

// ---- checks of the reply ---------------------------------------------------------------------------------

TEST_F(Driver, FailedRequestGivesTheChannelsOwnCodeSilently)
{
    for (int error : {EIO, ENOTTY, EINVAL, EINTR}) {
        forget_calls();
        ioctl_fault(error, std::nullopt);
        EXPECT_EQ(getting(board0, item), nothing()) << error;
        expect_untouched(err_ioctl);
        EXPECT_EQ(calls("ioctl").size(), 1u) << "a request is not repeated";
        EXPECT_EQ(calls("close").size(), 1u);
    }
}

TEST_F(Driver, AnyResultButZeroIsAFailedRequest)
{
    for (int answer : {1, 2, 10000, -2}) {
        ioctl_fault(0, answer);
        EXPECT_EQ(getting(board0, item), nothing()) << answer;
        expect_untouched(err_ioctl);
    }
}

TEST_F(Driver, RefusalByTheDriverIsNotPassedOn)
{
    for (std::uint32_t code : {1u, 2u, 0x80000000u, 0xFFFFFFFFu}) {
        reply_fault({{16, code}});
        EXPECT_EQ(getting(board0, item), nothing()) << code;
        expect_untouched(err_ioctl);
    }
    refuse(board0, item);
    EXPECT_EQ(getting(board0, item), nothing());
    expect_untouched(err_ioctl);
}

TEST_F(Driver, ItemThatTheBoardDoesNotHaveIsRefused)
{
    EXPECT_EQ(getting(board0, 0x1000abcd), nothing());
    EXPECT_EQ(result, err_ioctl);
    EXPECT_EQ(value, 0xababababu);
}

TEST_F(Driver, ReplyWithAnotherOuterTypeIsRefused)
{
    for (std::uint32_t type : {0u, 1u, 0x1000001u, 0x2000000u, 0x100u}) {
        reply_fault({{0, type}});
        EXPECT_EQ(getting(board0, item), nothing()) << type;
        expect_untouched(err_ioctl);
    }
}

TEST_F(Driver, ReplyWithAnotherReturnTypeIsRefused)
{
    for (std::uint32_t type : {0u, 0x101u, 0x1000000u}) {
        reply_fault({{8, type}});
        EXPECT_EQ(getting(board0, item), nothing()) << type;
        expect_untouched(err_ioctl);
    }
}

TEST_F(Driver, ReplyWithAnotherReturnLengthIsRefused)
{
    for (std::uint32_t length : {0u, 3u, 5u, 8u, 0xFFFFFFFFu}) {
        reply_fault({{12, length}});
        EXPECT_EQ(getting(board0, item), nothing()) << length;
        expect_untouched(err_ioctl);
    }
}

TEST_F(Driver, ReplyForAnotherItemIsReportedWithBothItems)
{
    reply_fault({{20, 0x10002908}});
    EXPECT_EQ(getting(board0, item), mismatch(0x10002908, item));
    expect_untouched(minus_one);
    EXPECT_EQ(calls("close").size(), 1u);
    reply_fault({{20, 0}});
    EXPECT_EQ(getting(board0, item), mismatch(0, item));
    expect_untouched(minus_one);
}

TEST_F(Driver, HeaderIsCheckedBeforeTheItem)
{
    reply_fault({{16, 1}, {20, 0x10002908}});
    EXPECT_EQ(getting(board0, item), nothing());
    expect_untouched(err_ioctl);
}

TEST_F(Driver, LengthsOfTheReplyAreOfNoAccount)
{
    for (std::uint32_t offset : {4u, 24u})
        for (std::uint32_t length : {0u, 1u, 0xFFFFFFFFu}) {
            reply_fault({{offset, length}});
            EXPECT_EQ(getting(board0, item), nothing()) << offset;
            EXPECT_EQ(result, 0u);
            EXPECT_EQ(value, 0x11223344u);
        }
}

TEST_F(Driver, ValueIsTheWordAtByte28)
{
    reply_fault({{28, 0x55667788}, {32, 1}});
    EXPECT_EQ(getting(board0, item), nothing());
    EXPECT_EQ(value, 0x55667788u);
}

// What the driver leaves out of a reply reads as zero, never as what an earlier reply held.
TEST_F(Driver, TruncatedReplyIsJudgedByWhatItHolds)
{
    for (std::uint32_t kept : {0u, 4u, 8u, 12u}) {
        ASSERT_EQ(getting(board0, item), nothing());
        ASSERT_EQ(result, 0u);
        value = 0xabababab;
        reply_fault({}, kept);
        EXPECT_EQ(getting(board0, item), nothing()) << kept;
        expect_untouched(err_ioctl);
    }
    for (std::uint32_t kept : {16u, 20u}) {
        reply_fault({}, kept);
        EXPECT_EQ(getting(board0, item), mismatch(0, item)) << kept;
        expect_untouched(minus_one);
    }
    for (std::uint32_t kept : {24u, 28u}) {
        reply_fault({}, kept);
        EXPECT_EQ(getting(board0, item), nothing()) << kept;
        EXPECT_EQ(result, 0u);
        EXPECT_EQ(value, 0u);
    }
}

// ---- drvboot_get_value_by_tlv ----------------------------------------------------------------------------

TEST_F(Driver, GetWithoutAPlaceForTheValueIsReportedAndDoesNotOpenTheDevice)
{
    EXPECT_EQ(during([&] { result = drvboot_get_value_by_tlv(board0, item, nullptr); }),
              failure("Get tlv: /dev/board0,l2_type=0x10002907 input arg is null\n"));
    EXPECT_EQ(result, minus_one);
    EXPECT_THAT(calls("open"), IsEmpty());
}

TEST_F(Driver, GetWithAPathOf19CharactersAsksTheKernel)
{
    EXPECT_EQ(getting("/dev/board0123456ab", item), nothing());
    expect_untouched(minus_one); // no such device
    ASSERT_EQ(calls("open").size(), 1u);
    EXPECT_EQ(calls("open")[0].path, "/dev/board0123456ab");
}

TEST_F(Driver, GetWithAPathOf20CharactersOrMoreIsReported)
{
    for (const char *path : {"/dev/board0123456abc", "/dev/board0123456abcd",
                             "/dev/board0/a/path/that/is/much/longer/than/the/field"}) {
        EXPECT_EQ(getting(path, item), failure(path_too_long)) << path;
        expect_untouched(minus_one);
    }
    EXPECT_THAT(calls("open"), IsEmpty());
}

TEST_F(Driver, GetWithoutADeviceFails)
{
    during([&] { result = drvboot_get_value_by_tlv(nullptr, item, &value); });
    expect_untouched(minus_one);
    EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(Driver, GetFromAnEmptyPathFailsSilently)
{
    EXPECT_EQ(getting("", item), nothing());
    expect_untouched(minus_one);
}

// ---- drvboot_set_value_by_tlv ----------------------------------------------------------------------------

TEST_F(Driver, SetReportsEveryChannelFailureWithItsCode)
{
    deny(board0, EACCES);
    EXPECT_EQ(setting(board0, item, 1), set_failed(board0, minus_one));
    EXPECT_EQ(result, minus_one);

    ioctl_fault(EIO, std::nullopt);
    EXPECT_EQ(setting(board0, item, 1), set_failed(board0, err_ioctl));
    EXPECT_EQ(result, err_ioctl);

    refuse(board0, item);
    EXPECT_EQ(setting(board0, item, 1), set_failed(board0, err_ioctl));
    EXPECT_EQ(result, err_ioctl);

    reply_fault({{20, 0x10002908}});
    EXPECT_EQ(setting(board0, item, 1), mismatch(0x10002908, item) + set_failed(board0, minus_one));
    EXPECT_EQ(result, minus_one);
}

TEST_F(Driver, SetChecksTheReplysHeader)
{
    for (std::uint32_t offset : {0u, 8u, 12u, 16u}) {
        reply_fault({{offset, 0xbad}});
        EXPECT_EQ(setting(board0, item, 1), set_failed(board0, err_ioctl)) << offset;
        EXPECT_EQ(result, err_ioctl);
    }
}

TEST_F(Driver, SetWithAPathOf19CharactersAsksTheKernel)
{
    EXPECT_EQ(setting("/dev/board0123456ab", item, 1), set_failed("/dev/board0123456ab", minus_one));
    EXPECT_EQ(result, minus_one);
    EXPECT_EQ(calls("open").size(), 1u);
}

TEST_F(Driver, SetWithAPathOf20CharactersOrMoreFailsSilently)
{
    for (const char *path : {"/dev/board0123456abc", "/dev/board0123456abcd"}) {
        EXPECT_EQ(setting(path, item, 1), nothing()) << path;
        EXPECT_EQ(result, minus_one);
    }
    EXPECT_THAT(calls("open"), IsEmpty());
}

} // namespace
