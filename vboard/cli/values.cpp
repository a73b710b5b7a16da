// SPDX-License-Identifier: Apache-2.0
// vboard get, set, getenv, setenv: items and boot variables of a running board, and the size of its
// revocation list.
#include "cli/board_options.hpp"
#include "cli/numbers.hpp"
#include "cli/verbs.hpp"
#include "daemon/control.hpp"

#include <cstdio>

namespace vboard::cli
{

namespace
{

using nlohmann::json;

constexpr const char *list_device = "/dev/module_crl"; // the one whose contents have a size

struct ItemOptions {
    std::string state, device, code, value;
    bool remove = false;
};

struct VariableOptions {
    std::string state, name;
    std::optional<std::string> value;
};

void add_get_options(Arguments line, ItemOptions &options)
{
    add_state_option(line, options.state);
    line.text("device", options.device, "device path").required();
    line.text("code", options.code, "item code; none for the size of /dev/module_crl's list");
}

void add_set_options(Arguments line, ItemOptions &options)
{
    add_state_option(line, options.state);
    line.text("device", options.device, "device path").required();
    line.text("code", options.code, "item code").required();
    const Argument value = line.text("value", options.value, "its new value");
    line.flag("--remove", options.remove, "take the item away: the driver then refuses it").excludes(value);
}

void add_getenv_options(Arguments line, VariableOptions &options)
{
    add_state_option(line, options.state);
    line.text("name", options.name, "name of the boot variable").required();
}

void add_setenv_options(Arguments line, VariableOptions &options)
{
    add_getenv_options(line, options);
    line.text("value", options.value, "its new value; without one the variable is deleted");
}

int get(const ItemOptions &options, const Call &)
{
    if (options.code.empty() && options.device != list_device)
        throw UsageError("an item code is missing");
    json request{{"do", "get"}, {"device", options.device}, {"code", nullptr}};
    if (!options.code.empty())
        request["code"] = number(options.code, "item code");
    const json answer = ask_board(state_directory(options.state), request);
    if (options.code.empty())
        std::printf("%zu bytes\n", answer.at("bytes").get<std::size_t>());
    else
        std::printf("%s\n", hex(answer.at("value").get<std::uint32_t>()).c_str());
    return done;
}

int set(const ItemOptions &options, const Call &)
{
    if (options.remove == !options.value.empty())
        throw UsageError("set needs a value, or --remove");
    json request{{"do", "set"}, {"device", options.device}, {"code", number(options.code, "item code")}};
    request["value"] = options.remove ? json(nullptr) : json(number(options.value, "value"));
    ask_board(state_directory(options.state), request);
    return done;
}

int get_variable(const VariableOptions &options, const Call &)
{
    const json answer = ask_board(state_directory(options.state), {{"do", "getenv"}, {"name", options.name}});
    std::printf("%s\n", answer.at("value").get<std::string>().c_str());
    return done;
}

int set_variable(const VariableOptions &options, const Call &)
{
    json request{{"do", "setenv"}, {"name", options.name}, {"value", nullptr}};
    if (options.value)
        request["value"] = *options.value;
    ask_board(state_directory(options.state), request);
    return done;
}

} // namespace

void add_values(Arguments line, Call &call)
{
    add_verb<ItemOptions>(line, call, "get", "Show an item of the board's driver, or the size of a list",
                          add_get_options, get);
    add_verb<ItemOptions>(line, call, "set",
                          "Set an item of the board's driver; it lasts as long as the state", add_set_options,
                          set);
    add_verb<VariableOptions>(line, call, "getenv", "Show a boot variable as the driver has it now",
                              add_getenv_options, get_variable);
    add_verb<VariableOptions>(
        line, call, "setenv",
        "Set or delete a boot variable in the driver; saving it is a program's business", add_setenv_options,
        set_variable);
}

} // namespace vboard::cli
