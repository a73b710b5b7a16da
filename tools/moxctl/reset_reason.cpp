// SPDX-License-Identifier: Apache-2.0
// moxctl reset-reason: what the driver recorded of the last reset, what software traced of resets in the boot
// environment, and what comes of both. Traces are never taken back: one may be of an earlier reset than the
// last, so the driver's word goes first, and a trace stands with its time.
#include "variable.hpp"
#include "verbs.hpp"
#include "words.hpp"

#include <moxboot/reset.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace moxctl
{

namespace
{

std::string reason_name(std::uint32_t code)
{
    switch (code) {
    case MOX_RESET_UNKNOWN:
        return "unknown";
    case MOX_RESET_TRACED:
        return "the reason that is traced in the boot environment";
    case reset_by_moxctl:
        return "moxctl reboot, without a reason given";
    default:
        return {};
    }
}

Failure record_failure(std::uint32_t result)
{
    if (result == internal_failure)
        return {result, "the device cannot be opened, or the driver refused the request"};
    return {result, "the driver's record is not as required"};
}

// What the driver recorded.
struct Observed {
    Answer time;
    Answer reason; // null when the driver holds none

    static Observed ask();
};

Observed Observed::ask()
{
    std::array<char, MOX_RESET_TEXT_SIZE> text{};
    std::uint32_t code = 0;
    if (const std::uint32_t result = MOX_ReadResetReason(text.data(), text.size(), &code); result != 0)
        return {unreadable(record_failure(result)), unreadable(record_failure(result))};
    // The text is the time and the code.
    std::string time = text.data();
    time.erase(std::min(time.find(','), time.size()));
    if (code != MOX_RESET_UNKNOWN)
        return {words(time), hexadecimal(code, reason_name(code))};
    if (time.ends_with('s'))
        time.pop_back();
    Answer start = words(time);
    start.meaning = "when the board started; no reset is recorded";
    return {start, {nullptr, "none", "the driver holds no reason"}};
}

Answer mode()
{
    std::array<std::uint8_t, MOX_RESET_MODE_SIZE> record{};
    if (const std::uint32_t result = MOX_ReadResetReasonMode(record.data()); result != 0)
        return unreadable(record_failure(result));
    std::string text;
    for (const std::uint8_t byte : record) {
        char digits[8];
        std::snprintf(digits, sizeof digits, text.empty() ? "%02x" : " %02x", byte);
        text += digits;
    }
    return words(text);
}

// A reset that software traced before it asked for it.
struct Trace {
    std::string code_name, time_name;
    Variable code, time;

    bool set() const // the library takes an empty code for none
    {
        return code.value && !code.value->empty();
    }
};

std::vector<Trace> read_traces()
{
    std::vector<Trace> traces;
    for (const char *slot : {"", "1", "2"}) {
        Trace trace{std::string("early_reset_code") + slot, std::string("early_reset_time") + slot, {}, {}};
        trace.code = read_variable(trace.code_name);
        trace.time = read_variable(trace.time_name);
        traces.push_back(std::move(trace));
    }
    return traces;
}

Json stored(const Variable &variable)
{
    return variable.value ? Json(*variable.value) : Json(nullptr);
}

std::string shown(const Variable &variable)
{
    if (variable.value)
        return *variable.value;
    return variable.result.unset() ? "-" : "unreadable";
}

Fact traces_fact(const std::vector<Trace> &traces)
{
    Fact fact{"traced_resets", "Traced resets", {Json::array(), {}, {}}};
    fact.rows.push_back({"Slot", "Code", "Time"});
    std::size_t set = 0;
    for (const Trace &trace : traces) {
        const std::size_t slot = fact.answer.value.size();
        set += trace.set() ? 1 : 0;
        fact.answer.value.push_back(
            {{"slot", slot}, {"code", stored(trace.code)}, {"time", stored(trace.time)}});
        fact.rows.push_back({std::to_string(slot), shown(trace.code), shown(trace.time)});
        for (const Variable *variable : {&trace.code, &trace.time})
            fact.answer = learnt_from(*variable, std::move(fact.answer));
    }
    fact.answer.text = std::to_string(set);
    const auto unread = [](const Trace &trace) { return !trace.code.value && !trace.code.result.unset(); };
    if (std::all_of(traces.begin(), traces.end(), unread)) {
        fact.answer = unreadable(*fact.answer.failure);
        fact.rows.clear();
    }
    return fact;
}

// What software asked for last: the slots are filled in order, and the last one again and again. A slot that
// cannot be read may hold a newer trace than the one found; that is told beside it.
Answer requested(const std::vector<Trace> &traces)
{
    Answer answer{nullptr, "none", "no reset is traced in the boot environment"};
    const auto newest = std::find_if(traces.rbegin(), traces.rend(), [](const Trace &t) { return t.set(); });
    if (newest != traces.rend()) {
        const auto code = parse_number(*newest->code.value);
        const std::string when = "traced for " + shown(newest->time) + " in " + newest->code_name;
        answer = code ? hexadecimal(*code, when)
                      : Answer{nullptr, "unknown", '"' + newest->code_name + "\" holds no reason"};
    }
    for (auto trace = traces.rbegin(); trace != newest; ++trace)
        answer = learnt_from(trace->code, std::move(answer));
    if (answer.failure && answer.value.is_null())
        answer = unreadable(*answer.failure);
    return answer;
}

struct Cause {
    Answer cause;
    Answer source;
};

Cause conclude(const Answer &seen, const Answer &asked)
{
    const auto named = [](const Answer &answer) -> Answer {
        const auto code = static_cast<std::uint32_t>(answer.value.number());
        return hexadecimal(code, reason_name(code));
    };
    Answer source;
    if (!seen.value.is_null()) {
        source = words("observed");
        source.meaning = "the driver recorded it";
        return {named(seen), source};
    }
    const std::string why =
        seen.failure ? "the driver's record cannot be read" : "the driver holds no reason";
    if (!asked.value.is_null()) {
        source = words("requested");
        source.meaning = why + "; " + asked.meaning;
        return {named(asked), source};
    }
    return {{nullptr, "unknown", {}}, {nullptr, "none", why + ", and no trace tells one"}};
}

} // namespace

Outcome reset_reason()
{
    const Observed seen = Observed::ask();
    const std::vector<Trace> traces = read_traces();
    const Answer asked = requested(traces);
    const Cause cause = conclude(seen.reason, asked);
    Outcome outcome{{{"cause", "Cause", cause.cause},
                     {"cause_from", "Told by", cause.source},
                     {"observed", "Observed", seen.reason},
                     {"requested", "Requested", asked},
                     {"time", "Time", seen.time},
                     {"mode", "Reset mode", mode()},
                     traces_fact(traces)}};
    const auto unread = [](const Fact &fact) { return fact.answer.value.is_null() && fact.answer.failure; };
    constexpr std::ptrdiff_t conclusions = 2; // cause and source; the others were read
    if (std::all_of(outcome.facts.begin() + conclusions, outcome.facts.end(), unread))
        outcome.error = "nothing could be read about the last reset";
    return outcome;
}

} // namespace moxctl
