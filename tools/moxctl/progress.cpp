// SPDX-License-Identifier: Apache-2.0
#include "progress.hpp"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace moxctl
{

namespace
{

constexpr std::size_t bar_width = 24;
constexpr std::size_t line_width = 79;

std::string drawn(std::uint64_t done, std::uint64_t whole)
{
    const std::uint64_t parts = std::min(done, whole);
    const auto filled = static_cast<std::size_t>(parts * bar_width / whole);
    const std::string percent = std::to_string(parts * 100 / whole);
    return " [" + std::string(filled, '#') + std::string(bar_width - filled, ' ') + "] " +
           std::string(3 - percent.size(), ' ') + percent + "%";
}

} // namespace

Progress::Progress(int fd, bool quiet) : fd_(quiet ? -1 : fd), bar_(fd_ >= 0 && ::isatty(fd_) == 1) {}

Progress::~Progress()
{
    end();
}

void Progress::step(std::string name, std::uint64_t whole)
{
    end();
    name_ = std::move(name);
    whole_ = whole;
    if (bar_)
        at(0, {});
    else
        say(name_ + '\n');
}

void Progress::at(std::uint64_t done, const std::string &what)
{
    if (!bar_)
        return;
    std::string line = name_ + (whole_ != 0 ? drawn(done, whole_) : std::string());
    if (!what.empty())
        line += ' ' + what;
    line.resize(line_width, ' '); // covers what was there
    if (line == shown_)
        return;
    shown_ = std::move(line);
    say('\r' + shown_);
}

void Progress::end()
{
    if (bar_ && !shown_.empty())
        say("\n");
    shown_.clear();
}

void Progress::say(const std::string &text) const
{
    // What cannot be told is no reason to stop.
    if (fd_ >= 0 && ::write(fd_, text.data(), text.size()) < 0)
        return;
}

} // namespace moxctl
