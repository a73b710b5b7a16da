// SPDX-License-Identifier: Apache-2.0
#include "cut/sweep.hpp"

#include "cut/disk.hpp"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <set>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace cut
{

namespace
{

constexpr const char *record = "/dev/shm/changes"; // beside the board's storage

bool ends_with(const std::string &text, const std::string &end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Files that are written beside their place, and locks, may be in any state.
bool may_be_torn(const std::string &path)
{
    return ends_with(path, ".new") || ends_with(path, ".lock");
}

enum class Ending { good, killed };

class Sweep
{
  public:
    Sweep(Tree before, const Subject &subject, const Options &options)
        : before_(std::move(before)), subject_(subject), options_(options), random_(options.seed)
    {
    }

    Result run()
    {
        const auto begin = std::chrono::steady_clock::now();
        end_ = begin + options_.most / 2; // the other half is for the power cuts
        run_whole();
        cut_by_kills();
        end_ = begin + options_.most;
        cut_power();
        write_storage(read_storage(), before_);
        result_.after = after_;
        result_.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        return result_;
    }

  private:
    bool in_time() const
    {
        return std::chrono::steady_clock::now() < end_;
    }

    Ending run_child(const Plan &plan) const
    {
        std::fflush(nullptr);
        const pid_t child = fork();
        if (child == 0) {
            const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
            dup2(nowhere, STDOUT_FILENO);
            dup2(nowhere, STDERR_FILENO);
            _exit(subject_.run(plan));
        }
        int status = 0;
        if (child < 0 || waitpid(child, &status, 0) != child)
            throw std::runtime_error(std::string("no child process: ") + std::strerror(errno));
        if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)
            return Ending::killed;
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
            throw std::runtime_error("the program has failed, wait status " + std::to_string(status));
        return Ending::good;
    }

    // Records what there is to cut, and what all cuts are measured by.
    void run_whole()
    {
        write_storage(read_storage(), before_);
        unlink(record);
        Plan plan;
        plan.record = record;
        run_child(plan);
        after_ = read_storage();
        changes_ = read_record(record);
        unlink(record);
        result_.changes = changes_.size();
        Disk disk(before_);
        for (const Change &change : changes_) {
            disk.apply(change);
            result_.flushes += change.act == Act::flush || change.act == Act::flush_all ? 1 : 0;
        }
        if (const auto lines = differences(disk.now(), after_); !lines.empty())
            throw std::runtime_error("the record does not tell all that was changed: " + lines.front());
        for (const auto &[path, entry] : after_)
            if (entry.type == Type::file && subject_.lasting(path) && !may_be_torn(path) &&
                !same_in(disk.flushed(), path, entry))
                violation("at the end", path + " is not flushed");
        repeat(after_, "after the end");
    }

    static bool same_in(const Tree &tree, const std::string &path, const Entry &entry)
    {
        const auto found = tree.find(path);
        return found != tree.end() && found->second == entry;
    }

    void violation(const std::string &where, const std::string &what)
    {
        result_.violations.push_back(where + ": " + what);
    }

    // Every file is the old one or the new one, whole.
    void check_whole(const Tree &state, const std::string &where)
    {
        for (const auto &[path, entry] : state)
            if (entry.type == Type::file && !may_be_torn(path) && !same_in(before_, path, entry) &&
                !same_in(after_, path, entry))
                violation(where, path + " is torn: " + std::to_string(entry.data.size()) + " bytes");
        for (const auto &[path, entry] : before_)
            if (entry.type == Type::file && subject_.lasting(path) && !may_be_torn(path) &&
                after_.contains(path) && !state.contains(path))
                violation(where, path + " is gone");
    }

    // A whole run from what is there gives what it always gives.
    void repeat(const Tree &start, const std::string &where)
    {
        try {
            run_child({});
        } catch (const std::runtime_error &error) {
            violation(where, std::string("again: ") + error.what());
        }
        const Tree left = read_storage();
        for (const std::string &line : differences(left, subject_.repeated(start, after_)))
            violation(where, "again: " + line);
    }

    void cut_by_kills()
    {
        Disk disk(before_);
        for (std::size_t at = 0; at < changes_.size() && in_time(); disk.apply(changes_[at++])) {
            if (at % options_.every != options_.first % options_.every)
                continue;
            cut_by_kill(at, false, disk);
            if (can_be_halved(changes_[at]))
                cut_by_kill(at, true, disk);
        }
    }

    void cut_by_kill(std::size_t at, bool half, const Disk &disk)
    {
        write_storage(read_storage(), before_);
        Plan plan;
        plan.at = at;
        plan.half = half;
        const std::string where = "kill " + std::string(half ? "in the midst of " : "before ") +
                                  std::to_string(at) + ", " + in_words(changes_[at]);
        if (run_child(plan) != Ending::killed)
            throw std::runtime_error(where + ": it lived on");
        ++result_.kills;
        const Tree state = read_storage();
        if (!half && state != disk.now())
            throw std::runtime_error(where + ": it has not done what is on record");
        check_whole(state, where);
        repeat(state, where);
    }

    void cut_power()
    {
        Disk disk(before_);
        for (std::size_t at = 0; at <= changes_.size() && in_time(); ++at) {
            if (at % options_.every == options_.first % options_.every)
                lose_power(disk, "power cut after " + std::to_string(at) + " changes" +
                                     (at > 0 ? ", the last one: " + in_words(changes_[at - 1]) : ""));
            if (at < changes_.size())
                disk.apply(changes_[at]);
        }
    }

    void lose_power(const Disk &disk, const std::string &where)
    {
        judge(disk.flushed(), where + " (only what was flushed)");
        judge(disk.emptied(), where + " (names without contents)");
        judge(disk.zeroed(), where + " (names and lengths)");
        for (unsigned i = 0; i < options_.chances; ++i)
            judge(disk.by_chance(random_), where + " (by chance)");
    }

    void judge(const Tree &state, const std::string &where)
    {
        ++result_.power_cuts;
        std::string all; // of the state, to tell it from others
        for (const auto &[path, entry] : state)
            all += path + '\0' + std::to_string(entry.mode) + '\0' + std::to_string(entry.data.size()) +
                   '\0' + entry.data;
        // The same start leads to the same end.
        if (!seen_.insert(std::hash<std::string>()(all)).second)
            return;
        ++result_.states;
        check_whole(state, where);
        write_storage(read_storage(), state);
        repeat(state, where);
    }

    Tree before_;
    Tree after_;
    const Subject &subject_;
    const Options &options_;
    std::mt19937 random_;
    std::vector<Change> changes_;
    std::set<std::size_t> seen_;
    std::chrono::steady_clock::time_point end_;
    Result result_;
};

} // namespace

Result sweep(const Tree &before, const Subject &subject, const Options &options)
{
    must_be_on_a_board();
    return Sweep(before, subject, options).run();
}

Subject function_subject(std::function<int()> function)
{
    Subject subject;
    subject.run = [function = std::move(function)](const Plan &plan) {
        arm(plan);
        return function();
    };
    return subject;
}

} // namespace cut
