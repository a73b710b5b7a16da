// SPDX-License-Identifier: Apache-2.0
// The verbs about trust and the product: random bytes, product facts, TPM, measurements, revocation lists,
// clock.
#include "command_line.hpp"
#include "verbs.hpp"
#include "words.hpp"

namespace moxctl
{

namespace
{

constexpr unsigned most_random_bytes = 1048576; // the source takes its time over them

void add_random(CommandLine &line)
{
    CLI::App *verb =
        line.add_verb(line.app(), "random",
                      "Print random bytes of the library's own source, which takes them from the "
                      "processor's timing");
    verb->add_option("N", line.words().count, "how many")
        ->required()
        ->check(CLI::Range(1u, most_random_bytes));
    CLI::Option *hex = verb->add_flag("--hex", line.words().hex,
                                      "as two digits a byte (this is how they are printed otherwise)");
    CLI::Option *raw = verb->add_flag("--raw", line.words().raw, "as they are");
    CLI::Option *base64 = verb->add_flag("--base64", line.words().base64, "as base64");
    hex->excludes(raw)->excludes(base64);
    raw->excludes(base64);
    line.run(verb, [](const Words &words) {
        Encoding encoding = words.raw ? Encoding::raw : Encoding::hex;
        if (words.base64)
            encoding = Encoding::base64;
        return random_bytes(words.count, encoding);
    });
}

void add_facts(CommandLine &line)
{
    CLI::App &app = line.app();
    line.run(line.add_verb(app, "product", "Tell all that the library knows of the product, by item type"),
             [](const Words &) { return product(); });
    line.run(line.add_verb(app, "tpm", "Tell what the board has of a TPM, and what it is used for"),
             [](const Words &) { return tpm(); });
    line.run(line.add_verb(app, "measurements",
                           "Tell what was measured at start-up: file, type, hash, patch, register"),
             [](const Words &) { return measurements(); });
}

void add_crl(CommandLine &line)
{
    CLI::App *group = line.add_group(line.app(), "crl", "Certificate revocation list");
    CLI::App *write =
        line.add_verb(*group, "write", "Deliver a list to the CRL module and to the secure driver");
    write->add_option("FILE", line.words().file, "file with the list")->required();
    line.run(write, [](const Words &words) { return write_crl(words.file); });
    line.run(line.add_verb(*group, "show", "Tell which lists the CRL module and the secure driver hold"),
             [](const Words &) { return show_crl(); });
}

void add_system_time(CommandLine &line)
{
    CLI::App *group = line.add_group(line.app(), "system-time", "Clock of the operating system");
    CLI::App *set = line.add_verb(*group, "set",
                                  "SET THE CLOCK; on all but a standby board it is also kept for the next "
                                  "start");
    line.need(set, "TIME", line.words().time,
              "YYYY-MM-DDThh:mm:ss of local time, or seconds since the epoch with up to six decimals",
              check_clock_time);
    line.run(set, [](const Words &words) { return set_system_time(parse_clock_time(words.time).value()); });
}

} // namespace

void add_trust_verbs(CommandLine &line)
{
    add_random(line);
    add_facts(line);
    add_crl(line);
    add_system_time(line);
}

} // namespace moxctl
