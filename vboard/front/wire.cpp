// SPDX-License-Identifier: Apache-2.0
#include "front/wire.hpp"

namespace vboard::wire
{

bool valid(const Request &request, std::size_t length)
{
    if (length != sizeof request || request.magic != magic || request.unused != 0)
        return false;
    switch (request.action) {
    case Action::open:
    case Action::ioctl:
    case Action::lseek:
        return true;
    case Action::read:
    case Action::write:
        return request.number <= max_transfer;
    }
    return false;
}

bool valid(const Answer &answer, std::size_t length)
{
    if (length < sizeof answer || answer.magic != magic || answer.size > max_payload)
        return false;
    switch (answer.step) {
    case Step::fetch:
        return length == sizeof answer;
    case Step::store:
        return length - sizeof answer == answer.size;
    case Step::done:
        return length == sizeof answer && answer.size == 0;
    }
    return false;
}

bool valid(const Fetched &fetched, std::size_t length, std::uint32_t wanted)
{
    if (length < sizeof fetched)
        return false;
    if (fetched.error != 0)
        return length == sizeof fetched;
    return fetched.size == wanted && length - sizeof fetched == wanted;
}

} // namespace vboard::wire
