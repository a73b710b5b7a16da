// SPDX-License-Identifier: Apache-2.0
// One of the board's devices as a character device of this machine, served by a thread of its own.
#pragma once

#include "model/board.hpp"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <string>
#include <thread>

struct fuse_session;

namespace vboard
{

// Throws std::runtime_error, in words, when this process cannot make character devices.
void check_cuse();

class CuseDevice
{
  public:
    // Told of each request that the driver has answered, before its caller hears of it.
    using Asked = std::function<void(std::uint32_t request)>;

    // Makes the device, and its node with these permissions. Throws std::runtime_error when the kernel
    // refuses.
    CuseDevice(Board &board, std::string path, unsigned mode, Asked asked);
    // Takes it away: programs that still have it open find it gone.
    ~CuseDevice();
    CuseDevice(const CuseDevice &) = delete;
    CuseDevice &operator=(const CuseDevice &) = delete;

    const std::string &path() const
    {
        return path_;
    }

    struct Operations; // what the kernel's requests lead to; see operations.hpp

  private:
    void serve();
    void wait_for_node(unsigned mode);
    void stop();

    Board &board_;
    std::string path_;
    Asked asked_;
    fuse_session *session_ = nullptr;
    std::atomic<bool> there_ = false, ended_ = false;
    std::atomic<int> slow_ = 0; // requests that take their time on threads of their own
    std::thread thread_;
};

} // namespace vboard
