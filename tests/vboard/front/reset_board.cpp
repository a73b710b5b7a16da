// SPDX-License-Identifier: Apache-2.0
#include "reset_board.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <thread>
#include <unistd.h>

namespace reset_board
{

using namespace front;

namespace
{

void nap()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

std::string own_namespace()
{
    return std::filesystem::read_symlink("/proc/self/ns/mnt");
}

} // namespace

std::string out(const Outcome &outcome)
{
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
}

std::string sh(const Up &board, const std::string &script)
{
    return out(board.exec({"sh", "-c", script}));
}

std::string resets(const Up &board)
{
    const auto status = nlohmann::json::parse(out(board.call_vboard({"status", "--json"})));
    const auto &last = status.at("last_reset");
    return std::to_string(status.at("resets").get<unsigned>()) + " " +
           (last.is_null() ? "none" : last.get<std::string>());
}

std::string reboot_script(const std::string &before, const std::string &command)
{
    return "test \"$(readlink /proc/self/ns/mnt)\" != '" + own_namespace() +
           "' || exit 99; /sbin/reboot --version | grep -q '^vboard' || exit 99; exec " + before + " " +
           command;
}

bool runs(int pid)
{
    const std::string stat = content("/proc/" + std::to_string(pid) + "/stat");
    const std::size_t name_end = stat.rfind(')');
    return name_end != std::string::npos && stat.substr(name_end + 2, 1) != "Z";
}

std::string await_resets(const Up &board, const std::string &expected)
{
    std::string seen;
    for (int i = 0; i < 300 && seen != expected; i++, nap())
        seen = resets(board);
    return seen;
}

void await_line(const std::filesystem::path &file)
{
    for (int i = 0; i < 600 && content(file).find('\n') == std::string::npos; i++)
        nap();
}

} // namespace reset_board
