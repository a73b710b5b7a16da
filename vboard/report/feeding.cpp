// SPDX-License-Identifier: Apache-2.0
// How the watchdog was fed, and where that was late.
#include "model/items.hpp"
#include "model/request_kind.hpp"
#include "report/parts.hpp"

#include <algorithm>
#include <cmath>

namespace vboard::report
{

using nlohmann::json;

namespace
{

constexpr std::size_t most_intervals = 1500;
constexpr double per_second = 1000; // milliseconds
constexpr double late_share = 0.5;  // of the time that the watchdog waits: a feed after that is a late one

bool sets(const Event &event, std::uint32_t item)
{
    return event.op == Op::ioctl && event.what == "set" && event.device == board_device && !failed(event) &&
           std::ranges::find(event.items, item) != event.items.end();
}

bool feeds(const Event &event)
{
    return sets(event, item_code::watchdog_clear) ||
           (event.op == Op::write && event.what == "wdt clear" && !failed(event));
}

double milliseconds(double seconds)
{
    return std::round(seconds * per_second * 1000) / 1000;
}

class Feeding
{
  public:
    explicit Feeding(const Profile &profile) : profile_(profile)
    {
        started();
    }

    void event(const Event &event)
    {
        if (event.op == Op::reset) {
            if (event.what == "watchdog reset" && last_)
                gap(event.time, true);
            started();
        } else if (sets(event, item_code::watchdog_enable)) {
            // Switching is not feeding, but time that the watchdog is off for is no gap.
            if (event.sent.value_or(0) == 0)
                last_.reset();
            switches_.push_back({{"time", event.time}, {"on", event.sent.value_or(0) != 0}});
        } else if (event.what == "wdt set threshold" && !failed(event) && event.sent) {
            threshold_ = *event.sent;
        } else if (feeds(event)) {
            feed(event.time);
        }
    }

    // A board that was switched off, or died, starts anew.
    void started()
    {
        last_.reset();
        threshold_ = profile_.watchdog_threshold;
    }

    json told()
    {
        thin_out();
        std::ranges::sort(lengths_);
        const json middle = lengths_.empty() ? json(nullptr) : json(lengths_[lengths_.size() / 2]);
        const json longest = lengths_.empty() ? json(nullptr) : json(lengths_.back());
        return {{"feeds", feeds_},     {"intervals", intervals_},
                {"gaps", gaps_},       {"switches", switches_},
                {"median_ms", middle}, {"max_ms", longest},
                {"limit_ms", limit()}, {"late_ms", limit() * late_share}};
    }

  private:
    double limit() const
    {
        return static_cast<double>(profile_.watchdog_period_ms) * threshold_;
    }
    // A page draws no more of them than can be told apart; the gaps are a list of their own.
    void thin_out()
    {
        const std::size_t step = intervals_.size() / most_intervals + 1;
        json kept = json::array();
        for (std::size_t i = 0; i < intervals_.size(); i += step)
            kept.push_back(intervals_[i]);
        intervals_ = std::move(kept);
    }
    void feed(double time)
    {
        ++feeds_;
        if (last_) {
            const double length = milliseconds(time - *last_);
            lengths_.push_back(length);
            intervals_.push_back({time, length});
            if (length > limit() * late_share)
                gap(time, false);
        }
        last_ = time;
    }
    void gap(double to, bool bitten)
    {
        gaps_.push_back(
            {{"from", *last_}, {"to", to}, {"ms", milliseconds(to - *last_)}, {"bitten", bitten}});
    }

    const Profile &profile_;
    std::uint32_t threshold_ = 0;
    std::optional<double> last_; // feed, as far as the next one is to be compared with it
    std::size_t feeds_ = 0;
    std::vector<double> lengths_;
    json intervals_ = json::array(), gaps_ = json::array(), switches_ = json::array();
};

} // namespace

json feeding(const Records &records, const Profile &profile, const json &boots)
{
    Feeding feeding(profile);
    auto boot = boots.begin();
    for (const Event &event : records.events) {
        for (; boot != boots.end() && boot->at("from").get<double>() < event.time - event.duration; ++boot)
            if (boot->at("start") == "switched on")
                feeding.started();
        feeding.event(event);
    }
    return feeding.told();
}

} // namespace vboard::report
