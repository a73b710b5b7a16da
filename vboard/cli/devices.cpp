// SPDX-License-Identifier: Apache-2.0
#include "cli/devices.hpp"

#include "cli/fault_options.hpp"
#include "cli/numbers.hpp"
#include "cli/places.hpp"
#include "cli/verbs.hpp"
#include "daemon/control.hpp"
#include "launcher/program.hpp"
#include "model/faults.hpp"
#include "model/items.hpp"

#include <sys/wait.h>
#include <unistd.h>

namespace vboard::cli
{

namespace
{

// The program says itself what goes wrong.
int run(const std::vector<std::string> &command)
{
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("cannot start a process for the board");
    if (child == 0)
        _exit(exec_program(command));
    int status = 0;
    waitpid(child, &status, 0);
    return exit_status(status);
}

} // namespace

int up_as_devices(const BoardOptions &options, const std::filesystem::path &state)
{
    if (!options.keep.empty())
        throw UsageError("--keep is about a file tree of the board's own; with --cuse there is none");
    nlohmann::json requests = nlohmann::json::array();
    if (!options.hard_type.empty())
        requests.push_back({{"do", "set"},
                            {"device", "/dev/board0"},
                            {"code", item_code::hard_type},
                            {"value", number(options.hard_type, "hard type")}});
    for (const std::string &fault : options.faults)
        requests.push_back({{"do", "fault-add"}, {"fault", to_json(parse_fault(fault))}});

    std::vector<std::string> command{devices_program(), "--state", state};
    if (const std::filesystem::path profile = profile_file(state, options.board); !profile.empty())
        command.insert(command.end(), {"--board", profile});
    if (run(command) != 0)
        return failed;
    for (const nlohmann::json &request : requests)
        ask_board(state, request);
    return done;
}

} // namespace vboard::cli
