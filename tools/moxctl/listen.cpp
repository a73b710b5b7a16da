// SPDX-License-Identifier: Apache-2.0
// moxctl pre-reset listen: one cycle of the listening side. The callback runs on the library's thread, and
// the answer goes out after it; so moxctl must not end before that thread has. The library never joins it:
// moxctl puts a definition in front of what the thread runs, and learns so when it begins and ends.
#include "next.hpp"
#include "started.hpp"
#include "verbs.hpp"

#include <moxboot/pre_reset.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace moxctl
{

namespace
{

struct Cycle {
    ListenOrder order = {};
    Talk talk;
    std::mutex mutex; // guards the rest
    std::condition_variable changed;
    pid_t thread = 0;      // of the library
    bool ended = false;    // the thread
    bool called = false;   // the callback
    bool given_up = false; // an announcement would come too late
    std::string error;     // what went wrong in the callback
};

// Never destroyed: the thread may still wait when moxctl ends.
Cycle &cycle()
{
    static Cycle *const the_cycle = new Cycle;
    return *the_cycle;
}

Outcome event(const char *name, std::string text, std::optional<std::uint32_t> mode = std::nullopt)
{
    Outcome outcome{{{"event", "Event", words(name)}}, Style::bare};
    if (mode)
        outcome.facts.push_back({"mode", "Mode", number(*mode)});
    outcome.facts.back().answer.text = std::move(text);
    return outcome;
}

std::string write_mode(const std::string &path, const std::string &mode)
{
    errno = 0;
    std::ofstream file(path);
    file << mode << std::endl;
    return file ? std::string() : "cannot write " + path + ": " + std::strerror(errno);
}

// All that went wrong, the first thing first: one failure does not keep the rest from being done, because
// the reset comes all the same.
void handle(std::uint32_t mode)
{
    Cycle &at = cycle();
    {
        const std::lock_guard lock(at.mutex);
        if (at.given_up)
            return;
        at.called = true;
    }
    const std::string text = std::to_string(mode);
    std::string errors;
    const auto add = [&errors](const std::string &error) {
        if (!error.empty())
            errors += (errors.empty() ? "" : "; ") + error;
    };
    if (!at.talk.tell(event("pre-reset", "pre-reset, mode " + text, mode)))
        add("the announcement could not be told");
    if (!at.order.mode_file.empty())
        add(write_mode(at.order.mode_file, text));
    if (!at.order.command.empty()) {
        ::setenv("MOX_RESET_MODE", text.c_str(), 1);
        add(run_command(at.order.command, at.talk));
    }
    const std::lock_guard lock(at.mutex);
    at.error = errors;
}

bool sleeps(pid_t thread)
{
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string line;
    std::getline(file, line);
    const std::size_t name_end = line.rfind(')');
    return name_end != std::string::npos && line.compare(name_end, 3, ") S") == 0;
}

// The library leaves alone what lies at the pipe's place, and takes it for the pipe.
bool pipe_exists()
{
    struct stat status = {};
    return ::stat(MOX_PRE_RESET_REQUEST_PIPE, &status) == 0 && S_ISFIFO(status.st_mode);
}

// Until the library's thread waits in front of the pipe: an announcement before that finds nobody.
void await_readiness(Cycle &at)
{
    constexpr auto pause = std::chrono::milliseconds(2);
    constexpr int most_pauses = 500;
    constexpr int in_a_row = 3; // it sleeps on its way there, too, but not for long
    int asleep = 0;
    for (int i = 0; i < most_pauses && asleep < in_a_row; ++i) {
        std::this_thread::sleep_for(pause);
        const std::lock_guard lock(at.mutex);
        if (at.ended)
            return;
        asleep = at.thread != 0 && sleeps(at.thread) ? asleep + 1 : 0;
    }
}

bool ended_early(Cycle &at)
{
    const std::lock_guard lock(at.mutex);
    return at.ended && !at.called;
}

// An announcement from now on would come while moxctl ends.
Outcome give_up(Cycle &at, std::string why)
{
    const std::lock_guard lock(at.mutex);
    at.given_up = true;
    return failure(std::move(why));
}

// False: no announcement came in time, and none will be heard.
bool await_end(Cycle &at, unsigned timeout)
{
    std::unique_lock lock(at.mutex);
    const auto ended = [&at] { return at.ended; };
    if (timeout != 0 && !at.changed.wait_for(lock, std::chrono::seconds(timeout), ended) && !at.called) {
        at.given_up = true;
        return false;
    }
    at.changed.wait(lock, ended);
    return true;
}

} // namespace

Outcome listen_for_reset(const ListenOrder &order, const Talk &talk)
{
    Cycle &at = cycle();
    at.order = order;
    at.talk = talk;
    if (MOX_Register_PreResetProcFunc(handle, order.name.c_str()) != 0)
        return give_up(at, "the library did not register the callback");
    await_readiness(at);
    if (!pipe_exists() || ended_early(at))
        return give_up(at,
                       "cannot listen on " MOX_PRE_RESET_REQUEST_PIPE ": it cannot be opened, or is no pipe");
    if (!talk.tell(event("ready", "ready")))
        return give_up(at, "nobody was told that moxctl is ready");
    if (!await_end(at, order.timeout))
        return give_up(at, "no announcement came within " + std::to_string(order.timeout) + " s");
    const std::lock_guard lock(at.mutex);
    if (!at.called)
        return failure("something came that was no announcement of a reset");
    return failure(at.error); // empty: done
}

} // namespace moxctl

using namespace moxctl;

void *MOX_PreReset_Proc(void *argument)
{
    static const auto next = library_function<decltype(&MOX_PreReset_Proc)>("MOX_PreReset_Proc");
    Cycle &at = cycle();
    {
        const std::lock_guard lock(at.mutex);
        at.thread = ::gettid();
    }
    void *const result = next(argument);
    const std::lock_guard lock(at.mutex);
    at.ended = true;
    at.changed.notify_all();
    return result;
}
