// SPDX-License-Identifier: Apache-2.0
#include "recipe.hpp"

#include "bytes.hpp"
#include "words.hpp"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

namespace moxctl
{

namespace
{

namespace fs = std::filesystem;
using nlohmann::json;

constexpr std::size_t largest = 16UL * 1024 * 1024;

// Where something is wrong, for the message.
struct Place {
    std::string file;
    std::string part; // "" or ", file 3"

    [[noreturn]] void fail(const std::string &what) const
    {
        throw std::runtime_error("recipe " + file + part + ": " + what);
    }
};

void check_members(const json &object, std::initializer_list<const char *> known, const Place &place)
{
    if (!object.is_object())
        place.fail("it is no JSON object");
    for (const auto &[key, value] : object.items())
        if (std::find(known.begin(), known.end(), key) == known.end())
            place.fail('"' + key + "\" is not understood");
}

std::string text_of(const json &object, const char *key, const Place &place)
{
    if (!object.contains(key))
        place.fail(std::string("\"") + key + "\" is missing");
    if (!object.at(key).is_string())
        place.fail(std::string("\"") + key + "\" is no text");
    return object.at(key).get<std::string>();
}

package::Ingredient ingredient(const json &object, const fs::path &folder, const Place &place)
{
    check_members(object, {"id", "name", "path", "text"}, place);
    if (object.contains("path") == object.contains("text"))
        place.fail("it needs either \"path\" or \"text\"");
    const std::string id = text_of(object, "id", place);
    if (const std::string wrong = check_number(id); !wrong.empty())
        place.fail("\"id\": " + wrong);
    package::Ingredient result{parse_number(id).value(), text_of(object, "name", place), {}, {}};
    if (object.contains("text")) {
        result.text = text_of(object, "text", place);
        return result;
    }
    result.path = folder / text_of(object, "path", place);
    std::error_code error;
    if (!fs::is_regular_file(result.path, error))
        place.fail('"' + result.path + "\" is no file");
    return result;
}

} // namespace

package::Recipe read_recipe(const std::string &file)
{
    const std::string text = read_file(file, largest);
    const json object = json::parse(text, nullptr, false);
    const Place whole{file, {}};
    if (text.size() > largest)
        whole.fail("it is too large");
    if (object.is_discarded())
        whole.fail("it is no JSON");
    check_members(object, {"name", "version", "files"}, whole);
    package::Recipe recipe{text_of(object, "name", whole), text_of(object, "version", whole), {}};
    if (!object.contains("files") || !object.at("files").is_array())
        whole.fail("\"files\" must be a list");
    for (const json &part : object.at("files"))
        recipe.files.push_back(ingredient(part, fs::path(file).parent_path(),
                                          {file, ", file " + std::to_string(recipe.files.size() + 1)}));
    return recipe;
}

} // namespace moxctl
