// SPDX-License-Identifier: Apache-2.0
#include "machine/emulator.hpp"

#include "machine/places.hpp"

#include <cerrno>
#include <csignal>
#include <sys/wait.h>
#include <thread>

namespace vboard::machine
{

namespace
{

// The kernel is told of less memory than there is: what lies above outlasts a reset of the machine. A panic
// is a reset. A start must not wait: the entropy of the host is trusted, and the kernel does not try out its
// ciphers.
std::string kernel_arguments(const Setting &setting)
{
    return "console=ttyAMA0 quiet loglevel=2 panic=-1 mem=224M random.trust_cpu=on cryptomgr.notests=1 "
           "board=" +
           setting.board + " mode=" + (setting.job ? "job" : "shell") +
           " cycles=" + std::to_string(setting.cycles);
}

// A comma in a value stands twice.
std::string value(const std::filesystem::path &path)
{
    std::string text;
    for (const char letter : path.string())
        text.append(letter == ',' ? 2 : 1, letter);
    return text;
}

} // namespace

Words command_line(const Setting &setting)
{
    // One processor: a second one makes the emulator slower.
    Words words{"qemu-system-arm",
                "-M",
                "virt,highmem=off",
                "-cpu",
                "cortex-a15",
                "-m",
                "256",
                "-smp",
                "1",
                "-nodefaults",
                "-display",
                "none",
                "-monitor",
                "none",
                "-kernel",
                kernel_image(),
                "-initrd",
                initial_files(),
                "-append",
                kernel_arguments(setting)};
    const auto add = [&](const char *option, const std::string &argument) {
        words.emplace_back(option);
        words.push_back(argument);
    };
    // At a terminal, the keys that interrupt are for the machine.
    if (setting.console.empty())
        add("-serial", "mon:stdio");
    else
        add("-serial", "file:" + setting.console.string());
    add("-fsdev", "local,id=share,path=" + value(setting.share) + ",security_model=none");
    add("-device", "virtio-9p-device,fsdev=share,mount_tag=share");
    add("-drive", "if=none,id=disk,format=raw,cache=writeback,file=" + value(setting.disk));
    add("-device", "virtio-blk-device,drive=disk");
    return words;
}

Emulator::Emulator(const Setting &setting)
    : process_(start(command_line(setting), setting.console.empty()
                                                ? std::filesystem::path()
                                                : setting.share.parent_path() / "emulator.log"))
{
}

Emulator::~Emulator()
{
    cut();
}

bool Emulator::runs()
{
    if (process_ <= 0)
        return false;
    pid_t ended;
    do
        ended = waitpid(process_, nullptr, WNOHANG);
    while (ended < 0 && errno == EINTR);
    if (ended != 0)
        process_ = -1;
    return ended == 0;
}

bool Emulator::ends_within(std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (runs()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

void Emulator::cut()
{
    if (!runs())
        return;
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
    process_ = -1;
}

} // namespace vboard::machine
