// SPDX-License-Identifier: Apache-2.0
#include "model/profile_reader.hpp"

#include "model/items.hpp"
#include "model/profile.hpp"
#include "model/profile_values.hpp"
#include "model/request_kind.hpp"
#include "model/reset_notice.hpp"

#include <toml++/toml.h>

#include <algorithm>
#include <limits>

namespace vboard
{

namespace
{

constexpr std::size_t longest_text = 255; // of a variable's name and value, without the terminator

// Items that are no word, and how they are given instead.
constexpr std::pair<std::uint32_t, const char *> keys_of_long_items[] = {
    {item_code::address, "the hardware address is given as \"address\""},
    {item_code::mcu_die_id, "the MCU's die id is given as \"mcu-die-id\""},
    {DRVBOOT_ITEM_RESET_REASON_RECORD, "the reset reason record is given as \"reset\""},
    {DRVBOOT_ITEM_RESET_MODE_RECORD, "the reset mode record is the driver's to write"},
};

class ProfileReader
{
  public:
    ProfileReader(const std::string &origin, Profile &profile) : origin_(origin), profile_(profile) {}

    void read(const toml::table &top)
    {
        for (const auto &[key, node] : top)
            read_key(std::string(key.str()), node);
        place_slots();
    }

  private:
    [[noreturn]] void wrong(const toml::node &where, const std::string &what) const
    {
        throw ProfileError(origin_ + ":" + std::to_string(where.source().begin.line) + ": " + what);
    }

    void read_key(const std::string &key, const toml::node &node)
    {
        if (key == "name")
            profile_.name = text(key, node);
        else if (key == "description")
            profile_.description = text(key, node);
        else if (key == "footprint")
            profile_.footprint = text(key, node);
        else if (key == "address")
            profile_.address = address(node);
        else if (key == "occupied-slots")
            occupied_ = slots(node);
        else if (key == "logic-id")
            logic_id_ = word(key, node);
        else if (key == "watchdog-period-ms")
            profile_.watchdog_period_ms = at_least_one(key, node);
        else if (key == "watchdog-threshold")
            profile_.watchdog_threshold = at_least_one(key, node);
        else if (key == "mcu-die-id")
            profile_.mcu_die_id = die_id(node);
        else if (key == "crl-module")
            profile_.crl_module = yes_or_no(key, node);
        else if (key == "tpm2")
            profile_.tpm2 = yes_or_no(key, node);
        else if (key == "cgroup")
            profile_.cgroup = yes_or_no(key, node);
        else if (key == "boot-files")
            profile_.boot_files = file_names(node);
        else if (key == "reset")
            profile_.reset_reason_record = reset(node);
        else if (key == "items")
            read_devices(node);
        else if (key == "boot-env")
            read_variables(key, node, profile_.boot_env);
        else if (key == "platform-env")
            read_variables(key, node, profile_.platform_env);
        else if (key == "memory-env")
            read_variables(key, node, profile_.memory_env);
        else
            wrong(node, "unknown key \"" + key + "\"");
    }

    std::string text(const std::string &key, const toml::node &node) const
    {
        const auto *value = node.as_string();
        if (!value)
            wrong(node, "\"" + key + "\" must be a text");
        return value->get();
    }

    std::uint32_t word(const std::string &key, const toml::node &node) const
    {
        const auto *value = node.as_integer();
        if (!value)
            wrong(node, "\"" + key + "\" must be a whole number");
        if (value->get() < 0 || value->get() > std::numeric_limits<std::uint32_t>::max())
            wrong(node, "\"" + key + "\" must be between 0 and 0xffffffff");
        return static_cast<std::uint32_t>(value->get());
    }

    bool yes_or_no(const std::string &key, const toml::node &node) const
    {
        const auto *value = node.as_boolean();
        if (!value)
            wrong(node, "\"" + key + "\" must be true or false");
        return value->get();
    }

    std::vector<std::string> file_names(const toml::node &node) const
    {
        const auto *list = node.as_array();
        if (!list)
            wrong(node, "\"boot-files\" must be a list of file names");
        std::vector<std::string> names;
        for (const toml::node &entry : *list) {
            const std::string name = text("boot-files", entry);
            if (!is_file_name(name))
                wrong(entry, "\"" + name.substr(0, name.find('\0')) +
                                 "\" cannot be the name of a file in \"/boot\"");
            if (std::ranges::find(names, name) != names.end())
                wrong(entry, "\"boot-files\" names \"" + name + "\" twice");
            names.push_back(name);
        }
        return names;
    }

    std::uint32_t at_least_one(const std::string &key, const toml::node &node) const
    {
        const std::uint32_t value = word(key, node);
        if (value == 0)
            wrong(node, "\"" + key + "\" must be at least 1");
        return value;
    }

    const toml::table &table(const std::string &key, const toml::node &node) const
    {
        const auto *value = node.as_table();
        if (!value)
            wrong(node, "\"" + key + "\" must be a table");
        return *value;
    }

    std::array<std::uint8_t, 6> address(const toml::node &node) const
    {
        std::array<std::uint8_t, 6> bytes{};
        const auto written = hex_bytes(text("address", node), ':');
        if (!written || written->size() != bytes.size())
            wrong(node, "\"address\" must be six bytes as in \"00:1b:63:84:45:e6\"");
        std::ranges::copy(*written, bytes.begin());
        return bytes;
    }

    Bytes die_id(const toml::node &node) const
    {
        const auto bytes = hex_bytes(text("mcu-die-id", node), '\0');
        if (!bytes || bytes->empty() || bytes->size() > platform::most_die_id_bytes)
            wrong(node, "\"mcu-die-id\" must be 1 to 32 bytes, two hexadecimal digits each");
        return *bytes;
    }

    // Why and when the board went down last, before it came here.
    Bytes reset(const toml::node &node) const
    {
        std::uint32_t reason = 0;
        MoxResetDate date = {};
        for (const auto &[name, value] : table("reset", node)) {
            const std::string key(name.str());
            if (key == "reason")
                reason = at_least_one(key, value);
            else if (key == "date")
                date = local_time(value);
            else
                wrong(value, "unknown key \"" + key + "\" of \"reset\"");
        }
        if (reason == 0)
            wrong(node, "\"reset\" needs a \"reason\"");
        return reason_record(reason, date);
    }

    MoxResetDate local_time(const toml::node &node) const
    {
        const auto *value = node.as_date_time();
        if (!value || value->get().offset)
            wrong(node, "\"date\" must be a date and time without a zone as in 2026-11-21T08:30:00");
        const auto &[day, time] = std::pair(value->get().date, value->get().time);
        return {day.year, day.month, day.day, time.hour, time.minute, time.second};
    }

    std::vector<std::uint32_t> slots(const toml::node &node) const
    {
        const auto *list = node.as_array();
        if (!list)
            wrong(node, "\"occupied-slots\" must be a list of slot numbers");
        std::vector<std::uint32_t> numbers;
        for (const toml::node &entry : *list) {
            numbers.push_back(word("occupied-slots", entry));
            if (numbers.back() < 1 || numbers.back() > slot_count)
                wrong(entry,
                      "there is no slot " + std::to_string(numbers.back()) + "; slots count from 1 to 32");
        }
        return numbers;
    }

    void read_devices(const toml::node &node)
    {
        for (const auto &[key, device] : table("items", node)) {
            const std::string path(key.str());
            if (path != "/dev/board0" && path != "/dev/chassis0" && slot_number(path) == 0)
                wrong(device, "no device \"" + path + "\" has items");
            for (const auto &[item, value] : table(path, device))
                profile_.items[path][code(path, std::string(item.str()), value)] =
                    word(std::string(item.str()), value);
        }
    }

    // An item goes by its name or by its code.
    std::uint32_t code(const std::string &device, const std::string &item, const toml::node &value) const
    {
        std::optional<std::uint32_t> found = item_by_name(device, item);
        if (!found)
            found = hex_word(item);
        if (!found)
            wrong(value,
                  device + " has no item \"" + item + "\"; give a name or a code as in \"0x10002987\"");
        for (const auto &[own, what] : keys_of_long_items)
            if (device == board_device && *found == own)
                wrong(value, what);
        return *found;
    }

    void read_variables(const std::string &key, const toml::node &node,
                        std::map<std::string, std::string> &into) const
    {
        for (const auto &[name, value] : table(key, node)) {
            const std::string variable(name.str());
            if (variable.empty() || variable.size() > longest_text || variable.find('=') != std::string::npos)
                wrong(value, "\"" + variable + "\" cannot be the name of a variable");
            const std::string content = text(variable, value);
            if (content.size() > longest_text || content.find('\0') != std::string::npos)
                wrong(value, "the value of \"" + variable + "\" has more than 255 characters or a zero byte");
            into[variable] = content;
        }
    }

    // Every slot answers whether a board is in it; the board's own slot also tells its logic id.
    void place_slots()
    {
        if (occupied_) {
            for (unsigned slot = 1; slot <= slot_count; ++slot) {
                const bool present = std::ranges::find(*occupied_, slot) != occupied_->end();
                profile_.items["/dev/slot" + std::to_string(slot)][item_code::present] = present ? 1 : 0;
            }
        }
        const std::uint32_t own = profile_.items["/dev/board0"][item_code::slot];
        if (logic_id_ && own >= 1 && own <= slot_count)
            profile_.items["/dev/slot" + std::to_string(own)][item_code::logic_id] = *logic_id_;
    }

    const std::string &origin_;
    Profile &profile_;
    std::optional<std::vector<std::uint32_t>> occupied_;
    std::optional<std::uint32_t> logic_id_;
};

} // namespace

void read_profile(const std::string &text, const std::string &origin, Profile &profile)
{
    try {
        ProfileReader(origin, profile).read(toml::parse(text, origin));
    } catch (const toml::parse_error &error) {
        throw ProfileError(origin + ":" + std::to_string(error.source().begin.line) + ": " +
                           std::string(error.description()));
    }
}

} // namespace vboard
