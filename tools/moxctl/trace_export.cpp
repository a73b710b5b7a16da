// SPDX-License-Identifier: Apache-2.0
// moxctl trace export: what happened on a board, for a viewer of timelines.
#include "timeline.hpp"
#include "verbs.hpp"
#include "whole_file.hpp"

#include <cstdlib>
#include <filesystem>

namespace moxctl
{

namespace
{

namespace fs = std::filesystem;

// A file that is not named is the board's own, should there be one.
std::string own_file(const std::string &given, const char *name, const char *variable)
{
    if (!given.empty())
        return given;
    const char *const named = variable != nullptr ? std::getenv(variable) : nullptr;
    const char *const state = std::getenv("VBOARD_STATE");
    std::error_code error;
    if (named != nullptr && fs::exists(named, error))
        return named;
    if (state != nullptr && fs::exists(fs::path(state) / name, error))
        return fs::path(state) / name;
    return {};
}

} // namespace

Outcome export_trace(const ExportOrder &order)
{
    // Who names one of them wants no other board's beside it.
    const bool named = !order.journal.empty() || !order.trace.empty();
    const std::string journal = named ? order.journal : own_file("", "journal.jsonl", nullptr);
    const std::string trace = named ? order.trace : own_file("", "trace.jsonl", "MOXPLATFORM_TRACE");
    if (journal.empty() && trace.empty())
        return failure("there is neither a journal nor a step trace; name them with --journal and --trace, "
                       "or the board's "
                       "directory in VBOARD_STATE");
    std::vector<DriverRequest> requests;
    std::vector<TraceLine> lines;
    if (!journal.empty())
        requests = read_journal(journal);
    if (!trace.empty())
        lines = read_trace(trace);
    const std::size_t request_count = requests.size(), line_count = lines.size();
    Timeline timeline = make_timeline(std::move(requests), std::move(lines));
    Outcome outcome{{{"requests", "Driver requests and resets", number(request_count)},
                     {"trace_lines", "Lines of the step trace", number(line_count)},
                     {"processes", "Processes", number(timeline.processes)},
                     {"seconds", "Length", {timeline.length, std::to_string(timeline.length), "seconds"}}}};
    const std::string text = timeline.json.dump() + '\n';
    if (order.output.empty()) {
        outcome.facts.push_back({"timeline", "Timeline", {std::move(timeline.json), text, {}}});
        outcome.style = Style::raw;
        return outcome;
    }
    write_whole_file(order.output, text);
    outcome.facts.push_back({"file", "Written to", words(order.output)});
    return outcome;
}

} // namespace moxctl
