// SPDX-License-Identifier: Apache-2.0
#include "support/board_test.hpp"

#include "support/plans.hpp"

#include <unistd.h>

namespace test
{
namespace
{

vboard::Profile bare_mpu()
{
    vboard::Profile profile;
    profile.name = "test";
    profile.items[board0][item_hard_type] = an_mpu;
    return profile;
}

std::string as_text(const vboard::Event &event)
{
    switch (event.op) {
    case vboard::Op::open:
        return "open " + event.device;
    case vboard::Op::read:
        return "read " + event.device;
    case vboard::Op::lseek:
        return "lseek " + event.device + " " + event.value;
    case vboard::Op::write:
        if (event.what.empty())
            return "write " + event.device;
        break;
    case vboard::Op::reset:
        return event.what;
    case vboard::Op::ioctl:
        break;
    }
    if (event.what.compare(0, 3, "env") == 0) {
        std::string line = event.what;
        if (!event.name.empty())
            line += " " + event.name;
        return event.what == "env write" ? line + "=" + event.value : line;
    }
    std::string line = event.what + " " + event.device;
    for (std::uint32_t item : event.items)
        line += text(" 0x%x", item);
    return event.sent ? line + text(" %u", *event.sent) : line;
}

} // namespace

BoardTest::BoardTest() : board(bare_mpu()) {}

BoardTest::~BoardTest() = default;

void BoardTest::SetUp()
{
    vboard::attach(&board);
    descriptors_before_ = descriptors();
    forget_calls();
}

void BoardTest::TearDown()
{
    forget_plans();
    // The library keeps this one for the life of the process, on purpose.
    if (g_fd_wdt >= 0) {
        close(g_fd_wdt);
        g_fd_wdt = -1;
    }
    EXPECT_EQ(descriptors(), descriptors_before_) << "a descriptor was left open";
    EXPECT_EQ(blocks_held(), 0u) << "a block was not freed";
    vboard::detach();
}

void BoardTest::refuse(const std::string &device, std::uint32_t item, unsigned times)
{
    vboard::Fault fault;
    fault.device = device;
    fault.item = item;
    fault.code = 1;
    fault.times = times;
    board.add_fault(fault);
}

void BoardTest::deny(const std::string &device, int error, unsigned times)
{
    vboard::Fault fault;
    fault.op = vboard::Op::open;
    fault.device = device;
    fault.error = error;
    fault.times = times;
    board.add_fault(fault);
}

std::vector<std::string> BoardTest::operations() const
{
    std::vector<std::string> lines;
    for (const vboard::Event &event : board.journal())
        lines.push_back(as_text(event));
    return lines;
}

std::vector<std::string> BoardTest::requests() const
{
    std::vector<std::string> lines;
    for (const vboard::Event &event : board.journal())
        if (event.op == vboard::Op::ioctl || !event.what.empty())
            lines.push_back(as_text(event));
    return lines;
}

} // namespace test
