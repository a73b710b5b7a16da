// SPDX-License-Identifier: Apache-2.0
// Installations, by what the library traces as it goes: each of its three steps has a first and a last line,
// and what fails between them has a level of its own.
#include "report/parts.hpp"

#include <algorithm>
#include <map>

namespace vboard::report
{

using nlohmann::json;

namespace
{

constexpr std::uint32_t failure_level = 4;

struct Step {
    const char *name;
    std::string_view begin, end;
    std::string_view refused; // a line that is no failure by its level, but is one
};
constexpr Step steps[] = {
    {"boot files", "Drvboot install pkg ", "Drvboot install pkg end", ""},
    {"links", "Drvboot install run file begin", "Drvboot install run file end", "run file NOK"},
    {"start-up flash", "Drvboot pre install os begin", "Drvboot pre install os end", ""},
};
constexpr std::string_view linked = "Succeeded to link";
constexpr std::string_view flash_result = "(ret is ";
constexpr std::string_view good_flash_result = "(ret is 0x0)";

struct Running {
    json installation;
    bool open = false; // the step at the end has begun and not ended
};

const Step *begun_by(const std::string &text)
{
    const auto *found = std::ranges::find_if(
        steps, [&](const Step &step) { return text.starts_with(step.begin) && !text.starts_with(step.end); });
    return found != std::end(steps) ? found : nullptr;
}

// "Drvboot install pkg /tmp/all.tar.xz, Phase 0, install path ...": what stands behind the words.
std::string package_in(const std::string &text)
{
    const std::string rest = text.substr(steps[0].begin.size());
    return rest.substr(0, rest.find(", Phase "));
}

json new_step(const Step &step, double time)
{
    return {{"name", step.name}, {"from", time}, {"to", nullptr}, {"failures", json::array()}, {"links", 0}};
}

void go_on(Running &running, const TraceLine &line)
{
    json &step = running.installation["steps"].back();
    const auto known = std::ranges::find_if(steps, [&](const Step &one) { return step["name"] == one.name; });
    const bool refused = !known->refused.empty() && line.text.ends_with(known->refused);
    if (line.level == failure_level || refused)
        step["failures"].push_back(line.text);
    if (line.text.find(linked) != std::string::npos)
        step["links"] = step["links"].get<int>() + 1;
    if (!line.text.starts_with(known->end))
        return;
    step["to"] = line.time;
    running.open = false;
    if (line.text.find(flash_result) != std::string::npos &&
        line.text.find(good_flash_result) == std::string::npos)
        step["failures"].push_back(line.text);
}

bool all_well(const json &installation)
{
    return std::ranges::all_of(installation["steps"], [](const json &step) {
        return step["failures"].empty() && !step["to"].is_null();
    });
}

} // namespace

json installations(const Records &records)
{
    std::vector<json> list;
    std::map<int, Running> running; // by process
    const auto put = [&](int process) {
        const auto found = running.find(process);
        if (found == running.end())
            return;
        json done = std::move(found->second.installation);
        done["ok"] = all_well(done);
        list.push_back(std::move(done));
        running.erase(found);
    };
    for (const TraceLine &line : records.trace) {
        const Step *const begun = begun_by(line.text);
        if (begun == &steps[0])
            put(line.process); // a process may install one package after another
        if (begun != nullptr) {
            Running &one = running[line.process];
            if (one.installation.is_null())
                one.installation = {
                    {"process", line.process},
                    {"package", begun == &steps[0] ? json(package_in(line.text)) : json(nullptr)},
                    {"from", line.time},
                    {"steps", json::array()}};
            one.installation["steps"].push_back(new_step(*begun, line.time));
            one.open = true;
        } else if (const auto found = running.find(line.process);
                   found != running.end() && found->second.open) {
            go_on(found->second, line);
        }
    }
    while (!running.empty())
        put(running.begin()->first);
    std::ranges::stable_sort(list, {}, [](const json &one) { return one["from"].get<double>(); });
    return json(std::move(list));
}

} // namespace vboard::report
