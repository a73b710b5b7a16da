// SPDX-License-Identifier: Apache-2.0
#include "vboard/report/past.hpp"

#include "vboard/model/journal.hpp"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace past
{

namespace
{

Event request(const char *what, std::uint32_t item)
{
    Event event;
    event.op = vboard::Op::ioctl;
    event.device = "/dev/board0";
    event.what = what;
    event.items = {item};
    event.pid = 7;
    return event;
}

} // namespace

Past::Past()
{
    std::string path = "/var/tmp/report-XXXXXX";
    if (::mkdtemp(path.data()) == nullptr)
        throw std::runtime_error("cannot make a directory");
    state_ = path;
    profile_.name = "a-board";
    profile_.description = "a test's board";
    profile_.items["/dev/board0"][0x8000001] = 0x90020709;
    profile_.watchdog_period_ms = 100;
    profile_.watchdog_threshold = 10;
}

Past::~Past()
{
    std::error_code error;
    std::filesystem::remove_all(state_, error);
}

void Past::line(const char *file, const std::string &text)
{
    std::ofstream(state_ / file, std::ios::app) << text;
}

void Past::life(double time, const char *what, const json &more)
{
    json object = {{"time", time}, {"what", what}};
    object.update(more);
    line("life.jsonl", object.dump() + "\n");
}

void Past::up(double time)
{
    life(time, "up", {{"board", profile_.name}});
    number_ = 0;
}

void Past::down(double time)
{
    life(time, "down");
}

void Past::event(double time, Event event)
{
    event.time = time;
    event.number = ++number_;
    line("journal.jsonl", to_json(event).dump() + "\n");
}

void Past::get(double time, std::uint32_t item, int error)
{
    Event event = request("get", item);
    event.error = error;
    event.result = error != 0 ? -1 : 0;
    event.duration = 0.001;
    this->event(time, event);
}

void Past::set(double time, std::uint32_t item, std::uint32_t value)
{
    Event event = request("set", item);
    event.sent = value;
    this->event(time, event);
}

void Past::feed(double time)
{
    set(time, 0x1000280a, 1);
}

void Past::reset(double time, const char *kind, std::optional<std::uint32_t> reason)
{
    Event event;
    event.op = vboard::Op::reset;
    event.what = kind;
    event.sent = reason;
    this->event(time, event);
}

void Past::trace(double time, const std::string &text, std::uint32_t level, int process)
{
    line("trace.jsonl",
         json({{"time", time}, {"process", process}, {"code", 0}, {"level", level}, {"text", text}}).dump() +
             "\n");
}

json Past::facts(double now, bool running) const
{
    return vboard::report::facts({state_, profile_, running, now});
}

} // namespace past
