// SPDX-License-Identifier: Apache-2.0
#include "sweep/sweep.hpp"

#include "sweep/imports.hpp"
#include "sweep/watched.hpp"
#include "sweep/where.hpp"

#include "vboard/front/inprocess.hpp"
#include "vboard/model/profile.hpp"

#include <cstdlib>
#include <fcntl.h>
#include <map>
#include <unistd.h>

namespace sweep
{
namespace
{

// Calls of one run that are failed in every way, or, in the emulated target's programs, which run slowly,
// each in one way, in turns. Of later calls, which only the walk over the whole link table makes, every
// seventh is failed, in one way. With SWEEP_WHOLE in the environment each is, in every way.
#ifdef SWEEP_IN_TURNS
constexpr std::size_t in_every_way = 0;
#else
constexpr std::size_t in_every_way = 250;
#endif
constexpr std::size_t each = 250;
constexpr std::size_t some = 7;

bool is_tried(std::size_t at, std::size_t way, std::size_t ways)
{
    static const bool whole = std::getenv("SWEEP_WHOLE") != nullptr;
    if (whole || at < in_every_way)
        return true;
    const std::size_t turn = at < each ? at : at / some;
    return (at < each || at % some == 0) && way == turn % ways;
}

const vboard::Profile &profile_of(const std::string &board)
{
    static std::map<std::string, vboard::Profile> known;
    auto found = known.find(board);
    if (found == known.end())
        found = known.emplace(board, vboard::load_profile(SWEEP_BOARDS "/" + board + ".toml")).first;
    return found->second;
}

unsigned open_descriptors()
{
    constexpr int most = 24;
    unsigned count = 0;
    for (int fd = 0; fd < most; ++fd)
        count += fcntl(fd, F_GETFD) >= 0 ? 1 : 0;
    return count;
}

// The watchdog service's descriptor is kept for the life of a process.
void close_kept_descriptor()
{
    static auto *const kept = static_cast<int *>(exported("g_fd_wdt"));
    if (*kept >= 0)
        close(*kept);
    *kept = -1;
}

class Function
{
  public:
    Function(const Row &row, Tally &tally) : row_(row), tally_(tally) {}

    // The functions that were called.
    std::vector<const char *> run(const Plan &plan, const std::string &circumstances)
    {
        where("%s, %s", row_.function, circumstances.c_str());
        restore_variables();
        vboard::Board board(profile_of(row_.board));
        if (row_.prepare != nullptr)
            row_.prepare(board);
        const unsigned before = open_descriptors();
        vboard::attach(&board);
        Outputs out;
        std::int64_t result = never_returns;
        const Record record = sweep::run(plan, [&] { result = row_.call(out); });
        vboard::detach();
        close_kept_descriptor();
        judge(plan, record, result, out, circumstances);
        const unsigned after = open_descriptors();
        if (after != before && !(row_.leaves_descriptor && plan.number != 0))
            complain(circumstances, "left " + std::to_string(after - before) + " descriptors open");
        close_beyond(before, after);
        return record.functions;
    }

  private:
    void complain(const std::string &circumstances, const std::string &what)
    {
        tally_.violations.push_back(std::string(row_.function) + ", " + circumstances + ": " + what);
    }

    void judge(const Plan &plan, const Record &record, std::int64_t result, const Outputs &out,
               const std::string &circumstances)
    {
        const bool good = row_.good.hold(result);
        if (!good && (plan.number == 0 || !row_.bad.hold(result)))
            complain(circumstances, "answered " + std::to_string(result));
        if (!good && row_.failure == Failure::leaves_outputs && !out.untouched())
            complain(circumstances, "failed and wrote all the same");
        if (!out.strips_whole())
            complain(circumstances, "wrote beside its outputs");
        if (record.blocks != 0 && !record.never_returns)
            complain(circumstances, "did not free " + std::to_string(record.blocks) + " blocks");
        if (record.libraries != 0)
            complain(circumstances, "did not close a library");
    }

    static void close_beyond(unsigned before, unsigned after)
    {
        for (int fd = 23; fd > 2 && after > before; --fd)
            if (close(fd) == 0)
                --after;
    }

    const Row &row_;
    Tally &tally_;
};

std::string described(const char *function, std::size_t number, const Plan &plan)
{
    std::string text =
        "call " + std::to_string(number) + ", " + function + "(), gives " + std::to_string(plan.fault.result);
    if (plan.fault.error != 0)
        text += " with errno " + std::to_string(plan.fault.error);
    return plan.for_ever ? text + " from then on" : text;
}

} // namespace

Tally &Tally::operator+=(const Tally &more)
{
    functions += more.functions;
    calls += more.calls;
    faults += more.faults;
    violations.insert(violations.end(), more.violations.begin(), more.violations.end());
    return *this;
}

Tally call_once(const Row &row)
{
    watch();
    Tally tally;
    tally.functions = 1;
    tally.calls = Function(row, tally).run({}, "nothing fails").size();
    return tally;
}

std::map<std::string, std::size_t> calls_of(const Row &row)
{
    watch();
    Tally tally;
    std::map<std::string, std::size_t> counts;
    for (const char *function : Function(row, tally).run({}, "nothing fails"))
        ++counts[function];
    return counts;
}

Tally sweep(const Row &row)
{
    watch();
    Tally tally;
    tally.functions = 1;
    Function function(row, tally);
    const std::vector<const char *> calls = function.run({}, "nothing fails");
    tally.calls = calls.size();
    for (std::size_t at = 0; at < calls.size(); ++at) {
        const auto faults = faults_of(calls[at]);
        for (std::size_t way = 0; way < faults.size(); ++way) {
            if (!is_tried(at, way, faults.size()))
                continue;
            // The first way also for good: what fails once may work at the next try.
            for (bool for_ever : {false, true}) {
                if (for_ever && way != 0)
                    break;
                const Plan plan{at + 1, calls[at], faults[way], for_ever};
                function.run(plan, described(calls[at], at + 1, plan));
                ++tally.faults;
            }
        }
    }
    return tally;
}

} // namespace sweep
