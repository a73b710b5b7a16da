// SPDX-License-Identifier: Apache-2.0
#include "timeline.hpp"

#include <moxboot/channel.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <string_view>
#include <utility>

namespace moxctl
{

namespace
{

constexpr double microseconds = 1e6; // in a second
// Two slices of a row must not overlap in part. Times have about this much of an error, in microseconds.
constexpr double error = 1;

// The rows of a timeline: processes, and below them what one calls their threads.
class Rows
{
  public:
    struct Row {
        std::uint32_t process, thread;
    };

    // A row whose name is there already is that one.
    Row row(const std::string &process, const std::string &name)
    {
        const auto [group, new_group] =
            groups_.try_emplace(process, static_cast<std::uint32_t>(groups_.size()) + 1);
        if (new_group) {
            name_row("process_name", group->second, 0, process);
            sort_row("process_sort_index", group->second, 0);
        }
        const auto [line, new_line] =
            rows_.try_emplace({process, name}, static_cast<std::uint32_t>(rows_.size()) + 1);
        if (new_line) {
            name_row("thread_name", group->second, line->second, name);
            sort_row("thread_sort_index", group->second, line->second);
        }
        return {group->second, line->second};
    }
    std::vector<Json> take_names()
    {
        return std::move(names_);
    }
    std::size_t groups() const
    {
        return groups_.size();
    }

  private:
    Json metadata(const char *kind, std::uint32_t process, std::uint32_t thread, Json args)
    {
        Json event = {{"name", kind}, {"ph", "M"}, {"ts", 0}, {"pid", process}, {"tid", thread}};
        event["args"] = std::move(args);
        return event;
    }
    void name_row(const char *kind, std::uint32_t process, std::uint32_t thread, const std::string &name)
    {
        Json args = Json::object();
        args["name"] = name;
        names_.push_back(metadata(kind, process, thread, std::move(args)));
    }
    void sort_row(const char *kind, std::uint32_t process, std::uint32_t thread)
    {
        Json args = Json::object();
        args["sort_index"] = thread != 0 ? thread : process;
        names_.push_back(metadata(kind, process, thread, std::move(args)));
    }

    std::map<std::string, std::uint32_t> groups_;
    std::map<std::pair<std::string, std::string>, std::uint32_t> rows_; // the numbers are unique among all
    std::vector<Json> names_;
};

class Maker
{
  public:
    explicit Maker(double start) : start_(start) {}

    double at(double time) const
    {
        return std::round((time - start_) * microseconds * 1000) / 1000;
    }

    void slice(Rows::Row row, const std::string &name, const char *category, double from, double to,
               Json args)
    {
        Json event = begin(row, name, "X", from);
        event["dur"] = std::round((to - from) * 1000) / 1000;
        finish(from, std::move(event), category, std::move(args));
    }
    void instant(Rows::Row row, const std::string &name, const char *category, double time, const char *scope,
                 Json args)
    {
        Json event = begin(row, name, "i", time);
        event["s"] = scope;
        finish(time, std::move(event), category, std::move(args));
    }

    // One request after another; one that comes while another is not answered yet gets a row beside it.
    void request(Rows &rows, const DriverRequest &request)
    {
        const std::string process = process_name(request.process);
        double from = at(request.time - request.duration);
        const std::string device = device_row(request.device);
        std::vector<double> &ends = ends_[{process, device}];
        std::size_t lane = 0;
        while (lane < ends.size() && ends[lane] > from + error)
            ++lane;
        if (lane == ends.size())
            ends.push_back(0);
        from = std::max(from, ends[lane]);
        const double to = std::max(from, at(request.time));
        ends[lane] = to;
        const std::string beside = lane == 0 ? "" : " (" + std::to_string(lane + 1) + ")";
        slice(rows.row(process, device + beside), request.name, request.failed ? "driver,failure" : "driver",
              from, to, request.args);
    }

    void line(Rows &rows, const TraceLine &line)
    {
        Json args = Json::object();
        args["code"] = line.code;
        args["level"] = line.level;
        const bool failure = line.level == DRVBOOT_TRACE_FAILURE;
        instant(rows.row(process_name(line.process), "step trace"), line.text,
                failure ? "trace,failure" : "trace", at(line.time), "t", std::move(args));
    }

    // The board itself: when it was on, and what took it down. That it was switched on again shows in the
    // numbers, which are in the order of the answers and begin anew. Of the last time nobody tells the end:
    // it lasts until the timeline does.
    void board(Rows &rows, std::vector<DriverRequest> requests, double end)
    {
        std::ranges::stable_sort(requests, {}, &DriverRequest::time);
        const Rows::Row row = rows.row("board", "power");
        double from = 0, last = 0;
        bool on = false;
        const auto was_on = [&](double to, const std::string &until) {
            slice(row, "on", "board", from, to, {{"until", until}});
        };
        for (const DriverRequest &request : requests) {
            const double begin = at(request.time - request.duration);
            if (on && request.number == 1)
                was_on(last, "not told");
            if (!on || request.number == 1)
                from = begin;
            on = true;
            last = at(request.time);
            if (!request.reset)
                continue;
            was_on(last, request.name);
            instant(row, request.name, "board", last, "g", request.args);
            from = last;
        }
        if (on)
            was_on(std::max(end, last), "the end of the journal");
    }

    Json made(Rows &rows)
    {
        std::stable_sort(events_.begin(), events_.end(),
                         [](const auto &one, const auto &other) { return one.first < other.first; });
        Json all = Json::array();
        for (Json &name : rows.take_names())
            all.push_back(std::move(name));
        for (auto &[time, event] : events_)
            all.push_back(std::move(event));
        return all;
    }

  private:
    // Slots are asked one after the other: a row for each would show little on many.
    static std::string device_row(const std::string &device)
    {
        constexpr std::string_view slot = "/dev/slot";
        return device.starts_with(slot) ? std::string(slot) + '*' : device;
    }
    static std::string process_name(int process)
    {
        return "process " + std::to_string(process);
    }
    static Json begin(Rows::Row row, const std::string &name, const char *phase, double time)
    {
        return {{"name", name}, {"ph", phase}, {"ts", time}, {"pid", row.process}, {"tid", row.thread}};
    }
    void finish(double time, Json event, const char *category, Json args)
    {
        event["cat"] = category;
        event["args"] = std::move(args);
        events_.emplace_back(time, std::move(event));
    }

    double start_; // of the timeline, in seconds since the epoch
    std::vector<std::pair<double, Json>> events_;
    std::map<std::pair<std::string, std::string>, std::vector<double>> ends_; // of the rows of a device
};

} // namespace

Timeline make_timeline(std::vector<DriverRequest> requests, std::vector<TraceLine> lines)
{
    // In order of their beginning, in which they came to the driver.
    const auto begun = [](const DriverRequest &request) { return request.time - request.duration; };
    std::ranges::stable_sort(requests, {}, begun);
    std::ranges::stable_sort(lines, {}, &TraceLine::time);
    double start = std::numeric_limits<double>::infinity(), end = 0;
    for (const DriverRequest &request : requests) {
        start = std::min(start, begun(request));
        end = std::max(end, request.time);
    }
    for (const TraceLine &line : lines) {
        start = std::min(start, line.time);
        end = std::max(end, line.time);
    }
    const bool empty = requests.empty() && lines.empty();
    Timeline timeline;
    timeline.length = empty ? 0 : end - start;
    Maker maker(empty ? 0 : start);
    Rows rows;
    if (!requests.empty())
        maker.board(rows, requests, maker.at(end));
    const std::size_t board = rows.groups();
    for (const DriverRequest &request : requests)
        if (!request.reset)
            maker.request(rows, request);
    for (const TraceLine &line : lines)
        maker.line(rows, line);
    timeline.processes = rows.groups() - board;
    timeline.json = Json::object();
    timeline.json["displayTimeUnit"] = "ms";
    timeline.json["otherData"] = {{"begins_at", empty ? Json(nullptr) : Json(start)},
                                  {"driver_requests", requests.size()},
                                  {"trace_lines", lines.size()}};
    timeline.json["traceEvents"] = maker.made(rows);
    return timeline;
}

} // namespace moxctl
