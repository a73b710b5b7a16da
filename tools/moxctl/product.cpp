// SPDX-License-Identifier: Apache-2.0
// moxctl product: every item type of the product information, asked as any caller does.
#include "bytes.hpp"
#include "verbs.hpp"

#include <moxboot/product.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <utility>

namespace moxctl
{

namespace
{

constexpr std::uint32_t no_fact = 2; // of that type, or none on this board
constexpr std::uint32_t room = 64;   // for the longest name

struct Fetched {
    std::uint32_t result = 0;
    std::array<std::uint8_t, room> bytes{};
};

Fetched fetch(std::uint32_t type, std::uint32_t length)
{
    Fetched fetched;
    fetched.result = MOX_PdtGetInfo(type, fetched.bytes.data(), &length);
    return fetched;
}

template <typename Value>
Value value_of(const Fetched &fetched)
{
    Value value{};
    std::memcpy(&value, fetched.bytes.data(), sizeof value);
    return value;
}

Answer sample(const Fetched &fetched)
{
    constexpr std::size_t bytes = 8;
    Answer answer = words(digits(Bytes(fetched.bytes).first(bytes)));
    answer.meaning = "another 8 bytes each time";
    return answer;
}

Answer flag(const Fetched &fetched)
{
    return yes_or_no(value_of<std::uint32_t>(fetched) != 0);
}

Answer plain(const Fetched &fetched)
{
    return number(value_of<std::uint32_t>(fetched));
}

Answer kibibytes(const Fetched &fetched)
{
    return number(value_of<std::uint32_t>(fetched), "KiB");
}

Answer seconds(const Fetched &fetched)
{
    return number(value_of<std::uint32_t>(fetched), "s");
}

Answer text(const Fetched &fetched)
{
    const auto end = std::find(fetched.bytes.begin(), fetched.bytes.end(), 0);
    return words(std::string(fetched.bytes.begin(), end));
}

Answer bits(const Fetched &fetched)
{
    const auto entropy = value_of<double>(fetched);
    char shown[32];
    std::snprintf(shown, sizeof shown, "%g", entropy);
    return {entropy, shown, "of each bit, as declared"};
}

struct Item {
    std::uint32_t type;
    const char *key;
    const char *name;
    Answer (*read)(const Fetched &fetched);
    const char *failure;
};
constexpr const char *unknown_product = "an unknown product, or the chassis does not tell";
constexpr const char *no_hard_type = "the hard type could not be read";
constexpr const char *never = "the library has no reason to refuse it";
constexpr Item items[] = {
    {MOX_PDT_RANDOM, "random", "Random bytes", sample, "no memory for the source's walk"},
    {MOX_PDT_DYNAMIC_CPU_SWITCH, "dynamic_cpu_switch", "CPUs switched at run time", flag, never},
    {MOX_PDT_BACKUP_PROTECT, "backup_protect", "Backup protection", plain, never},
    {MOX_PDT_BACKUP_RESERVE_SPACE, "backup_reserve_space", "Space kept for the backup", kibibytes,
     no_hard_type},
    {MOX_PDT_BACKUP_PACKAGE_START, "backup_package_start", "Backup package starts after", seconds,
     no_hard_type},
    {MOX_PDT_CHECK_PERIOD, "check_period", "Check period", seconds, never},
    {MOX_PDT_PRODUCT_NAME, "product_name", "Product name", text, unknown_product},
    {MOX_PDT_PRODUCT_SERVICE_TYPE, "product_type", "Product type", text, unknown_product},
    {MOX_PDT_LOCATION_MONITOR_IP, "fixed_monitor_address", "Location monitor with fixed address", flag,
     never},
    {MOX_PDT_RANDOM_MIN_ENTROPY, "min_entropy", "Min-entropy", bits, never},
};

Answer asked(const Item &item)
{
    const Fetched fetched = fetch(item.type, room);
    if (fetched.result == no_fact)
        return not_applicable("only on a board with a single backup");
    return fetched.result == 0 ? item.read(fetched) : unreadable(fetched.result, item.failure);
}

bool is_listed(std::uint32_t type)
{
    return std::any_of(std::begin(items), std::end(items),
                       [&](const Item &item) { return item.type == type; });
}

// Types that the library knows, and has nothing to say of.
Fact types_without_fact()
{
    Fact fact{"types_without_fact", "Types without a fact", {Json::array(), {}, {}}};
    for (std::uint32_t type = 0; type <= MOX_PDT_LAST; ++type) {
        if (is_listed(type) || fetch(type, room).result != no_fact)
            continue;
        fact.answer.value.push_back(type);
        fact.answer.text += (fact.answer.text.empty() ? "" : ", ") + std::to_string(type);
    }
    return fact;
}

} // namespace

Outcome product()
{
    Outcome outcome;
    for (const Item &item : items) {
        Fact fact{item.key, item.name, asked(item)};
        fact.name = std::to_string(item.type) + "  " + fact.name;
        outcome.facts.push_back(std::move(fact));
    }
    outcome.facts.push_back(types_without_fact());
    return outcome;
}

} // namespace moxctl
