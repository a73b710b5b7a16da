// SPDX-License-Identifier: Apache-2.0
// Power cuts at random moments of installations and of environment saves. Whatever the moment: each boot file
// and each flash area is that of the older package or that of the newer one, and the saved variables are one
// save's.
#include "machine/on_machine.hpp"

#include <random>
#include <set>
#include <sstream>

namespace test
{
namespace
{

using std::chrono::milliseconds;

const std::string root = "/opt/moxv8/install";
const std::string old_package = "/share/old.moxpkg", new_package = "/share/new.moxpkg";
constexpr std::chrono::seconds enough{120};

using Digests = std::map<std::string, std::string>; // file, SHA-256

Digests digests(const std::string &lines)
{
    Digests found;
    std::istringstream stream(lines);
    for (std::string digest, file; stream >> digest >> file;)
        if (digest.size() == 64)
            found[file] = digest;
    return found;
}

std::string install(const std::string &package)
{
    return "moxctl install " + package + " --root " + root + " --quiet";
}

std::string look()
{
    return "find /boot /opt/moxv8/var/flash -type f | sort | xargs sha256sum";
}

class PowerCuts : public OnMachine
{
  protected:
    PowerCuts() : seed_(campaign("MACHINE_SEED", 20261121)), random_(seed_) {}

    // Two packages with other content for every file.
    void make_packages()
    {
        must_run(step("old", "moxctl package sample " + old_package + " --size 60000") +
                     step("new", "moxctl package sample " + new_package + " --size 90000"),
                 {1, enough});
        ASSERT_EQ(of("old").status, 0) << of("old").output;
        ASSERT_EQ(of("new").status, 0) << of("new").output;
    }

    // Lets the machine go on for a random while, and takes its power.
    double cut_within(double seconds)
    {
        const double moment = std::uniform_real_distribution<double>(0, seconds)(random_);
        machine().end(milliseconds(static_cast<int>(moment * 1000)));
        return moment;
    }

    unsigned seed_;
    std::mt19937 random_;
};

// A file of neither package is torn, unless it is one that a writer puts beside the real one and renames.
unsigned torn(const Digests &found, const Digests &older, const Digests &newer, std::string &words)
{
    unsigned count = 0;
    for (const auto &[file, digest] : found) {
        const auto old_one = older.find(file), new_one = newer.find(file);
        if (old_one == older.end() && new_one == newer.end())
            continue;
        if ((old_one != older.end() && old_one->second == digest) ||
            (new_one != newer.end() && new_one->second == digest))
            continue;
        ++count;
        words += file + " is of neither package\n";
    }
    for (const auto &[file, digest] : older)
        if (newer.contains(file) && !found.contains(file)) {
            ++count;
            words += file + " is gone\n";
        }
    return count;
}

TEST_F(PowerCuts, an_installation_leaves_the_old_file_or_the_new_one)
{
    start_board("ng-qs3540-mpu");
    make_packages();
    must_run(step("install new", install(new_package)) + step("newer", look()) +
                 step("begin", "cat /proc/uptime") + step("install old", install(old_package)) +
                 step("end", "cat /proc/uptime") + step("older", look()) + "sync",
             {1, enough});
    ASSERT_EQ(of("install new").status, 0) << of("install new").output;
    ASSERT_EQ(of("install old").status, 0) << of("install old").output;
    const Digests newer = digests(of("newer").output), older = digests(of("older").output);
    ASSERT_GT(newer.size(), 2U) << of("newer").output;
    ASSERT_NE(newer, older);
    const double takes = std::stod(of("end").output) - std::stod(of("begin").output);

    const unsigned cuts = campaign("MACHINE_CUTS", 3);
    unsigned torn_files = 0, old_states = 0, new_states = 0, mixed = 0;
    double moment = 0;
    // The next start looks at what the cut before it has left.
    const auto judge = [&](unsigned cut, const std::string &lines) {
        std::string words;
        const Digests found = digests(lines);
        const unsigned count = torn(found, older, newer, words);
        EXPECT_EQ(count, 0U) << "cut " << cut << " after " << moment << " s (seed " << seed_
                             << "): " << words;
        torn_files += count;
        old_states += found == older;
        new_states += found == newer;
        mixed += found != older && found != newer;
    };
    for (unsigned i = 0; i < cuts; ++i) {
        const std::string &package = i % 2 == 0 ? new_package : old_package;
        machine().share().forget("at-work");
        machine().begin(look() + " >/share/found\ntouch /share/at-work\n" + install(package) + "; sleep 60");
        ASSERT_TRUE(machine().wait_for("at-work", enough)) << machine().last_words();
        if (i > 0)
            judge(i, machine().share().text("found"));
        moment = cut_within(takes * 1.1);
    }
    const Outcome outcome = must_run(step("found", look()), {1, enough});
    EXPECT_EQ(outcome.causes.back(), "power-cut");
    judge(cuts, of("found").output);
    must_run(step("again", install(new_package)) + step("found", look()), {1, enough});
    EXPECT_EQ(of("again").status, 0) << of("again").output;
    for (const auto &[file, digest] : newer)
        EXPECT_EQ(digests(of("found").output)[file], digest) << file << ": not as without cuts";
    note("power cuts, installation",
         std::to_string(cuts) + " cuts, " + std::to_string(torn_files) + " torn files; all old " +
             std::to_string(old_states) + ", all new " + std::to_string(new_states) + ", some of each " +
             std::to_string(mixed) + "; an installation takes " + std::to_string(takes) + " s");
}

TEST_F(PowerCuts, saved_variables_are_those_of_one_save)
{
    const unsigned cuts = campaign("MACHINE_CUTS", 3);
    unsigned torn_saves = 0, saves = 0;
    double moment = 0;
    const std::string report =
        "for name in a b; do moxctl --json env get $name || echo '{\"value\": null}'; done 2>/dev/null";
    const std::string work = "i=$(cat /share/saved 2>/dev/null || echo 0)\n"
                             "while :; do i=$((i + 1))\n"
                             "  moxctl env set a $i && moxctl env set b $i && moxctl env save && echo $i "
                             ">/share/saved.new && mv /share/saved.new /share/saved && touch /share/at-work\n"
                             "done >/dev/null";
    // The last save that was over before the cut, or the one that was under way.
    const auto judge = [&](unsigned cut, const std::string &values) {
        std::string all = values;
        std::erase(all, '\n');
        const std::size_t border = all.find("}{");
        ASSERT_NE(border, std::string::npos) << values;
        const json a = json::parse(all.substr(0, border + 1), nullptr, false)["value"];
        const json b = json::parse(all.substr(border + 1), nullptr, false)["value"];
        const auto is = [&](unsigned save) {
            const json value = save == 0 ? json() : json(std::to_string(save));
            return a == value && b == value;
        };
        const bool whole = is(saves) || is(saves + 1);
        EXPECT_TRUE(whole) << "cut " << cut << " after " << moment << " s (seed " << seed_ << "): " << all
                           << ", the last save that was over was " << saves;
        torn_saves += !whole;
    };
    for (unsigned i = 0; i < cuts; ++i) {
        machine().share().forget("at-work");
        machine().begin(report + " >/share/found\n" + work);
        ASSERT_TRUE(machine().wait_for("at-work", enough)) << machine().last_words();
        if (i > 0)
            judge(i, machine().share().text("found"));
        moment = cut_within(6.0);
        const std::string saved = machine().share().text("saved");
        saves = saved.empty() ? 0 : static_cast<unsigned>(std::stoul(saved));
    }
    must_run(report + " >/share/found\n", {1, enough});
    judge(cuts, machine().share().text("found"));
    EXPECT_GE(saves, cuts) << "each cut comes after a save that was over";
    note("power cuts, environment saves", std::to_string(cuts) + " cuts over " + std::to_string(saves) +
                                              " saves, " + std::to_string(torn_saves) + " torn or lost");
}

} // namespace
} // namespace test
