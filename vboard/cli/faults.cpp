// SPDX-License-Identifier: Apache-2.0
// vboard fault: planned faults of a running board.
#include "model/faults.hpp"
#include "cli/board_options.hpp"
#include "cli/fault_options.hpp"
#include "cli/verbs.hpp"
#include "daemon/control.hpp"

#include <cstdio>

namespace vboard::cli
{

namespace
{

using nlohmann::json;

struct AddOptions {
    std::string state;
    FaultOptions fault;
};

struct Options {
    std::string state;
    bool json = false;
};

void add_add_options(Arguments line, AddOptions &options)
{
    add_state_option(line, options.state);
    add_fault_options(line, options.fault);
}

void add_list_options(Arguments line, Options &options)
{
    add_state_option(line, options.state);
    line.flag("--json", options.json, "as JSON");
}

void add_clear_options(Arguments line, Options &options)
{
    add_state_option(line, options.state);
}

// "ioctl /dev/board0 errno=EIO skip=1": what it is about first.
std::string one_line(const json &fault)
{
    const auto word = [](const json &value) {
        return value.is_string() ? value.get<std::string>()
                                 : value.dump(-1, ' ', false, json::error_handler_t::replace);
    };
    std::string line = word(fault.value("op", json("?"))) + " " + word(fault.value("device", json("any")));
    for (const auto &[name, value] : fault.items())
        if (name != "op" && name != "device")
            line += " " + name + "=" + word(value);
    return line;
}

int add(const AddOptions &options, const Call &)
{
    const Fault fault = to_fault(options.fault);
    ask_board(state_directory(options.state), {{"do", "fault-add"}, {"fault", to_json(fault)}});
    return done;
}

int list(const Options &options, const Call &)
{
    const json answer = ask_board(state_directory(options.state), {{"do", "fault-list"}});
    if (options.json)
        std::printf("%s\n", answer["faults"].dump(2).c_str());
    else
        for (const json &fault : answer["faults"])
            std::printf("%s\n", one_line(fault).c_str());
    return done;
}

int clear(const Options &options, const Call &)
{
    ask_board(state_directory(options.state), {{"do", "fault-clear"}});
    return done;
}

} // namespace

void add_faults(Arguments line, Call &call)
{
    Arguments fault = line.group("fault", "Plan faults on the board's devices");
    add_verb<AddOptions>(fault, call, "add", "Plan one: vboard fault add ioctl /dev/board0 --errno EIO",
                         add_add_options, add);
    add_verb<Options>(fault, call, "list", "List the faults that have not struck for good", add_list_options,
                      list);
    add_verb<Options>(fault, call, "clear", "Forget all planned faults", add_clear_options, clear);
}

} // namespace vboard::cli
