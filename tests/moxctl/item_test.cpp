// SPDX-License-Identifier: Apache-2.0
// moxctl item: items of the board driver.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class Item : public Session
{
  protected:
    Item()
    {
        start(an_mpu);
    }
};

TEST_F(Item, An_item_is_read_by_short_and_by_full_device_name_in_decimal_and_hexadecimal)
{
    set_item(board0, 0x10002987, 0xABCDEF01);
    set_item(chassis0, 0x10002400, 7);
    set_item("/dev/slot3", 0x10002202, 1);
    EXPECT_EQ(output({"item", "get", "board0", "0x10002987"}), "0xabcdef01\n");
    EXPECT_EQ(output({"item", "get", "/dev/board0", "0X10002987"}), "0xabcdef01\n");
    EXPECT_EQ(output({"item", "get", "board0", "268446087"}), "0xabcdef01\n");
    EXPECT_EQ(output({"item", "get", "chassis0", "0x10002400"}), "0x7\n");
    EXPECT_EQ(output({"item", "get", "slot3", "0x10002202"}), "0x1\n");
}

TEST_F(Item, Json_tells_device_item_and_value_as_numbers)
{
    set_item(board0, 0x10002987, 3);
    const json expected = {{"device", "/dev/board0"}, {"code", 0x10002987}, {"value", 3}};
    EXPECT_EQ(object({"item", "get", "board0", "0x10002987"}), expected);
    EXPECT_EQ(object({"item", "set", "board0", "0x10002987", "3"}), expected);
}

TEST_F(Item, An_item_set_is_the_item_got)
{
    EXPECT_EQ(output({"item", "set", "board0", "0x10002987", "2"}), "");
    EXPECT_EQ(output({"item", "get", "board0", "0x10002987"}), "0x2\n");
    EXPECT_EQ(output({"item", "set", "board0", "0x10002987", "0xFFFFFFFF"}), "");
    EXPECT_EQ(output({"item", "get", "board0", "0x10002987"}), "0xffffffff\n");
}

TEST_F(Item, One_call_is_one_request)
{
    asked();
    output({"item", "get", "board0", "0x8000001"});
    output({"item", "set", "board0", "0x10002987", "2"});
    EXPECT_THAT(asked(), ElementsAre("get /dev/board0", "set /dev/board0"));
}

TEST_F(Item, A_refusal_is_told_in_words)
{
    fault({"ioctl", board0, "--item", "0x10002987", "--code", "5", "--times", "0"});
    const Ended got = moxctl({"item", "get", "board0", "0x10002987"});
    EXPECT_EQ(got.status, 1);
    EXPECT_EQ(got.out, "");
    EXPECT_EQ(got.err,
              "moxctl: cannot read item 0x10002987 of /dev/board0 (code 10000: the driver refused the "
              "request, or its answer was not as required)\n");
    const Ended set = moxctl({"item", "set", "board0", "0x10002987", "1", "--json"});
    EXPECT_EQ(set.status, 1);
    EXPECT_EQ(set.out, "");
    EXPECT_THAT(set.err, StartsWith("moxctl: cannot set item 0x10002987 of /dev/board0 (code 10000: "));
}

TEST_F(Item, A_device_that_is_not_there_is_told_in_words)
{
    const Ended ended = moxctl({"item", "get", "board77", "1"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("of /dev/board77 (code 0xffffffff: the device cannot be opened"));
}

} // namespace

} // namespace test
