// SPDX-License-Identifier: Apache-2.0
// The board's file tree, as programs see it, and that nobody outside sees anything of it.
#include "launcher/namespace.hpp"
#include "vboard_runner.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>
#include <unistd.h>

using namespace front;
using testing::HasSubstr;
namespace fs = std::filesystem;

namespace
{

// What enter_own_namespace() says, given what the kernel says.
std::string refusal(int result, int error, std::vector<std::string> names)
{
    bool mapped = false;
    auto name = names.begin();
    const vboard::NamespaceCalls calls{[&](int) {
                                           errno = error;
                                           return result;
                                       },
                                       [&] { return name == names.end() ? std::string() : *name++; },
                                       [&](uid_t, gid_t) { mapped = true; }};
    try {
        (void)vboard::enter_own_namespace(calls);
    } catch (const std::runtime_error &words) {
        EXPECT_FALSE(mapped);
        return words.what();
    }
    return {};
}

} // namespace

TEST(OwnNamespace, IsNotGivenWhenTheKernelRefuses)
{
    EXPECT_THAT(refusal(-1, EPERM, {"mnt:[1]", "mnt:[1]"}), HasSubstr("the kernel refuses"));
    EXPECT_THAT(refusal(-1, ENOSPC, {"mnt:[1]", "mnt:[2]"}), HasSubstr("No space left"));
}

TEST(OwnNamespace, IsNotGivenWhenTheNamespaceIsTheOldOne)
{
    EXPECT_THAT(refusal(0, 0, {"mnt:[1]", "mnt:[1]"}), HasSubstr("still in the old mount namespace"));
}

TEST(OwnNamespace, IsNotGivenWhenItCannotBeTold)
{
    EXPECT_THAT(refusal(0, 0, {""}), HasSubstr("cannot tell"));
    EXPECT_THAT(refusal(0, 0, {"mnt:[1]", ""}), HasSubstr("nothing mounted"));
}

TEST(OwnNamespace, IsGivenWhenItChanged)
{
    EXPECT_EQ(refusal(0, 0, {"mnt:[1]", "mnt:[2]"}), "");
}

TEST(Tree, IsNotMadeWithoutANamespace)
{
    const std::string before = content("/proc/self/mountinfo");
    for (const char *way : {"refuse", "pretend"}) {
        for (const char *verb : {"tree", "run"}) {
            const Outcome outcome =
                start({helper_binary(), way, vboard_binary(), verb, "--", "echo", "started"});
            EXPECT_EQ(outcome.status, 125) << way << verb;
            EXPECT_EQ(outcome.out, "") << way << verb;
            EXPECT_THAT(outcome.err, HasSubstr("nothing mounted")) << way << verb;
        }
    }
    EXPECT_EQ(content("/proc/self/mountinfo"), before);
}

TEST(Tree, LeavesNoMountOutside)
{
    Directory state;
    const std::string before = content("/proc/self/mountinfo");
    EXPECT_EQ(call_vboard({"tree", "--", "true"}).status, 0);
    EXPECT_EQ(call_vboard({"tree", "--state", state.path(), "--", "true"}).status, 0);
    EXPECT_EQ(call_vboard({"run", "--", "true"}).status, 0);
    {
        const Up board(state.path());
        EXPECT_EQ(content("/proc/self/mountinfo"), before);
    }
    EXPECT_EQ(content("/proc/self/mountinfo"), before);
}

TEST(Tree, HasTheBoardsOwnPlaces)
{
    const std::string script =
        "grep ' /opt/moxv8/SoftResetData ' /proc/mounts; cd /; ls -d opt/moxv8/var opt/moxv8bak;"
        "ls boot bootbak tmp opt/moxv8bak | grep -v :; stat -c %a tmp; echo x > dev/null;"
        "head -c2 dev/zero | wc -c";
    const Outcome outcome = call_vboard({"tree", "--", "sh", "-c", script});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_TRUE(outcome.out.starts_with("/dev/pramdisk /opt/moxv8/SoftResetData tmpfs ")) << outcome.out;
    EXPECT_THAT(outcome.out, HasSubstr("opt/moxv8/var\nopt/moxv8bak\n\n\n\n1777\n2\n"));
}

// To the mode that it has: should nothing stand in the way, no harm is done.
TEST(Tree, LeavesTheMachinesDevicesAsTheyAre)
{
    const std::string script =
        "chmod $(stat -c %a /dev/null) /dev/null; echo $?; chown $(stat -c %u /dev/zero) /dev/zero; echo $?;"
        "echo x > /dev/null && head -c2 /dev/zero | wc -c";
    const Outcome outcome = call_vboard({"tree", "--", "sh", "-c", script});
    EXPECT_EQ(outcome.out, "1\n1\n2\n") << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("Read-only file system"));
}

TEST(Tree, KeepsItsFilesInTheState)
{
    Directory state;
    const std::string script = "echo 1 > /boot/a; echo 2 > /opt/moxv8/var/b; echo 3 > /tmp/c;"
                               "echo 4 > /opt/moxv8/SoftResetData/d";
    EXPECT_EQ(call_vboard({"tree", "--state", state.path(), "--", "sh", "-c", script}).status, 0);
    EXPECT_EQ(content(state.path() / "tree/boot/a"), "1\n");
    EXPECT_EQ(content(state.path() / "tree/opt/moxv8/var/b"), "2\n");
    EXPECT_EQ(content(state.path() / "tree/tmp/c"), "3\n");
    EXPECT_FALSE(fs::exists(state.path() / "tree/opt/moxv8/SoftResetData/d")) << "the RAM disk is no disk";
}

TEST(Tree, HandsOnHowTheCommandEnded)
{
    for (const char *verb : {"tree", "run"}) {
        EXPECT_EQ(call_vboard({verb, "--", "sh", "-c", "exit 7"}).status, 7) << verb;
        EXPECT_EQ(call_vboard({verb, "--", "sh", "-c", "kill -SEGV $$"}).status, 128 + 11) << verb;
        EXPECT_EQ(call_vboard({verb, "--", "sh", "-c", "kill -KILL $$"}).status, 128 + 9) << verb;
        const Outcome missing = call_vboard({verb, "--", "no-such-command"});
        EXPECT_EQ(missing.status, 127) << verb;
        EXPECT_THAT(missing.err, HasSubstr("cannot start no-such-command"));
        EXPECT_EQ(call_vboard({verb, "--", "/etc/passwd"}).status, 126) << verb;
    }
}

TEST(Tree, HandsSignalsToTheCommand)
{
    const Outcome outcome =
        start({"sh", "-c",
               vboard_binary() +
                   R"( run -- sh -c 'trap "exit 9" TERM; echo up; while :; do sleep 0.01; done' > "$0" & )"
                   R"(until grep -q up "$0"; do sleep 0.01; done; kill -TERM $!; wait $!)",
               "/var/tmp/front-signal-" + std::to_string(getpid())});
    unlink(("/var/tmp/front-signal-" + std::to_string(getpid())).c_str());
    EXPECT_EQ(outcome.status, 9) << outcome.err;
}

TEST(Tree, KeepsTheWorkingDirectoryAndTheProgramWhereverTheyLie)
{
    for (const char *place : {"/tmp", "/opt", "/var/tmp", "/dev/shm"}) {
        if (access(place, W_OK) != 0)
            continue;
        Directory project(place);
        fs::create_directories(project.path() / "build/state");
        fs::copy_file(client_binary(), project.path() / "build/program");
        for (const char *options : {"", "--state build/state"}) {
            const std::string line = "cd " + project.path().string() + " && " + vboard_binary() + " run " +
                                     options + " -- build/program one && " + vboard_binary() + " tree " +
                                     options + " -- pwd";
            const Outcome outcome = start({"sh", "-c", line});
            EXPECT_EQ(outcome.status, 0) << place << options << outcome.err;
            EXPECT_TRUE(outcome.out.ends_with("done\n" + project.path().string() + "\n"))
                << place << outcome.out;
        }
    }
}

TEST(Tree, KeepsAPathThatIsAskedFor)
{
    Directory other("/tmp");
    EXPECT_NE(call_vboard({"tree", "--", "ls", other.path()}).status, 0);
    EXPECT_EQ(call_vboard({"tree", "--keep", other.path(), "--", "ls", other.path()}).status, 0);
}

TEST(Tree, WorksForAnOrdinaryUser)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "every other test shows it";
    // The build folder may be out of an ordinary user's reach, so it gets a copy.
    Directory copy;
    fs::permissions(copy.path(), fs::perms(0755));
    for (const char *folder : {"bin", "lib", "share/moxboot"})
        fs::create_directories(copy.path() / folder);
    fs::copy_file(vboard_binary(), copy.path() / "bin/vboard");
    fs::copy_file(client_binary(), copy.path() / "bin/client");
    const fs::path build = fs::path(vboard_binary()).parent_path().parent_path();
    for (const char *part : {"lib/libvboard-preload.so", "lib/vboard-reboot"})
        fs::copy_file(build / part, copy.path() / part);
    fs::copy(fs::canonical(build / "share/moxboot/boards"), copy.path() / "share/moxboot/boards");
    fs::create_directory(copy.path() / "state");
    ASSERT_EQ(chown((copy.path() / "state").c_str(), 65534, 65534), 0);
    const std::string line =
        "cd " + copy.path().string() +
        " && exec setpriv --reuid=65534 --regid=65534 --clear-groups sh -ec '"
        "bin/vboard tree -- true; bin/vboard run --state state -- bin/client one;"
        "bin/vboard up --state state; bin/vboard exec --state state -- bin/client one;"
        "bin/vboard exec --state state -- id -u; bin/vboard reset --cold --state state;"
        "bin/vboard exec --state state -- /sbin/reboot --version | grep -q ^vboard;"
        "bin/vboard exec --state state -- /sbin/reboot || echo $?;"
        "bin/vboard exec --state state -- bin/client one; bin/vboard down --state state'";
    const Outcome outcome = start({"sh", "-c", line});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "0x900005f3\ndone\n0x900005f3\ndone\n65534\ncold reset\n137\n"
                           "0x900005f3\ndone\n")
        << outcome.err;
}
