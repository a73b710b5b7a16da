// SPDX-License-Identifier: Apache-2.0
#include "package/manifest.hpp"

#include "package/digest.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <set>

namespace package
{

namespace
{

constexpr int format = 1;
constexpr std::size_t digest_digits = 64;
constexpr std::size_t longest_name = 200;

using Json = nlohmann::ordered_json;

bool good_part(std::string_view part)
{
    return !part.empty() && part != "." && part != ".." &&
           std::ranges::all_of(part, [](unsigned char character) {
               return std::isalnum(character) != 0 ||
                      std::string_view("._+-").find(static_cast<char>(character)) != std::string_view::npos;
           });
}

bool good_name(std::string_view name)
{
    if (name.size() > longest_name || name == manifest_name || name == manifest_digest_name)
        return false;
    for (;;) {
        const std::size_t slash = name.find('/');
        if (!good_part(name.substr(0, slash)))
            return false;
        if (slash == std::string_view::npos)
            return true;
        name.remove_prefix(slash + 1);
    }
}

std::uint32_t parse_id(const std::string &text)
{
    std::uint32_t id = 0;
    const char *const end = text.data() + text.size();
    if (text.size() < 3 || !text.starts_with("0x"))
        throw Error("the id \"" + text + "\" is no hexadecimal number");
    const auto [stop, error] = std::from_chars(text.data() + 2, end, id, 16);
    if (error != std::errc() || stop != end)
        throw Error("the id \"" + text + "\" is no hexadecimal number of 32 bits");
    return id;
}

std::string parse_digest(const std::string &text)
{
    if (text.size() != digest_digits || text.find_first_not_of("0123456789abcdef") != std::string::npos)
        throw Error("\"" + text + "\" is no SHA-256 digest");
    return text;
}

const Json &member(const Json &object, const char *name)
{
    if (!object.is_object() || !object.contains(name))
        throw Error(std::string("\"") + name + "\" is missing");
    return object.at(name);
}

std::string text_of(const Json &object, const char *name)
{
    const Json &value = member(object, name);
    if (!value.is_string())
        throw Error(std::string("\"") + name + "\" is no text");
    return value.get<std::string>();
}

std::uint64_t number_of(const Json &object, const char *name)
{
    const Json &value = member(object, name);
    if (!value.is_number_unsigned())
        throw Error(std::string("\"") + name + "\" is no whole number from 0");
    return value.get<std::uint64_t>();
}

Manifest read_manifest(const Json &json)
{
    if (number_of(json, "format") != format)
        throw Error("it has a format that is not known");
    Manifest manifest{text_of(json, "name"), text_of(json, "version"), {}};
    const Json &files = member(json, "files");
    if (!files.is_array())
        throw Error("\"files\" is no list");
    for (const Json &file : files)
        manifest.files.push_back({parse_id(text_of(file, "id")), text_of(file, "name"),
                                  number_of(file, "size"), parse_digest(text_of(file, "sha256"))});
    check_files(manifest);
    return manifest;
}

} // namespace

Manifest parse_manifest(const std::string &text)
{
    try {
        return read_manifest(Json::parse(text));
    } catch (const Json::exception &error) {
        throw Error(std::string("the manifest is no JSON: ") + error.what());
    } catch (const Error &error) {
        throw Error(std::string("the manifest is not right: ") + error.what());
    }
}

std::string print_manifest(const Manifest &manifest)
{
    Json files = Json::array();
    for (const File &file : manifest.files)
        files.push_back({{"id", hexadecimal(file.id)},
                         {"name", file.name},
                         {"size", file.size},
                         {"sha256", file.sha256}});
    const Json json{
        {"format", format}, {"name", manifest.name}, {"version", manifest.version}, {"files", files}};
    try {
        return json.dump(2) + '\n';
    } catch (const Json::exception &) {
        throw Error("the name or the version is no UTF-8 text");
    }
}

void check_files(const Manifest &manifest)
{
    std::set<std::uint32_t> ids;
    std::set<std::string> names;
    for (const File &file : manifest.files) {
        if (!good_name(file.name))
            throw Error("\"" + file.name + "\" is no name for a file of a package");
        if (!names.insert(file.name).second)
            throw Error("two files have the name \"" + file.name + "\"");
        if (!ids.insert(file.id).second)
            throw Error("two files have the id " + hexadecimal(file.id));
    }
}

std::string hexadecimal(std::uint32_t id)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08x", id);
    return text;
}

std::string digest_line(const std::string &manifest_text)
{
    return digest_of(manifest_text) + "  " + std::string(manifest_name) + '\n';
}

} // namespace package
