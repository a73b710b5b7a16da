// SPDX-License-Identifier: Apache-2.0
#include "support/board_test.hpp"

#include <cerrno>
#include <cstring>
#include <limits>

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

constexpr const char *opened = "open /dev/envinfo0";
constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

class BootEnv : public BoardTest
{
  protected:
    void SetUp() override
    {
        BoardTest::SetUp();
        memset(value, '#', sizeof value);
        board.set_boot_env("name", "stored");
    }

    Said get(const char *name)
    {
        return during([&] { result = drv_getenv(name, value); });
    }
    Said get_s(const char *name, std::int32_t length)
    {
        return during([&] { result = drv_getenv_s(name, value, length); });
    }
    Said set(const char *name, const char *text)
    {
        return during([&] { result = drv_setenv(name, text); });
    }
    Said set_s(const char *name, const char *text, std::int32_t length)
    {
        return during([&] { result = drv_setenv_s(name, text, length); });
    }
    Said clear(const char *name)
    {
        return during([&] { result = drv_clrenv(name); });
    }
    Said save()
    {
        return during([&] { result = drv_saveenv(); });
    }

    void expect_untouched() const
    {
        EXPECT_EQ(std::string(value, sizeof value), std::string(sizeof value, '#')) << "the output changed";
    }
    // The device was opened and closed, and the driver not asked.
    void expect_not_asked()
    {
        EXPECT_THAT(operations(), ElementsAre(opened));
        EXPECT_EQ(calls("close").size(), 1u);
        EXPECT_THAT(calls("ioctl"), IsEmpty());
        forget_journal();
        forget_calls();
    }
    void fault(int error, std::optional<int> answer)
    {
        vboard::Fault planned;
        planned.device = envinfo0;
        planned.error = error;
        planned.result = answer;
        board.add_fault(planned);
    }
    void answer_fault(std::optional<std::uint32_t> size, std::optional<vboard::Bytes> bytes)
    {
        vboard::Fault planned;
        planned.variable = "name";
        planned.value_size = size;
        planned.value = std::move(bytes);
        board.add_fault(planned);
    }

    char value[512];
    std::uint32_t result = 77;
};

// ---- every function: one open, one request, one close, no word -------------------------------------------

TEST_F(BootEnv, ReadGivesTheStoredText)
{
    EXPECT_EQ(get("name"), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_STREQ(value, "stored");
    EXPECT_THAT(operations(), ElementsAre(opened, "env read name"));
    EXPECT_EQ(calls("open").size(), 1u);
    EXPECT_EQ(calls("ioctl").size(), 1u);
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(BootEnv, BoundedReadGivesTheStoredText)
{
    EXPECT_EQ(get_s("name", 256), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_STREQ(value, "stored");
    EXPECT_THAT(operations(), ElementsAre(opened, "env read name"));
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(BootEnv, WriteStoresTheText)
{
    EXPECT_EQ(set("other", "new text"), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(board.boot_env("other"), "new text");
    EXPECT_THAT(operations(), ElementsAre(opened, "env write other=new text"));
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(BootEnv, BoundedWriteStoresTheText)
{
    EXPECT_EQ(set_s("other", "new text", 9), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(board.boot_env("other"), "new text");
    EXPECT_THAT(operations(), ElementsAre(opened, "env write other=new text"));
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(BootEnv, ClearDeletesTheVariable)
{
    EXPECT_EQ(clear("name"), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(board.boot_env("name"), std::nullopt);
    EXPECT_THAT(operations(), ElementsAre(opened, "env delete name"));
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(BootEnv, SaveIsARequestOfItsOwn)
{
    EXPECT_EQ(save(), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_THAT(operations(), ElementsAre(opened, "env save"));
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(BootEnv, NothingIsSavedUnasked)
{
    set("name", "a");
    set_s("name", "b", 2);
    clear("name");
    EXPECT_THAT(requests(), ElementsAre("env write name=a", "env write name=b", "env delete name"));
}

TEST_F(BootEnv, WrittenTextIsReadBack)
{
    for (const char *text : {"x", "two words", "a=b", "%s%n", "\x01\x7f\xff"}) {
        set("name", text);
        get("name");
        EXPECT_STREQ(value, text);
        set_s("name", text, 256);
        get_s("name", 256);
        EXPECT_STREQ(value, text);
    }
}

TEST_F(BootEnv, DeletedVariableIsNotThere)
{
    clear("name");
    EXPECT_EQ(get("name"), nothing());
    EXPECT_NE(result, 0u);
    EXPECT_EQ(get_s("name", 256), nothing());
    EXPECT_NE(result, 0u);
    expect_untouched();
}

// ---- a device that does not open -------------------------------------------------------------------------

TEST_F(BootEnv, ClosedDeviceIsLoggedAtItsLevelWithoutAStepTrace)
{
    deny(envinfo0, EACCES, 6);
    EXPECT_EQ(get("name"), message(1, "\n\r [Getenv] Can't open file /dev/envinfo0!\n"));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(get_s("name", 256), message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n"));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(set("name", "x"), message(1, "\n\r [Setenv] Can't open file /dev/envinfo0!\n"));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(set_s("name", "x", 2), message(1, "\n\r [Setenv_s] Can't open file /dev/envinfo0!\n"));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(clear("name"), message(1, "\n\r [Clrenv] Can't open file /dev/envinfo0!\n"));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(save(), message(2, "\n\r [Saveenv] Can't open file /dev/envinfo0!\n"));
    EXPECT_EQ(result, 1u);
    EXPECT_THAT(requests(), IsEmpty());
    EXPECT_THAT(calls("close"), IsEmpty());
    expect_untouched();
    EXPECT_EQ(board.boot_env("name"), "stored");
}

// ---- a driver that fails ---------------------------------------------------------------------------------

TEST_F(BootEnv, FailedRequestGivesItsOwnResultSilently)
{
    for (auto [error, answer, wanted] : std::vector<std::tuple<int, std::optional<int>, std::uint32_t>>{
             {EIO, std::nullopt, minus_one}, {0, 1, 1}, {0, 5, 5}, {0, -7, 0xFFFFFFF9}}) {
        for (const auto &ask : std::vector<std::function<Said()>>{
                 [&] { return get("name"); }, [&] { return get_s("name", 256); },
                 [&] { return set("name", "x"); }, [&] { return set_s("name", "x", 2); },
                 [&] { return clear("name"); }, [&] { return save(); }}) {
            forget_calls();
            fault(error, answer);
            EXPECT_EQ(ask(), nothing());
            EXPECT_EQ(result, wanted);
            EXPECT_EQ(calls("ioctl").size(), 1u) << "a request is not repeated";
            EXPECT_EQ(calls("close").size(), 1u);
        }
    }
    expect_untouched();
}

// ---- lengths of names ------------------------------------------------------------------------------------

TEST_F(BootEnv, NameOf255CharactersIsAName)
{
    std::string name(255, 'n');
    set(name.c_str(), "long");
    EXPECT_EQ(result, 0u);
    get(name.c_str());
    EXPECT_EQ(result, 0u);
    EXPECT_STREQ(value, "long");
    set_s(name.c_str(), "longer", 7);
    EXPECT_EQ(result, 0u);
    get_s(name.c_str(), 256);
    EXPECT_EQ(result, 0u);
    EXPECT_STREQ(value, "longer");
    clear(name.c_str());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(board.boot_env(name), std::nullopt);
}

TEST_F(BootEnv, LongerNameIsRefusedSilentlyWithoutARequest)
{
    for (std::size_t length : {256u, 300u, 5000u}) {
        std::string name(length, 'n');
        EXPECT_EQ(get(name.c_str()), nothing());
        EXPECT_EQ(result, 1u);
        expect_not_asked();
        EXPECT_EQ(set(name.c_str(), "x"), nothing());
        EXPECT_EQ(result, 1u);
        expect_not_asked();
        EXPECT_EQ(set_s(name.c_str(), "x", 2), nothing());
        EXPECT_EQ(result, 1u);
        expect_not_asked();
        EXPECT_EQ(clear(name.c_str()), nothing());
        EXPECT_EQ(result, 1u);
        expect_not_asked();
    }
    expect_untouched();
}

TEST_F(BootEnv, BoundedReadOfALongerNameSucceedsWithoutAValue)
{
    for (std::size_t length : {256u, 300u}) {
        EXPECT_EQ(get_s(std::string(length, 'n').c_str(), 256), nothing());
        EXPECT_EQ(result, 0u);
        expect_not_asked();
        expect_untouched();
    }
}

// ---- lengths of values -----------------------------------------------------------------------------------

TEST_F(BootEnv, ValueOf255CharactersIsAValue)
{
    std::string longest(255, 'v');
    set("name", longest.c_str());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(board.boot_env("name"), longest);
    get("name");
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(std::string(value), longest);
    EXPECT_EQ(value[256], '#') << "256 bytes are enough";
}

TEST_F(BootEnv, WriteRefusesALongerValue)
{
    for (std::size_t length : {256u, 300u}) {
        EXPECT_EQ(set("name", std::string(length, 'v').c_str()), nothing());
        EXPECT_EQ(result, 1u);
        expect_not_asked();
    }
    EXPECT_EQ(board.boot_env("name"), "stored");
}

TEST_F(BootEnv, BoundedWriteCutsALongerValueAndSucceeds)
{
    for (std::size_t length : {255u, 256u, 300u}) {
        EXPECT_EQ(set_s("name", std::string(length, 'v').c_str(), 256), nothing());
        EXPECT_EQ(result, 0u);
        EXPECT_EQ(board.boot_env("name"), std::string(255, 'v'));
    }
}

TEST_F(BootEnv, BoundedWriteRefusesALengthOf257AndMoreBeforeTheDeviceIsOpened)
{
    for (std::int32_t length : {257, 258, 1000, highest}) {
        EXPECT_EQ(set_s("name", "x", length),
                  message(1, text("\n\r [Setenv_s] buffer len is too long len is %d!\n", length)));
        EXPECT_EQ(result, 1u);
    }
    EXPECT_THAT(operations(), IsEmpty());
    EXPECT_THAT(calls("open"), IsEmpty());
}

TEST_F(BootEnv, BoundedWriteDoesNotUseAnyOtherLength)
{
    for (std::int32_t length : {256, 255, 1, 0, -1, lowest}) {
        EXPECT_EQ(set_s("name", "six ch", length), nothing()) << length;
        EXPECT_EQ(result, 0u) << length;
        EXPECT_EQ(board.boot_env("name"), "six ch") << length;
    }
}

// ---- room for the answer ---------------------------------------------------------------------------------

TEST_F(BootEnv, BoundedReadRefusesRoomForLessThanACharacter)
{
    for (std::int32_t length : {1, 0, -1, lowest}) {
        EXPECT_EQ(get_s("name", length),
                  message(1, text("\n\r [Getenv_s] buffer len is not ok len is %d!\n", length)));
        EXPECT_EQ(result, 1u);
    }
    EXPECT_THAT(operations(), IsEmpty());
    EXPECT_THAT(calls("open"), IsEmpty());
    expect_untouched();
}

TEST_F(BootEnv, BoundedReadCutsTheValueToItsRoom)
{
    for (auto [length, wanted] : std::vector<std::pair<std::int32_t, const char *>>{{2, "s"},
                                                                                    {3, "st"},
                                                                                    {4, "sto"},
                                                                                    {6, "store"},
                                                                                    {7, "stored"},
                                                                                    {8, "stored"},
                                                                                    {256, "stored"},
                                                                                    {512, "stored"},
                                                                                    {highest, "stored"}}) {
        memset(value, '#', sizeof value);
        EXPECT_EQ(get_s("name", length), nothing()) << length;
        EXPECT_EQ(result, 0u) << length;
        EXPECT_STREQ(value, wanted) << length;
        EXPECT_EQ(value[strlen(wanted) + 1], '#') << "written behind the terminator, length " << length;
    }
}

TEST_F(BootEnv, BoundedReadOfTheLongestValueNeeds256Bytes)
{
    board.set_boot_env("name", std::string(255, 'v'));
    for (auto [length, wanted] :
         std::vector<std::pair<std::int32_t, std::size_t>>{{255, 254}, {256, 255}, {300, 255}}) {
        get_s("name", length);
        EXPECT_EQ(result, 0u);
        EXPECT_EQ(std::string(value), std::string(wanted, 'v'));
    }
}

TEST_F(BootEnv, EmptyValueIsAValue)
{
    answer_fault(std::nullopt, vboard::Bytes{0});
    EXPECT_EQ(get("name"), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_STREQ(value, "");
    memset(value, '#', sizeof value);
    answer_fault(std::nullopt, vboard::Bytes{0});
    EXPECT_EQ(get_s("name", 2), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_STREQ(value, "");
}

// ---- what the driver says of the value's size ------------------------------------------------------------

TEST_F(BootEnv, SizeZeroLeavesNoRoomAndTheOutputUntouched)
{
    answer_fault(0, std::nullopt);
    EXPECT_EQ(get("name"), nothing());
    EXPECT_EQ(result, 1u);
    answer_fault(0, std::nullopt);
    EXPECT_EQ(get_s("name", 256), nothing());
    EXPECT_EQ(result, 1u);
    expect_untouched();
}

TEST_F(BootEnv, ValueLongerThanItsSizeIsRefusedWithAnEmptyOutput)
{
    answer_fault(4, std::nullopt);
    EXPECT_EQ(get("name"), nothing());
    EXPECT_EQ(result, 1u);
    EXPECT_STREQ(value, "");
    memset(value, '#', sizeof value);
    answer_fault(4, std::nullopt);
    EXPECT_EQ(get_s("name", 256), nothing());
    EXPECT_EQ(result, 1u);
    EXPECT_STREQ(value, "");
}

TEST_F(BootEnv, SizeMeasuresWhatIsCopiedNotWhatIsStored)
{
    answer_fault(4, std::nullopt);
    EXPECT_EQ(get_s("name", 4), nothing()); // three characters and a terminator
    EXPECT_EQ(result, 0u);
    EXPECT_STREQ(value, "sto");
}

TEST_F(BootEnv, SizeBeyondTheBufferCountsAsTheBuffer)
{
    for (std::uint32_t size : {300u, 0xFFFFFFFFu}) {
        answer_fault(size, std::nullopt);
        get("name");
        EXPECT_EQ(result, 0u);
        EXPECT_STREQ(value, "stored");
        answer_fault(size, std::nullopt);
        get_s("name", 256);
        EXPECT_EQ(result, 0u);
        EXPECT_STREQ(value, "stored");
    }
}

TEST_F(BootEnv, ValueWithoutATerminatorIsReadAs255Characters)
{
    answer_fault(std::nullopt, vboard::Bytes(256, 'x'));
    EXPECT_EQ(get("name"), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(std::string(value), std::string(255, 'x'));
    EXPECT_EQ(value[256], '#');
    answer_fault(300, vboard::Bytes(256, 'x'));
    EXPECT_EQ(get_s("name", 512), nothing());
    EXPECT_EQ(result, 0u);
    EXPECT_EQ(std::string(value), std::string(255, 'x'));
    EXPECT_EQ(value[256], '#');
}

// ---- copies that fail ------------------------------------------------------------------------------------

TEST_F(BootEnv, FailedCopyOfTheNameIsAnErrorButForTheBoundedRead)
{
    answer_platform("strncpy_s", EINVAL);
    EXPECT_EQ(get("name"), nothing());
    EXPECT_EQ(result, 1u);
    expect_not_asked();
    answer_platform("strncpy_s", EINVAL);
    EXPECT_EQ(get_s("name", 256), nothing());
    EXPECT_EQ(result, 0u);
    expect_not_asked();
    answer_platform("strncpy_s", EINVAL);
    EXPECT_EQ(clear("name"), nothing());
    EXPECT_EQ(result, 1u);
    expect_not_asked();
    expect_untouched();
}

TEST_F(BootEnv, FailedCopyOfNameOrValueStopsAWrite)
{
    for (unsigned skip : {0u, 1u}) {
        answer_platform("strncpy_s", EINVAL, skip);
        EXPECT_EQ(set("name", "x"), nothing());
        EXPECT_EQ(result, 1u);
        expect_not_asked();
        answer_platform("strncpy_s", EINVAL, skip);
        EXPECT_EQ(set_s("name", "x", 2), nothing());
        EXPECT_EQ(result, 1u);
        expect_not_asked();
    }
    EXPECT_EQ(board.boot_env("name"), "stored");
}

TEST_F(BootEnv, FailedCopyOfTheAnswerIsAnError)
{
    answer_platform("strcpy_s", EINVAL);
    EXPECT_EQ(get("name"), nothing());
    EXPECT_EQ(result, 1u);
    answer_platform("strncpy_s", EINVAL, 1); // the first copies the name
    EXPECT_EQ(get_s("name", 256), nothing());
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(calls("close").size(), 2u);
}

// ---- null pointers ---------------------------------------------------------------------------------------

TEST_F(BootEnv, NullPointersGiveTheFailureCode)
{
    EXPECT_EQ(drv_getenv(nullptr, value), 1u);
    EXPECT_EQ(drv_getenv("name", nullptr), 1u);
    EXPECT_EQ(drv_getenv_s(nullptr, value, 256), 1u);
    EXPECT_EQ(drv_getenv_s("name", nullptr, 256), 1u);
    EXPECT_EQ(drv_setenv(nullptr, "x"), 1u);
    EXPECT_EQ(drv_setenv("name", nullptr), 1u);
    EXPECT_EQ(drv_setenv_s(nullptr, "x", 2), 1u);
    EXPECT_EQ(drv_setenv_s("name", nullptr, 2), 1u);
    EXPECT_EQ(drv_clrenv(nullptr), 1u);
    EXPECT_THAT(requests(), IsEmpty());
    expect_untouched();
}

TEST_F(BootEnv, LengthIsLookedAtBeforePointers)
{
    EXPECT_EQ(get_s(nullptr, 1), message(1, "\n\r [Getenv_s] buffer len is not ok len is 1!\n"));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(set_s(nullptr, nullptr, 257),
              message(1, "\n\r [Setenv_s] buffer len is too long len is 257!\n"));
    EXPECT_EQ(result, 1u);
}

} // namespace
