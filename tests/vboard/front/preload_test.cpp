// SPDX-License-Identifier: Apache-2.0
// Programs on a board, through the preload shim: native ones, and ARM ones under the emulator where both can
// be built.
#include "client_test.hpp"

using namespace front;
using testing::HasSubstr;
using testing::Not;

namespace
{

int count(const std::string &text, const std::string &piece)
{
    int found = 0;
    for (std::size_t at = 0; (at = text.find(piece, at)) != std::string::npos; at += piece.size())
        found++;
    return found;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Programs, Client, CLIENT_KINDS, client_kind);

TEST_P(Client, ReadsAnItemWithOneOpenAndOneRequest)
{
    const Outcome outcome = run({"one"}, {"--board", "qs3520-mpu"});
    EXPECT_EQ(outcome.out, "0x900005f3\ndone\n") << outcome.err;
    EXPECT_EQ(count(outcome.err, "#"), 2) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("#1 open /dev/board0"));
    EXPECT_THAT(outcome.err, HasSubstr("#2 get /dev/board0 0x8000001"));
}

TEST_P(Client, MayForkWithAnOpenDescriptor)
{
    expect_done(run({"fork"}));
}

TEST_P(Client, MayBeSeveralProcesses)
{
    const Outcome outcome = run({"processes"});
    expect_done(outcome);
    EXPECT_GE(count(outcome.err, "open /dev/board0"), 160);
}

TEST_P(Client, MayCopyADescriptor)
{
    expect_done(run({"copies"}));
}

TEST_P(Client, MayHoldManyDescriptors)
{
    expect_done(run({"many"}));
}

TEST_P(Client, MayUseANumberAgain)
{
    const Outcome outcome = run({"reuse"});
    expect_done(outcome);
    EXPECT_THAT(outcome.err,
                Not(HasSubstr("unknown request"))); // the plain file's ioctl did not reach the driver
}

TEST_P(Client, MayHandADescriptorToAnotherProgram)
{
    expect_done(run({"exec"}));
}

TEST_P(Client, SeesTheFlagsThatItOpenedWith)
{
    expect_done(run({"flags"}));
}

TEST_P(Client, MayNameADeviceInAnyWay)
{
    expect_done(run({"relative"}));
}

TEST_P(Client, KeepsTheErrorOfAFailedOpen)
{
    expect_done(run({"failing"}));
}

TEST_P(Client, IsToldOfUnknownRequests)
{
    expect_done(run({"unknown"}));
}

TEST_P(Client, GetsEfaultForABadAddress)
{
    expect_done(run({"addresses"}));
}

TEST_P(Client, NeverGetsTheAnswerToAnothersQuestion)
{
    expect_done(run({"shared"}));
}

TEST_P(Client, IsNotHeldUpByAnothersDelay)
{
    expect_done(run({"delayed"}, {"--fault", "ioctl /dev/board0 --item 0x10002987 --delay 1500"}));
}

TEST_P(Client, MeetsPlannedFaults)
{
    const Outcome outcome = run({"one"}, {"--fault", "open /dev/board0 --errno EACCES"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("cannot open /dev/board0 (errno 13)"));
    const Outcome second = run({"one"}, {"--fault", "ioctl any --item 0x8000001 --errno 5"});
    EXPECT_EQ(second.status, 1);
    EXPECT_THAT(second.err, HasSubstr("(errno 5)"));
}

TEST_P(Client, WritesToTheConsoleByAnyWay)
{
    Directory state;
    const Outcome outcome = run({"console"}, {"--state", state.path()});
    expect_done(outcome);
    std::string text = content(state.path() / "console");
    // What stdio writes by itself nobody waits for: it may come a little later.
    const std::string by_stdio = "by stdio\n";
    ASSERT_THAT(text, HasSubstr(by_stdio));
    text.erase(text.find(by_stdio), by_stdio.size());
    EXPECT_TRUE(text.starts_with("by write\n"));
    EXPECT_EQ(count(text, "x"), 200 * 1024);
    EXPECT_TRUE(text.ends_with("by a shell\n")) << text.substr(text.size() - 40);
}

TEST_P(Client, LogsToTheBoardsSystemLog)
{
    Directory state;
    expect_done(run({"log"}, {"--state", state.path()}));
    const std::string text = content(state.path() / "syslog");
    EXPECT_TRUE(text.starts_with("3.6 ")) << text;
    EXPECT_TRUE(text.ends_with("client: a line for the log\n")) << text;
}

TEST_P(Client, FindsTheFootprintInBothPlaces)
{
    const Outcome outcome = run({"footprint"}, {"--board", "qs3520-mpu"});
    EXPECT_EQ(outcome.out, "t0_s=0\nt0_s=0\ndone\n") << outcome.err;
}

TEST_P(Client, FindsThePlatformsLibrariesByName)
{
    const Outcome outcome = run({"mcu"}, {"--board", "qs3520-mpu"});
    expect_done(outcome);
    EXPECT_THAT(outcome.out, HasSubstr("status 1\n"));
    EXPECT_THAT(outcome.err, HasSubstr("get /dev/board0 0x7f000001"));
}

TEST_P(Client, FindsTheLibraryThatIsOpenedByItsPlace)
{
    const Outcome enabled = run({"nb-bsp"}, {"--board", "gl6264-r22"});
    expect_done(enabled);
    EXPECT_THAT(enabled.out, HasSubstr("secure boot 1\n"));
    EXPECT_THAT(enabled.err, HasSubstr("get /dev/board0 0x7f000005 secure boot -> 1"));
    EXPECT_THAT(run({"nb-bsp"}, {"--board", "kyp362r-z"}).out, HasSubstr("secure boot 0\n"));
    EXPECT_THAT(run({"nb-bsp"}, {"--board", "qs3520-mpu"}).out, HasSubstr("secure boot 0\n"));
}

TEST_P(Client, OpensLibrariesFromALibraryWithASearchPathOfItsOwn)
{
    const std::string opener = arm() ? ARM_OPENER : OPENER;
    expect_done(run({"search-path", opener}));
    const Outcome place = run({"search-place", opener}, {"--board", "gl6264-r22"});
    expect_done(place);
    EXPECT_THAT(place.out, HasSubstr("place 1\n")) << "the board's own, which every program finds";
}

TEST_P(Client, MayRebootTheBoard)
{
    const Outcome outcome = run({"reboot"}, {"--board", "qs3520-mpu"});
    EXPECT_EQ(outcome.status, 137) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, HasSubstr("vboard: the board was reset ("));
    EXPECT_THAT(outcome.err, HasSubstr(" reset\n"));
}

TEST_P(Client, CannotHarmTheBoard)
{
    expect_done(run({"hostile"}));
}
