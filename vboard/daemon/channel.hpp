// SPDX-License-Identifier: Apache-2.0
// The board's side of one request: the caller's memory and the final answer, both through the request's
// channel.
#pragma once

#include "daemon/descriptor.hpp"
#include "front/marshal.hpp"
#include "front/wire.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vboard
{

// One packet that came on a device's connection.
struct Packet {
    std::vector<std::uint8_t> data;
    Descriptor channel;   // none: a plain write
    int pid = 0;          // of the sender, as the kernel tells it
    bool refused = false; // too long, or with more descriptors than one
};

// Takes the next packet, waiting for none. nullopt: there is none.
std::optional<Packet> take_packet(int connection);

// The request at the beginning of a packet; nullopt when it is not in order.
std::optional<wire::Request> request_of(const Packet &packet);

class Channel : public Memory
{
  public:
    explicit Channel(Descriptor end) : end_(std::move(end)) {}

    // EFAULT also for a caller that does not play by the rules.
    int fetch(std::uint64_t address, void *into, std::size_t size) override;
    int store(std::uint64_t address, const void *from, std::size_t size) override;
    void done(std::int64_t result, int error) const;

  private:
    bool send(const wire::Answer &answer, const void *payload) const;
    Descriptor end_;
};

} // namespace vboard
