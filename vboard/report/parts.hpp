// SPDX-License-Identifier: Apache-2.0
// What the records say about one side of the board's life each, as the page's data has it.
#pragma once

#include "report/records.hpp"

namespace vboard::report
{

// From one start to the next end: "from", "to" (null: it goes on), "start" and "end" in words ("switched on",
// "soft reset", "switched off", "ended without a word", "running"), "reason" of the reset that it started
// with, "requests", and "activity", the requests in as many equal parts of the time.
nlohmann::json boots(const Records &records, bool running, double now);

// By device, request and item: "count", "failed", "faulted", "median_us", "max_us" (null: not known).
nlohmann::json traffic(const Records &records);

// "planned" and "met", each a time and words; "met_count", which may be more than are listed; "cleared":
// when.
nlohmann::json faults(const Records &records);

// By process: "package", "steps" with their results, "ok".
nlohmann::json installations(const Records &records);

// "feeds", "gaps", and what an interval is held against: by `profile` the counter gets to its threshold after
// "limit_ms".
nlohmann::json feeding(const Records &records, const Profile &profile, const nlohmann::json &boots);

bool failed(const Event &event);

} // namespace vboard::report
