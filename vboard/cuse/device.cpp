// SPDX-License-Identifier: Apache-2.0
#include "cuse/device.hpp"

#include "cuse/operations.hpp"
#include "daemon/descriptor.hpp"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>

namespace vboard
{

namespace
{

constexpr const char *cuse = "/dev/cuse";
// Ends the wait of a session's thread for the kernel; the thread then sees that it is over.
constexpr int wake_up = SIGUSR1;

void receive_wake_ups()
{
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    sigaction(wake_up, &action, nullptr); // without SA_RESTART
}

fuse_session *make_session(const std::string &path, void *device)
{
    static const cuse_lowlevel_ops operations = [] {
        using Operations = CuseDevice::Operations;
        cuse_lowlevel_ops all = {};
        all.init_done = Operations::init_done;
        all.open = Operations::open;
        all.read = Operations::read;
        all.write = Operations::write;
        all.release = Operations::release;
        all.ioctl = Operations::ioctl;
        return all;
    }();
    const std::string name = "DEVNAME=" + path.substr(std::strlen("/dev/"));
    const char *names[] = {name.c_str()};
    cuse_info info = {};
    info.dev_info_argc = 1;
    info.dev_info_argv = names;
    info.flags = CUSE_UNRESTRICTED_IOCTL;
    // "-f": this process goes into the background on its own, with all of its devices.
    std::string words[] = {"vboard-devices", "-f"};
    char *arguments[] = {words[0].data(), words[1].data(), nullptr};
    int several_threads = 0;
    return cuse_lowlevel_setup(2, arguments, &info, &operations, &several_threads, device);
}

} // namespace

void check_cuse()
{
    const Descriptor device(open(cuse, O_RDWR | O_CLOEXEC));
    if (device)
        return;
    const int error = errno;
    if (error == ENOENT || error == ENODEV || error == ENXIO)
        throw std::runtime_error(std::string("there is no ") + cuse +
                                 ": this kernel has no CUSE, or its module is not loaded (modprobe cuse)");
    if (error == EACCES || error == EPERM)
        throw std::runtime_error(std::string("no right to open ") + cuse +
                                 ": devices can be made by root, and by whom root gives it");
    throw std::runtime_error(std::string("cannot open ") + cuse + ": " + std::strerror(error));
}

CuseDevice::CuseDevice(Board &board, std::string path, unsigned mode, Asked asked)
    : board_(board), path_(std::move(path)), asked_(std::move(asked))
{
    // The kernel refuses a name that it has, too, but later, when the other device's node looks like ours.
    if (struct stat node = {}; lstat(path_.c_str(), &node) == 0)
        throw std::runtime_error("there is a " + path_ + " already: another board's, or the machine's own");
    receive_wake_ups();
    session_ = make_session(path_, this);
    if (session_ == nullptr)
        throw std::runtime_error("cannot make " + path_);
    thread_ = std::thread([this] { serve(); });
    try {
        wait_for_node(mode);
    } catch (const std::runtime_error &) {
        stop();
        throw;
    }
}

CuseDevice::~CuseDevice()
{
    stop();
}

void CuseDevice::serve()
{
    fuse_session_loop(session_);
    ended_ = true;
}

void CuseDevice::wait_for_node(unsigned mode)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    for (;;) {
        struct stat node = {};
        if (there_ && stat(path_.c_str(), &node) == 0 && S_ISCHR(node.st_mode))
            break;
        if (ended_)
            throw std::runtime_error("the kernel refuses to make " + path_ +
                                     "; is there a device of this name already?");
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error("the node " + path_ +
                                     " does not appear; it takes a \"/dev\" that the kernel keeps");
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
    // The node comes as the kernel makes it, for root alone.
    if (chmod(path_.c_str(), mode) != 0)
        throw std::runtime_error("cannot give " + path_ + " its permissions: " + std::strerror(errno));
}

void CuseDevice::stop()
{
    fuse_session_exit(session_);
    // A signal that comes just before the wait is lost.
    while (!ended_) {
        pthread_kill(thread_.native_handle(), wake_up);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    thread_.join();
    while (slow_ != 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    fuse_session_destroy(session_);
}

} // namespace vboard
