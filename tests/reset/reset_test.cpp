// SPDX-License-Identifier: Apache-2.0
#include "reset/reset_test.hpp"

#include <unistd.h>

namespace test
{

Said all(std::initializer_list<Said> lines)
{
    Said sum;
    for (const Said &line : lines)
        sum = sum + line;
    return sum;
}

ResetTest::ResetTest()
{
    for (std::uint32_t item : {xcs_item, watchdog_enable, watchdog_clear})
        board.set_item(board0, item, 0);
    fail_libc("execv", ENOENT, 0, 1000);
    answer_platform("IsNeedRootProxy", 0, 0, 1000);
}

vboard::Fault ResetTest::on_item(std::uint32_t item)
{
    vboard::Fault fault;
    fault.device = board0;
    fault.item = item;
    return fault;
}

void ResetTest::reply_with(std::uint32_t item, const std::map<std::uint32_t, std::uint32_t> &words)
{
    vboard::Fault fault = on_item(item);
    fault.reply_words = words;
    board.add_fault(fault);
}

void ResetTest::spoil_watchdog(int error, unsigned skip)
{
    vboard::Fault fault;
    fault.op = vboard::Op::write;
    fault.device = watchdog_service;
    fault.error = error;
    fault.skip = skip;
    board.add_fault(fault);
}

namespace
{

bool reaches_driver(const Call &call)
{
    return call.function == "ioctl" || (call.function == "write" && call.fd > STDERR_FILENO);
}

} // namespace

std::vector<std::string> ResetTest::history() const
{
    const std::vector<std::string> asked = requests();
    auto next = asked.begin();
    std::vector<std::string> lines;
    for (const Call &call : calls()) {
        if (reaches_driver(call) && next != asked.end())
            lines.push_back(*next++);
        else if (call.function == "execv")
            lines.push_back("execv " + call.path);
        else if (call.function == "sync" || call.function == "sleep")
            lines.push_back(call.function);
        if (call.function == "sleep")
            break;
    }
    lines.insert(lines.end(), next, asked.end());
    return lines;
}

std::vector<std::size_t> ResetTest::writes()
{
    std::vector<std::size_t> sizes;
    for (const Call &call : calls("write"))
        if (reaches_driver(call))
            sizes.push_back(call.size);
    return sizes;
}

} // namespace test
