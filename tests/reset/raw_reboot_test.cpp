// SPDX-License-Identifier: Apache-2.0
// The reboot command with its arguments: as the kernel gets it, and as the root proxy gets it.
#include "reset/raw_reset.hpp"

#include <cerrno>
#include <unistd.h>

namespace
{

struct Commands {
    int need_proxy = 0;
    std::vector<std::string> path_and_arguments; // of execv
    std::vector<char> proxy_command;             // all bytes that the length counts
    std::vector<char> proxy_output;              // as the proxy found it
    unsigned waits = 0;
};
Commands commands;

} // namespace

extern "C" {

int32_t IsNeedRootProxy(void)
{
    return commands.need_proxy;
}

int32_t RootProxyExecCmd(const char *command, uint32_t length, char *output, uint32_t output_size)
{
    commands.proxy_command.assign(command, command + length);
    commands.proxy_output.assign(output, output + output_size);
    memset(output, 'x', output_size); // all of it is the proxy's
    return 0;
}

void drvboot_loop_forever(void)
{
    ++commands.waits;
}

int execv(const char *path, char *const arguments[]) noexcept
{
    commands.path_and_arguments = {path};
    for (; *arguments != nullptr; ++arguments)
        commands.path_and_arguments.emplace_back(*arguments);
    errno = EACCES;
    return -1;
}

} // extern "C"

namespace test
{
namespace
{

class RawReboot : public RawReset
{
  protected:
    void SetUp() override
    {
        RawReset::SetUp();
        commands = {};
    }
};

TEST_F(RawReboot, RunsTheRebootCommandWithItsNameAlone)
{
    drvboot_reboot();
    EXPECT_EQ(commands.path_and_arguments, (std::vector<std::string>{"/sbin/reboot", "/sbin/reboot"}));
    EXPECT_TRUE(commands.proxy_command.empty());
    EXPECT_EQ(commands.waits, 1u);
}

TEST_F(RawReboot, HandsTheProxyAWordWithItsEndAndAnEmptyBuffer)
{
    commands.need_proxy = 1;
    drvboot_reboot();
    const char word[] = "reboot";
    EXPECT_EQ(commands.proxy_command, std::vector<char>(word, word + 7));
    EXPECT_EQ(commands.proxy_output, std::vector<char>(960, '\0'));
    EXPECT_TRUE(commands.path_and_arguments.empty());
    EXPECT_EQ(commands.waits, 1u);
}

} // namespace
} // namespace test
