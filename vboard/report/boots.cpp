// SPDX-License-Identifier: Apache-2.0
#include "report/parts.hpp"

#include <algorithm>

namespace vboard::report
{

using nlohmann::json;

namespace
{

constexpr std::size_t activity_parts = 48;
constexpr const char *without_a_word = "ended without a word";

struct Boot {
    double from = 0;
    double last = 0; // of what was heard of it
    std::optional<double> to = std::nullopt;
    std::string start;
    std::string end = without_a_word;
    std::optional<std::uint32_t> reason = std::nullopt;
    std::vector<double> requests = {}; // their times
};

class Life
{
  public:
    void switched_on(double time)
    {
        end(boots_.empty() ? time : boots_.back().last, without_a_word); // unless it had ended
        begin({.from = time, .last = time, .start = "switched on"});
    }
    void switched_off(double time)
    {
        end(time, "switched off");
    }
    void reset(const Event &event)
    {
        heard(event.time);
        end(event.time, event.what);
        begin({.from = event.time, .last = event.time, .start = event.what, .reason = event.sent});
    }
    void request(const Event &event)
    {
        heard(event.time - event.duration);
        boots_.back().last = event.time;
        boots_.back().requests.push_back(event.time);
    }
    std::vector<Boot> over(bool running)
    {
        if (running && on_) {
            boots_.back().end = "running";
            on_ = false;
        }
        end(boots_.empty() ? 0 : boots_.back().last, without_a_word);
        return std::move(boots_);
    }

  private:
    // A record that begins in the middle of the story.
    void heard(double time)
    {
        if (!on_)
            begin({.from = time, .last = time, .start = "first heard of"});
    }
    void begin(Boot boot)
    {
        boots_.push_back(std::move(boot));
        on_ = true;
    }
    void end(double time, const std::string &how)
    {
        if (!on_)
            return;
        boots_.back().to = time;
        boots_.back().end = how;
        on_ = false;
    }

    std::vector<Boot> boots_;
    bool on_ = false;
};

// Requests in equal parts of the time that the boot took.
json activity(const Boot &boot, double now)
{
    const double to = boot.to.value_or(now);
    std::vector<std::size_t> parts(activity_parts);
    for (const double time : boot.requests) {
        const double share = to > boot.from ? (time - boot.from) / (to - boot.from) : 0;
        const auto part = static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * activity_parts);
        ++parts[std::min(part, activity_parts - 1)];
    }
    return parts;
}

} // namespace

json boots(const Records &records, bool running, double now)
{
    Life life;
    auto line = records.life.begin();
    const auto live_until = [&](double time) {
        for (; line != records.life.end() && line->time <= time; ++line) {
            if (line->what == "up")
                life.switched_on(line->time);
            else if (line->what == "down")
                life.switched_off(line->time);
        }
    };
    for (const Event &event : records.events) {
        live_until(event.time - event.duration);
        if (event.op == Op::reset)
            life.reset(event);
        else
            life.request(event);
    }
    live_until(now);
    json list = json::array();
    for (const Boot &boot : life.over(running))
        list.push_back({{"from", boot.from},
                        {"to", boot.to ? json(*boot.to) : json(nullptr)},
                        {"start", boot.start},
                        {"end", boot.end},
                        {"reason", boot.reason ? json(*boot.reason) : json(nullptr)},
                        {"requests", boot.requests.size()},
                        {"activity", activity(boot, now)}});
    return list;
}

} // namespace vboard::report
