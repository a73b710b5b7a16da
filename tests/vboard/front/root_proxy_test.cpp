// SPDX-License-Identifier: Apache-2.0
// The root proxy of a running board, spoken to as the platform's stand-in does.
#include "daemon/connection_server.hpp"
#include "platform/root_proxy.hpp"
#include "reset_board.hpp"

#include <gtest/gtest.h>

#include <string>
#include <sys/socket.h>
#include <unistd.h>

using namespace front;
using namespace reset_board;

namespace
{

struct Answer {
    bool complete = false;
    platform::RootProxyAnswer head{};
    std::string output;
};

// From outside the board, through the file that its socket is.
Answer ask(const Directory &state, const std::string &command, std::uint32_t length)
{
    Answer answer;
    const vboard::Descriptor proxy =
        vboard::connect_to(state.path() / "tree/opt/moxv8/var/rootproxy.sock", SOCK_STREAM);
    const platform::RootProxyRequest request{length};
    vboard::send_all(proxy.get(), &request, sizeof request);
    vboard::send_all(proxy.get(), command.data(), command.size());
    shutdown(proxy.get(), SHUT_WR);
    answer.complete = vboard::receive_all(proxy.get(), &answer.head, sizeof answer.head);
    if (answer.complete) {
        answer.output.resize(answer.head.length);
        answer.complete = vboard::receive_all(proxy.get(), answer.output.data(), answer.output.size());
    }
    return answer;
}

Answer ask(const Directory &state, const std::string &command)
{
    return ask(state, command, static_cast<std::uint32_t>(command.size()));
}

} // namespace

TEST(RootProxy, RunsACommandInTheTreeAsTheBoardsRoot)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    sh(board, "echo there > /boot/f");
    const Answer answer = ask(state, "cat /boot/f; id -u; echo wrong >&2; pwd; exit 3");
    ASSERT_TRUE(answer.complete);
    EXPECT_EQ(answer.head.status, 3U);
    EXPECT_EQ(answer.output, "there\n" + std::to_string(geteuid()) + "\nwrong\n/\n");
    EXPECT_EQ(ask(state, "kill -KILL $$").head.status, 137U);
    EXPECT_EQ(ask(state, client_binary() + " one").output, "0x900005f3\ndone\n") << "it is on the board";
}

TEST(RootProxy, CutsTheOutput)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    EXPECT_EQ(ask(state, "head -c 200000 /dev/zero").output, std::string(65536, '\0'));
    const Answer answer = ask(state, "echo said; sleep 300 &");
    EXPECT_EQ(answer.output, "said\n") << "what stays in the background is not waited for";
}

TEST(RootProxy, RefusesWhatIsNoRequest)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    EXPECT_FALSE(ask(state, "", 0).complete);
    EXPECT_FALSE(ask(state, "id", 100).complete);
    EXPECT_FALSE(ask(state, std::string(5000, ' ')).complete);
    EXPECT_FALSE(ask(state, "id", 0xffffffff).complete);
    EXPECT_EQ(ask(state, "echo well").output, "well\n");
}

TEST(RootProxy, DoesNotHoldUpTheBoard)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    const vboard::Descriptor silent =
        vboard::connect_to(state.path() / "tree/opt/moxv8/var/rootproxy.sock", SOCK_STREAM);
    EXPECT_EQ(ask(state, "echo well").output, "well\n");
    EXPECT_EQ(out(board.exec({client_binary(), "one"})), "0x900005f3\ndone\n");
}

TEST(RootProxy, RebootsTheBoard)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    const Answer answer = ask(state, "/sbin/reboot --version | grep -q ^vboard && exec reboot");
    EXPECT_TRUE(answer.complete);
    EXPECT_EQ(answer.head.status, 137U) << "ended by the reset, like every program";
    EXPECT_TRUE(await_resets(board, resets(board)).starts_with("1 "));
    EXPECT_EQ(ask(state, "echo again").output, "again\n");
}

TEST(RootProxy, IsOpenToEveryUserOnTheBoard)
{
    Directory state;
    const Up board(state.path(), {"--board", soft});
    EXPECT_EQ(sh(board, "stat -c %A /opt/moxv8/var/rootproxy.sock"), "srwxrwxrwx\n");
}
