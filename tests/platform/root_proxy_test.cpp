// SPDX-License-Identifier: Apache-2.0
// The root proxy's client against a service of the test's own.
#include "platform/root_proxy.hpp"
#include "platform/scratch.hpp"

#include <moxboot/platform.h>

#include <array>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace
{

uid_t effective_user = 0;

} // namespace

// Stands before libc's.
extern "C" uid_t geteuid() noexcept
{
    return effective_user;
}

namespace
{

// Serves one client in a thread of its own.
class Service
{
  public:
    explicit Service(std::function<void(int client)> serve)
        : listener_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(bind(listener_, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        EXPECT_EQ(listen(listener_, 1), 0);
        setenv("MOXPLATFORM_ROOTPROXY", path.c_str(), 1);
        thread_ = std::thread([this, serve = std::move(serve)] {
            const int client = accept(listener_, nullptr, nullptr);
            if (client >= 0) {
                serve(client);
                close(client);
            }
        });
    }
    ~Service()
    {
        shutdown(listener_, SHUT_RDWR); // nobody may have come
        thread_.join();
        close(listener_);
        unsetenv("MOXPLATFORM_ROOTPROXY");
    }
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    const test::Scratch scratch;
    const std::string path = scratch.path("proxy.sock");

  private:
    int listener_;
    std::thread thread_;
};

std::string receive(int client, size_t size)
{
    std::string bytes(size, '\0');
    const ssize_t length = size == 0 ? 0 : recv(client, bytes.data(), size, MSG_WAITALL);
    bytes.resize(length < 0 ? 0 : static_cast<size_t>(length));
    return bytes;
}

uint32_t receive_word(int client)
{
    uint32_t word = 0;
    const std::string bytes = receive(client, sizeof word);
    memcpy(&word, bytes.data(), bytes.size());
    return word;
}

void say(int client, const std::string &bytes)
{
    static_cast<void>(send(client, bytes.data(), bytes.size(), MSG_NOSIGNAL));
}

std::string word(uint32_t value)
{
    std::string bytes(sizeof value, '\0');
    memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

// Takes a request and says what is given.
Service answering(std::string &command, const std::string &answer)
{
    return Service([&command, answer](int client) {
        command = receive(client, receive_word(client));
        say(client, answer);
    });
}

struct Output : std::array<char, 16> {
    Output()
    {
        fill('?');
    }
};

int32_t run(const char *command, uint32_t length, Output &output, uint32_t size = 16)
{
    return RootProxyExecCmd(command, length, output.data(), size);
}

TEST(RootProxy, IsNeededByAProcessWithoutRootRightsOnly)
{
    effective_user = 0;
    EXPECT_EQ(IsNeedRootProxy(), 0);
    effective_user = 1000;
    EXPECT_EQ(IsNeedRootProxy(), 1);
}

TEST(RootProxy, SendsTheCommandAndHandsBackStatusAndOutput)
{
    std::string command;
    Output output;
    {
        const Service service = answering(command, word(3) + word(4) + "text");
        EXPECT_EQ(run("reboot", 7, output), 3);
    }
    EXPECT_EQ(command, "reboot");
    EXPECT_STREQ(output.data(), "text");
}

TEST(RootProxy, ACommandWithoutTerminatorEndsAtItsLength)
{
    std::string command;
    Output output;
    {
        const Service service = answering(command, word(0) + word(0));
        EXPECT_EQ(run("reboot now", 6, output), 0);
    }
    EXPECT_EQ(command, "reboot");
    EXPECT_STREQ(output.data(), "");
}

TEST(RootProxy, NothingBehindTheTerminatorTravels)
{
    std::string command;
    Output output;
    {
        const Service service = answering(command, word(0) + word(0));
        EXPECT_EQ(run("ls\0secret", 9, output), 0);
    }
    EXPECT_EQ(command, "ls");
}

TEST(RootProxy, OutputIsCutAndTerminatedInTheRoomThereIs)
{
    for (const uint32_t size : {1u, 4u, 5u, 6u}) {
        std::string command;
        Output output;
        {
            const Service service = answering(command, word(0) + word(5) + "lines");
            EXPECT_EQ(run("ls", 3, output, size), 0);
        }
        EXPECT_EQ(std::string(output.data()), std::string("lines").substr(0, size - 1));
        EXPECT_EQ(output[size], '?') << "written beyond the room";
    }
}

TEST(RootProxy, TakesAllThatTheServiceSaysHoweverMuch)
{
    const std::string much(300000, 'x');
    bool all_taken = false;
    Output output;
    {
        const Service service([&](int client) {
            receive(client, receive_word(client));
            const std::string answer = word(0) + word(static_cast<uint32_t>(much.size())) + much;
            size_t sent = 0;
            while (sent < answer.size()) {
                const ssize_t piece = send(client, &answer[sent], answer.size() - sent, MSG_NOSIGNAL);
                if (piece <= 0)
                    return;
                sent += static_cast<size_t>(piece);
            }
            all_taken = true;
        });
        EXPECT_EQ(run("ls", 3, output), 0);
    }
    EXPECT_TRUE(all_taken);
    EXPECT_EQ(std::string(output.data()), std::string(15, 'x'));
}

TEST(RootProxy, WaitsForAServiceThatTakesItsTime)
{
    Output output;
    const Service service([](int client) {
        receive(client, receive_word(client));
        for (const char byte : word(7) + word(2) + "ok") {
            usleep(20000);
            say(client, std::string(1, byte));
        }
    });
    EXPECT_EQ(run("ls", 3, output), 7);
    EXPECT_STREQ(output.data(), "ok");
}

TEST(RootProxy, AConversationThatBreaksOffIsAFailureWithNoOutput)
{
    const std::string whole = word(0) + word(4) + "text";
    for (size_t length = 0; length < whole.size(); ++length) {
        std::string command;
        Output output;
        const Service service = answering(command, whole.substr(0, length));
        EXPECT_EQ(run("ls", 3, output), -1) << "after " << length << " bytes";
        EXPECT_STREQ(output.data(), "");
    }
}

TEST(RootProxy, OutputThatBreaksOffWhereItWouldBeCutIsAFailureToo)
{
    std::string command;
    Output output;
    const Service service = answering(command, word(0) + word(40) + std::string(39, 'x'));
    EXPECT_EQ(run("ls", 3, output), -1);
    EXPECT_STREQ(output.data(), "");
}

TEST(RootProxy, AServiceThatHangsUpAtOnceDoesNotKillTheCaller)
{
    for (int i = 0; i < 20; ++i) {
        Output output;
        const Service service([](int) {});
        EXPECT_EQ(RootProxyExecCmd(std::string(4000, 'x').c_str(), 4000, output.data(), 16), -1);
    }
}

TEST(RootProxy, WithoutAServiceNothingIsRun)
{
    const test::Scratch scratch;
    const auto before = test::open_descriptors();
    for (const std::string &path : {scratch.path("none.sock"), scratch.path(std::string(120, 'x'))}) {
        setenv("MOXPLATFORM_ROOTPROXY", path.c_str(), 1);
        Output output;
        EXPECT_EQ(run("ls", 3, output), -1);
        EXPECT_STREQ(output.data(), "");
    }
    unsetenv("MOXPLATFORM_ROOTPROXY");
    EXPECT_EQ(test::open_descriptors(), before);
}

TEST(RootProxy, ALongCommandTravelsWholeAndALongerOneNotAtAll)
{
    const std::string longest(4096, 'x');
    std::string command;
    Output output;
    {
        const Service service = answering(command, word(0) + word(0));
        EXPECT_EQ(RootProxyExecCmd(longest.c_str(), 4097, output.data(), 16), 0);
    }
    EXPECT_EQ(command, longest);
    command = "none";
    {
        const Service service = answering(command, word(0) + word(0));
        EXPECT_EQ(RootProxyExecCmd((longest + "x").c_str(), 4098, output.data(), 16), -1);
    }
    EXPECT_EQ(command, "none");
}

TEST(RootProxy, RefusesBadArgumentsWithoutAsking)
{
    std::string command = "none";
    {
        const Service service = answering(command, word(0) + word(0));
        Output output;
        EXPECT_EQ(run(nullptr, 3, output), -1);
        EXPECT_EQ(run("ls", 0, output), -1);
        EXPECT_EQ(run("", 1, output), -1);
        EXPECT_EQ(run("ls", 3, output, 0), -1);
        EXPECT_EQ(RootProxyExecCmd("ls", 3, nullptr, 16), -1);
    }
    EXPECT_EQ(command, "none");
}

TEST(RootProxy, LeavesNoDescriptorBehind)
{
    const auto before = test::open_descriptors();
    {
        std::string command;
        Output output;
        const Service service = answering(command, word(0) + word(0));
        EXPECT_EQ(run("ls", 3, output), 0);
    }
    EXPECT_EQ(test::open_descriptors(), before);
}

} // namespace
