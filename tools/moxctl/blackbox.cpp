// SPDX-License-Identifier: Apache-2.0
// moxctl blackbox: the records that modules keep across restarts. Getting a box gives it a size, so its size
// is looked up first: looking at a box must not cut it.
#include "bytes.hpp"
#include "library_lines.hpp"
#include "verbs.hpp"

#include <moxboot/blackbox.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

namespace moxctl
{

namespace
{

constexpr const char *directory = "/opt/moxv8/var/";
constexpr std::string_view suffix = "_blackbox";

std::string quoted(const std::string &name)
{
    return "black box \"" + name + '"';
}

// None: there is no such file.
std::optional<std::uint64_t> size_of(const std::string &file)
{
    struct stat status = {};
    if (::stat((directory + file).c_str(), &status) != 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

std::optional<std::uint64_t> box_size(const std::string &name)
{
    return size_of(name + std::string(suffix));
}

// The library tells errno in its lines only; the last one counts. 0: none was told.
int told_error(const std::string &lines)
{
    std::size_t last = 0;
    for (const std::string_view mark : {"err is ", "result is "})
        if (const std::size_t at = lines.rfind(mark); at != std::string::npos)
            last = std::max(last, at + mark.size());
    return last == 0 ? 0 : static_cast<int>(std::strtol(lines.c_str() + last, nullptr, 10));
}

std::string why(std::int32_t result, const std::string &lines)
{
    std::string words = "code " + std::to_string(result);
    if (const int error = told_error(lines); error == ENOSPC)
        words += ": the store is full";
    else if (error == EROFS || error == EACCES || error == EPERM)
        words += std::string(": the store cannot be written (") + std::strerror(error) + ")";
    else if (error != 0)
        words += std::string(": ") + std::strerror(error);
    return words;
}

class Box
{
  public:
    Box(const std::string &name, std::uint32_t size)
    {
        LibraryLines lines;
        handle_ = MOX_GetBlackbox(name.c_str(), size);
        if (handle_ < 0)
            error_ = "cannot get " + quoted(name) + " (" + why(handle_, lines.take()) + ")";
    }
    ~Box()
    {
        if (handle_ >= 0)
            MOX_PutBlackbox(handle_);
    }
    Box(const Box &) = delete;
    Box &operator=(const Box &) = delete;

    int handle() const
    {
        return handle_;
    }
    const std::string &error() const // empty: there is a handle
    {
        return error_;
    }

  private:
    int handle_ = -1;
    std::string error_;
};

// A box that is there and whose range of bytes is meant; or what is wrong with that.
struct Range {
    std::uint32_t size = 0;
    std::uint32_t offset = 0;
    std::string error;
};

Range range_of(const std::string &name, std::uint32_t offset)
{
    const auto size = box_size(name);
    if (!size)
        return {0, 0, "there is no " + quoted(name)};
    if (*size > MOX_BLACKBOX_MAX_SIZE)
        return {0, 0,
                quoted(name) + " has " + std::to_string(*size) + " bytes, more than a black box can have"};
    if (offset > *size)
        return {0, 0,
                "offset " + std::to_string(offset) + " lies beyond the end of " + quoted(name) +
                    ", which has " + std::to_string(*size) + " bytes"};
    return {static_cast<std::uint32_t>(*size), offset, {}};
}

std::vector<Fact> facts_of(const std::string &name, std::uint64_t size)
{
    return {{"name", "Name", words(name)}, {"size", "Size", number(size, "bytes")}};
}

} // namespace

Outcome list_boxes(const std::string &pattern)
{
    std::uint32_t count = 0;
    char *entries = nullptr;
    if (const std::int32_t result = MOX_QueryBlackbox(pattern.c_str(), &count, &entries); result != 0)
        return failure("cannot list black boxes (code " + std::to_string(result) + ")");
    const std::unique_ptr<char, decltype(&MOX_ReleaseBlackbox)> owned(entries, MOX_ReleaseBlackbox);
    // The library takes a directory that it cannot read for an empty one.
    if (count == 0) {
        const std::unique_ptr<DIR, int (*)(DIR *)> opened(::opendir(directory), ::closedir);
        if (!opened)
            return failure(std::string("cannot read ") + directory + ": " + std::strerror(errno));
    }
    std::vector<std::string> names;
    for (std::uint32_t i = 0; i < count; ++i)
        names.emplace_back(entries + std::size_t{i} * MOX_BLACKBOX_ENTRY_SIZE);
    std::sort(names.begin(), names.end());

    Fact boxes{"boxes", "Black boxes", {Json::array(), std::to_string(count), {}}};
    if (count != 0)
        boxes.rows.push_back({"File", "Size"});
    for (const std::string &file : names) {
        const auto size = size_of(file);
        // A file that only resembles a box has no name to ask for it by.
        const bool box = file.ends_with(suffix);
        boxes.answer.value.push_back(
            {{"file", file},
             {"name", box ? Json(file.substr(0, file.size() - suffix.size())) : Json(nullptr)},
             {"size", size ? Json(*size) : Json(nullptr)}});
        boxes.rows.push_back({file, size ? std::to_string(*size) : "unreadable"});
    }
    return {{std::move(boxes)}};
}

Outcome create_box(const std::string &name, std::uint32_t size, bool resize)
{
    const auto before = box_size(name);
    if (before && *before != size && !resize)
        return failure(quoted(name) + " is there already, with " + std::to_string(*before) +
                       " bytes; --resize gives it another size");
    const Box box(name, size);
    if (!box.error().empty())
        return failure(box.error());
    return {facts_of(name, size), Style::silent};
}

Outcome read_box(const std::string &name, const BoxRead &order)
{
    const Range range = range_of(name, order.offset);
    if (!range.error.empty())
        return failure(range.error);
    const std::uint32_t length = order.length.value_or(range.size - range.offset);
    const Box box(name, range.size);
    if (!box.error().empty())
        return failure(box.error());
    std::vector<std::uint8_t> bytes(std::size_t{length} + 1); // the library takes no null buffer
    LibraryLines lines;
    const std::int32_t count = MOX_ReadBlackbox(box.handle(), range.offset, length, bytes.data());
    if (count == MOX_BLACKBOX_ERR_RANGE)
        return failure("offset and length go beyond the end of " + quoted(name) + ", which has " +
                       std::to_string(range.size) + " bytes");
    if (count < 0)
        return failure("cannot read " + quoted(name) + " (" + why(count, lines.take()) + ")");
    const Bytes read(bytes.data(), static_cast<std::size_t>(count));

    Outcome outcome{facts_of(name, range.size), Style::raw};
    outcome.facts.push_back({"offset", "Offset", number(range.offset)});
    outcome.facts.push_back({"length", "Length", number(read.size())});
    if (!order.file.empty()) {
        write_file(order.file, read);
        outcome.facts.push_back({"file", "File", words(order.file)});
        outcome.style = Style::silent;
        return outcome;
    }
    outcome.facts.push_back({"data", "Data", {digits(read), shown(read, order.view, range.offset), {}}});
    return outcome;
}

Outcome write_box(const std::string &name, std::uint32_t offset, const std::string &content)
{
    const Range range = range_of(name, offset);
    if (!range.error.empty())
        return failure(range.error);
    if (content.size() > range.size - range.offset)
        return failure("the content does not fit: from offset " + std::to_string(offset) + " on " +
                       quoted(name) + " has room for " + std::to_string(range.size - range.offset) +
                       " bytes");
    const Box box(name, range.size);
    if (!box.error().empty())
        return failure(box.error());
    LibraryLines lines;
    const std::int32_t count =
        MOX_WriteBlackbox(box.handle(), offset, static_cast<std::uint32_t>(content.size()),
                          reinterpret_cast<const std::uint8_t *>(content.data()));
    if (count < 0)
        return failure("cannot write " + quoted(name) + " (" + why(count, lines.take()) + ")");
    Outcome outcome{facts_of(name, range.size), Style::silent};
    outcome.facts.push_back({"offset", "Offset", number(offset)});
    outcome.facts.push_back({"length", "Length", number(static_cast<std::uint64_t>(count))});
    return outcome;
}

Outcome remove_box(const std::string &name)
{
    // To the library a box that is not there, or does not go away, is removed.
    const auto before = box_size(name);
    if (!before)
        return failure("there is no " + quoted(name));
    const std::int32_t result = MOX_DestroyBlackbox(name.c_str());
    if (result != 0)
        return failure("cannot remove " + quoted(name) + " (code " + std::to_string(result) + ")");
    if (box_size(name))
        return failure("cannot remove " + quoted(name) + ": the store does not let it go");
    return {facts_of(name, *before), Style::silent};
}

} // namespace moxctl
