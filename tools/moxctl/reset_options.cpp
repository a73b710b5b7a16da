// SPDX-License-Identifier: Apache-2.0
// The verbs about resets: why there was one, how to ask for one, what keeps one away.
#include "command_line.hpp"
#include "verbs.hpp"
#include "words.hpp"

#include <moxboot/watchdog.h>

namespace moxctl
{

namespace
{

constexpr unsigned most_feeds = 1000000;
constexpr unsigned longest_pause = 3600000; // ms
constexpr unsigned longest_wait = 86400;    // s

void add_reboot(CommandLine &line)
{
    line.run(line.add_verb(line.app(), "reset-reason",
                           "Tell why the board went down last: what its driver recorded, what software "
                           "traced in the boot\nenvironment, and the cause by both"),
             [](const Words &) { return reset_reason(); });

    CLI::App *verb =
        line.add_verb(line.app(), "reboot",
                      "TAKE THE BOARD DOWN. Does not return: also when the reboot command fails it waits, "
                      "and the watchdog,\nwhich it leaves started, resets the board");
    Words &words = line.words();
    line.may(verb, "--reason", words.reason,
             "reset reason, decimal or 0x... (default: 0x4d4f5801, \"moxctl\"; 0x10100d9 is also traced)",
             check_reset_reason);
    line.may(verb, "--time", words.time, "time to record, YYYY-MM-DDThh:mm:ss (default: now)", check_date);
    CLI::Option *soft = verb->add_flag("--soft", words.soft, "as a soft reset");
    verb->add_flag("--prepare", words.prepare,
                   "all but the reboot itself; returns, with the watchdog started")
        ->excludes(soft);
    line.run_talking(verb, [](const Words &given, const Talk &talk) {
        RebootOrder order;
        if (!given.reason.empty())
            order.reason = parse_number(given.reason).value();
        order.date = given.time.empty() ? date_now() : parse_date(given.time).value();
        order.soft = given.soft;
        return given.prepare ? prepare_reboot(order) : reboot(order, talk);
    });
}

void add_pre_reset(CommandLine &line)
{
    CLI::App *group = line.add_group(line.app(), "pre-reset", "The word that goes round before a reset");
    line.run(line.add_verb(*group, "announce",
                           "Announce a reset and wait about 150 ms for the answer. Waiting feeds the "
                           "watchdog, which the kernel\nthen no longer does by itself"),
             [](const Words &) { return announce_reset(); });

    CLI::App *listen =
        line.add_verb(*group, "listen", "Register for the announcement, wait for one, answer it, and end");
    Words &words = line.words();
    line.may(listen, "--name", words.module, "name to register under", check_module_name)
        ->capture_default_str();
    listen->add_option("--run", words.command,
                       "shell command to run before the answer, with the reset mode in MOX_RESET_MODE");
    listen->add_option("--mode-file", words.mode_file, "file to write the reset mode to before the answer");
    listen->add_option("--timeout", words.timeout, "give up after so many seconds (default: never)")
        ->check(CLI::Range(1u, longest_wait));
    line.run_talking(listen, [](const Words &given, const Talk &talk) {
        return listen_for_reset({given.module, given.command, given.mode_file, given.timeout}, talk);
    });
}

void add_watchdog(CommandLine &line)
{
    CLI::App *group = line.add_group(line.app(), "wdt", "The board's hardware watchdog");
    line.run(line.add_verb(*group, "start", "Start the watchdog"),
             [](const Words &) { return control_watchdog(MOX_WDT_START); });
    line.run(line.add_verb(*group, "stop", "Stop the watchdog"),
             [](const Words &) { return control_watchdog(MOX_WDT_STOP); });
    CLI::App *feed = line.add_verb(*group, "feed",
                                   "Feed the watchdog. On most boards this takes the feeding over from the "
                                   "kernel for good:\nsomebody must go on with it");
    feed->add_option("--count", line.words().count, "how often")
        ->check(CLI::Range(1u, most_feeds))
        ->capture_default_str();
    feed->add_option("--every", line.words().every, "milliseconds from one feed to the next")
        ->check(CLI::Range(1u, longest_pause))
        ->capture_default_str();
    line.run(feed, [](const Words &words) { return feed_watchdog(words.count, words.every); });
}

void add_soft_reset(CommandLine &line)
{
    CLI::App *group =
        line.add_group(line.app(), "soft-reset", "Resets of the software alone, which keep reserved memory");
    line.run(line.add_verb(*group, "open", "Allow a soft reset for the next package installation"),
             [](const Words &) { return switch_soft_reset(true); });
    line.run(line.add_verb(*group, "close", "Forbid it"),
             [](const Words &) { return switch_soft_reset(false); });
    line.run(line.add_verb(*group, "status", "Tell whether there are soft resets, and how they are switched"),
             [](const Words &) { return soft_reset_status(); });
}

} // namespace

void add_reset_verbs(CommandLine &line)
{
    add_reboot(line);
    add_pre_reset(line);
    add_watchdog(line);
    add_soft_reset(line);
}

} // namespace moxctl
