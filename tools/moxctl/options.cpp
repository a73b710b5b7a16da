// SPDX-License-Identifier: Apache-2.0
#include "options.hpp"

#include "command_line.hpp"

#include <sstream>
#include <vector>

namespace moxctl
{

namespace
{

constexpr const char *examples = R"(Examples:
  moxctl info                                who this board is
  moxctl --json info | jq .hard_type         the same for a program
  moxctl env get backup_state                a boot variable's value
  moxctl env set mode fast && moxctl env save
  moxctl env set options -- --quiet          a value that begins with a dash
  moxctl time --steps 4                      run times and the first steps of the start
  moxctl item get board0 0x8000001           one item of the board driver
  moxctl item set slot3 0x10002202 1
  moxctl families --hard-type 0x90020757 --flash nand
                                             what kind of board another board is
  moxctl plan --hard-type 0x90B2077D --logic-id 0x32F0B050 --ptn
                                             what an installation would do on that board
  moxctl package sample all.tar.xz && moxctl install all.tar.xz --root /opt/moxv8/program
                                             a package for trials, installed
  moxctl blackbox create crash 4096 && moxctl blackbox write crash --from core.txt
  moxctl blackbox read crash --view text     the records that a module left
  moxctl rsvmem map session 0x10000          a memory, and whether it survived
  moxctl sync-match V800R021                 whether the peer's file, of this version, matches
  moxctl random 32 --base64                  a key, say
  moxctl --json measurements | jq '.measurements[].hash'
                                             what was measured at start-up
  moxctl crl write revoked.crl && moxctl crl show
                                             a revocation list, delivered and looked at
  moxctl trace export -o board.json          what happened, for a viewer of timelines
  moxctl atlas -o atlas.html                 every board on one page
  moxctl reset-reason                        why the board went down last
  moxctl pre-reset listen --run 'save-state' be told before a reset
  moxctl wdt feed --count 60 --every 500     keep the watchdog quiet for half a minute
  moxctl reboot --reason 0x10100d9           take the board down, with a trace

Exit status: 0 done; 1 failed, told on standard error (verbs that show many things: nothing
at all could be read; a part that could not be is marked); 2 wrong usage.
)";

} // namespace

Request parse(int argc, char **argv)
{
    Request request;
    CommandLine line(request);
    line.app().footer(examples);
    add_board_verbs(line);
    add_reset_verbs(line);
    add_store_verbs(line);
    add_install_verbs(line);
    add_trust_verbs(line);
    add_picture_verbs(line);
    try {
        line.app().parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        // Help and version are such an "error" too, with a status of 0.
        std::ostringstream out;
        std::ostringstream ignored;
        request.action = nullptr;
        if (line.app().exit(error, out, ignored) == 0) {
            request.out = out.str();
        } else {
            // A verb that nobody knows shows as a missing one; the word itself says more.
            const std::vector<std::string> unknown = line.app().remaining(true);
            const std::string words =
                unknown.empty() ? error.what() : "\"" + unknown.front() + "\" is not understood here";
            request.status = exit_usage;
            request.err = "moxctl: " + words + "\nTry \"moxctl --help\".\n";
        }
    }
    return request;
}

} // namespace moxctl
