// SPDX-License-Identifier: Apache-2.0
#include "cli/arguments.hpp"

#include <CLI/CLI.hpp>

#include <stdexcept>
#include <utility>

namespace vboard::cli
{

Argument &Argument::required()
{
    option_->required();
    return *this;
}

Argument &Argument::shows_default()
{
    option_->capture_default_str();
    return *this;
}

Argument &Argument::under(const char *heading)
{
    option_->group(heading);
    return *this;
}

Argument &Argument::excludes(const Argument &other)
{
    option_->excludes(other.option_);
    return *this;
}

Argument Arguments::text(const char *name, std::string &into, const std::string &help)
{
    return Argument(parser_->add_option(name, into, help));
}

Argument Arguments::text(const char *name, std::optional<std::string> &into, const std::string &help)
{
    return Argument(parser_->add_option(name, into, help));
}

Argument Arguments::texts(const char *name, std::vector<std::string> &into, const std::string &help)
{
    return Argument(parser_->add_option(name, into, help)->take_all());
}

Argument Arguments::number(const char *name, unsigned &into, unsigned least, unsigned most,
                           const std::string &help)
{
    return Argument(
        parser_->add_option(name, into, help)->capture_default_str()->check(CLI::Range(least, most)));
}

Argument Arguments::flag(const char *name, bool &into, const std::string &help)
{
    return Argument(parser_->add_flag(name, into, help));
}

Arguments Arguments::group(const char *name, const char *help)
{
    CLI::App *const group = parser_->add_subcommand(name, help);
    group->require_subcommand(1);
    return Arguments(*group);
}

Arguments Arguments::verb(const char *name, const char *help, std::function<void()> given)
{
    CLI::App *const verb = parser_->add_subcommand(name, help);
    verb->callback(std::move(given));
    return Arguments(*verb);
}

Parsed parse(const Program &program, int argc, char **argv, const std::function<void(Arguments)> &add)
{
    CLI::App parser(program.description, program.name);
    parser.require_subcommand(1);
    parser.footer(program.footer);
    add(Arguments(parser));
    try {
        parser.parse(argc, argv);
        return Parsed::taken;
    } catch (const CLI::ParseError &error) {
        return parser.exit(error) == 0 ? Parsed::helped : Parsed::wrong;
    }
}

void parse(const std::string &text, const std::function<void(Arguments)> &add)
{
    CLI::App parser;
    add(Arguments(parser));
    try {
        parser.parse(text);
    } catch (const CLI::ParseError &error) {
        throw std::runtime_error(error.what());
    }
}

} // namespace vboard::cli
