// SPDX-License-Identifier: Apache-2.0
#include "support/board_test.hpp"

#include <cerrno>
#include <limits>

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

constexpr const char *console = "/dev/ttyS0";

class Console : public BoardTest
{
  protected:
    // What arrived at the console, one text a write().
    std::vector<std::string> printed() const
    {
        std::vector<std::string> texts;
        for (const vboard::Event &event : board.journal())
            if (event.op == vboard::Op::write)
                texts.push_back(event.value);
        return texts;
    }
    void write_fault(int error, std::optional<std::uint32_t> cut)
    {
        vboard::Fault fault;
        fault.op = vboard::Op::write;
        fault.device = console;
        fault.error = error;
        fault.cut = cut;
        board.add_fault(fault);
    }
    // The library's writes but those of its own messages.
    std::vector<std::size_t> write_sizes() const
    {
        std::vector<std::size_t> sizes;
        for (const Call &call : calls("write"))
            if (call.fd != 2)
                sizes.push_back(call.size);
        return sizes;
    }
    Said printing(void *text, std::uint32_t length)
    {
        return during([&] { result = MOX_ConsolePrint(text, length); });
    }
    Said acting(std::int32_t type, void *data, std::uint32_t length)
    {
        return during([&] { result = MOX_PdtDoAction(type, data, length); });
    }

    char hello[6] = "hello";
    std::int32_t result = 99;
};

using Sizes = std::vector<std::size_t>;

// ---- MOX_ConsolePrint ------------------------------------------------------------------------------------

TEST_F(Console, PrintWritesTheTextAsItIsAndSaysNothing)
{
    EXPECT_EQ(printing(hello, 5), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_THAT(operations(), ElementsAre("open /dev/ttyS0", "write /dev/ttyS0"));
    EXPECT_THAT(printed(), ElementsAre("hello"));
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(Console, PrintTakesAnyBytes)
{
    std::string raw("\r\0\n%s\x1b[0m", 9);
    EXPECT_EQ(printing(raw.data(), 9), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_THAT(printed(), ElementsAre(raw));
}

TEST_F(Console, PrintCutsAt512BytesSilently)
{
    std::string text(700, 'x');
    for (auto [asked, sent] : std::vector<std::pair<std::uint32_t, std::size_t>>{
             {1, 1}, {511, 511}, {512, 512}, {513, 512}, {600, 512}}) {
        forget_journal();
        EXPECT_EQ(printing(text.data(), asked), nothing()) << asked;
        EXPECT_EQ(result, 0) << asked;
        EXPECT_THAT(printed(), ElementsAre(std::string(sent, 'x'))) << asked;
    }
    forget_journal();
    EXPECT_EQ(printing(text.data(), std::numeric_limits<std::uint32_t>::max()), nothing());
    EXPECT_THAT(printed(), ElementsAre(std::string(512, 'x')));
}

TEST_F(Console, PrintOfNothingStillOpensAndWrites)
{
    EXPECT_EQ(printing(hello, 0), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_THAT(board.journal(), testing::SizeIs(testing::Ge(1u)));
    EXPECT_EQ(write_sizes(), Sizes{0});
}

TEST_F(Console, PrintFailsWhenTheConsoleDoesNotOpen)
{
    deny(console, ENXIO);
    EXPECT_EQ(printing(hello, 5), failure("\r\nopen uart unsuccess.\n\n"));
    EXPECT_EQ(result, -1);
    EXPECT_THAT(printed(), IsEmpty());
    EXPECT_THAT(calls("close"), IsEmpty());
}

TEST_F(Console, PrintFailsWhenTheWriteFails)
{
    write_fault(EIO, std::nullopt);
    EXPECT_EQ(printing(hello, 5), failure("\r\nwrite uart unsuccess.\n\n"));
    EXPECT_EQ(result, -1);
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(Console, PrintDoesNotRepeatAnInterruptedWrite)
{
    fail_libc("write", EINTR);
    EXPECT_EQ(printing(hello, 5), failure("\r\nwrite uart unsuccess.\n\n"));
    EXPECT_EQ(result, -1);
    EXPECT_EQ(write_sizes(), Sizes{5});
}

TEST_F(Console, ShortWriteIsReportedAndStillASuccess)
{
    write_fault(0, 3);
    EXPECT_EQ(printing(hello, 5), failure("\r\nwrite uart unsuccess, uiLen=5, actually write length=3.\n\n"));
    EXPECT_EQ(result, 0);
    EXPECT_EQ(write_sizes(), Sizes{5}) << "the rest is not written";
    EXPECT_EQ(calls("close").size(), 1u);
}

TEST_F(Console, WriteOfNothingIsAShortWrite)
{
    answer_libc("write", 0);
    EXPECT_EQ(printing(hello, 5), failure("\r\nwrite uart unsuccess, uiLen=5, actually write length=0.\n\n"));
    EXPECT_EQ(result, 0);
}

TEST_F(Console, ShortWriteIsMeasuredAgainstTheCappedLength)
{
    std::string text(600, 'x');
    write_fault(0, 511);
    EXPECT_EQ(printing(text.data(), 600),
              failure("\r\nwrite uart unsuccess, uiLen=512, actually write length=511.\n\n"));
    EXPECT_EQ(result, 0);
}

TEST_F(Console, PrintOfANullBufferFailsAndWritesNothing)
{
    printing(nullptr, 5);
    EXPECT_EQ(result, -1);
    EXPECT_THAT(printed(), IsEmpty());
}

// ---- MOX_PdtDoAction -------------------------------------------------------------------------------------

TEST_F(Console, ActionZeroPrintsOnTheConsole)
{
    EXPECT_EQ(acting(0, hello, 5), nothing());
    EXPECT_EQ(result, 0);
    EXPECT_THAT(printed(), ElementsAre("hello"));
}

TEST_F(Console, ActionZeroFailsWithTheConsole)
{
    deny(console, ENXIO);
    EXPECT_EQ(acting(0, hello, 5), failure("\r\nopen uart unsuccess.\n\n"));
    EXPECT_EQ(result, 1);

    write_fault(EIO, std::nullopt);
    EXPECT_EQ(acting(0, hello, 5), failure("\r\nwrite uart unsuccess.\n\n"));
    EXPECT_EQ(result, 1);
}

TEST_F(Console, ActionZeroSucceedsWithAShortWrite)
{
    write_fault(0, 1);
    EXPECT_EQ(acting(0, hello, 5),
              failure("\r\nwrite uart unsuccess, uiLen=5, actually write length=1.\n\n"));
    EXPECT_EQ(result, 0);
}

TEST_F(Console, ActionZeroWithoutDataNamesThePointerNotTheType)
{
    EXPECT_EQ(acting(0, nullptr, 5), failure("enPdtActType 0 input para null\n\n"));
    EXPECT_EQ(result, 1);
    EXPECT_EQ(acting(0, nullptr, 0), failure("enPdtActType 0 input para null\n\n"));
    EXPECT_EQ(result, 1);
    EXPECT_THAT(operations(), IsEmpty());
}

TEST_F(Console, UnknownActionIsNotSupportedAndLeavesTheConsoleAlone)
{
    for (std::int32_t type : {1, 2, -1, 255, std::numeric_limits<std::int32_t>::min()}) {
        Said expected =
            failure(text("[drvboot] MOX_PdtDoAction unsuccess. don't support this para, type=%d\n\n", type));
        EXPECT_EQ(acting(type, hello, 5), expected) << type;
        EXPECT_EQ(result, 2) << type;
        EXPECT_EQ(acting(type, nullptr, 0), expected) << "the type is looked at first";
        EXPECT_EQ(result, 2) << type;
    }
    EXPECT_THAT(operations(), IsEmpty());
    EXPECT_THAT(calls("open"), IsEmpty());
}

} // namespace
