// SPDX-License-Identifier: Apache-2.0
#include "implied_calls.hpp"

#include <moxboot/boot_file.h>
#include <moxboot/link.h>

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <set>
#include <string_view>

namespace bench
{

namespace
{

namespace fs = std::filesystem;

// What the rows' predicates ask, a letter a row:
//   -   nothing                        H   hard type
//   S   hard type, service type        L   hard type, logic id
//   K   hard type, service type, logic id
//   N   hard type twice, the flash on boards that may have NAND
//   F, B   hard type, the flash on boards of the Qs3520, on boards of the next BIOS
//   a...f  hard type, the package type on boards of that list
constexpr std::string_view link_asks = "HNHHFFHHHHHHHHBHHHHHH"
                                       "KSSabcHLKSSabcSdHL--"
                                       "HHSSHddccdabLLLLLLLLefHHHHHH"
                                       "HHHSSHddccdabLLSLLLLLLefHHHHH";
constexpr std::string_view boot_file_asks = "HNHHHHHHHHHFFHHHHBHHHH";

// Those that ask for the ptn mode as well.
constexpr bool asks_ptn_mode(std::size_t link_row)
{
    return link_row == 39 || (link_row >= 41 && link_row <= 68);
}

bool among(std::uint32_t hard_type, std::initializer_list<std::uint32_t> types)
{
    return std::find(types.begin(), types.end(), hard_type) != types.end();
}

bool board_is_listed(char ask)
{
    const std::uint32_t type = board().hard_type;
    switch (ask) {
    case 'N':
        return among(type, {0x90020709, 0x90020708, 0x9002071C, 0x9002071F, 0x90020751, 0x90020752,
                            0x90422022, 0x90422024, 0x90422023, 0x90422025}) ||
               board_is_listed('B');
    case 'F':
        return among(type,
                     {0x900005F3, 0x900005F4, 0x900005F5, 0x90000713, 0x9000054B, 0x90000706, 0x900005FD});
    case 'B':
        return among(type, {0x90020757, 0x90020720});
    case 'a':
        return among(type, {0x90020720});
    case 'b':
        return among(type, {0x9002202A});
    case 'c':
        return among(type, {0x9002077B, 0x90020757});
    case 'd':
        return among(type, {0x90000713});
    case 'e':
        return among(type, {0x90000758});
    case 'f':
        return among(type, {0x90020786, 0x90020787, 0x90020784, 0x90B2077D});
    default:
        return false;
    }
}

// One request to the driver.
void converse(Counts &counts, unsigned times)
{
    for (const char *function : {"open", "ioctl", "close"})
        counts[function] += times;
}

// The logic id takes the board's hard information and an item of its slot.
constexpr unsigned for_logic_id = 2;

void ask(Counts &counts, char what)
{
    if (what == '-')
        return;
    converse(counts, what == 'N' ? 2 : 1);
    if (what == 'S' || what == 'K')
        converse(counts, 1);
    if (what == 'L' || what == 'K')
        converse(counts, for_logic_id);
    if (board_is_listed(what) && (what == 'N' || what == 'F' || what == 'B'))
        converse(counts, 1);
    if (board_is_listed(what) && what >= 'a')
        ++counts["bsp_getmemenv_s"];
}

// Whether a reset has asked to keep the mode; the two modes; the mode that is now.
void ask_ptn_mode(Counts &counts)
{
    ++counts["bsp_getmemenv_s"];
    counts["GetEnv"] += 2;
    ++counts["SetEnv"];
}

class Links
{
  public:
    Links(Counts &counts, std::string install_root) : counts_(counts), root_(std::move(install_root)) {}

    template <typename Row>
    bool has_source(const Row &row)
    {
        ++counts_["access"];
        const fs::path folder = row.source_directory;
        return fs::exists((folder.is_absolute() ? folder : root_ / folder) / row.source_file);
    }
    template <typename Row>
    bool &is_there(const Row &row)
    {
        const fs::path path = (root_ / row.destination_directory / row.destination_file).lexically_normal();
        return there_.try_emplace(path, fs::is_symlink(path)).first->second;
    }
    // A boot file's link is made anew, any other one is kept.
    void by_predicate(const LinkFileDesc &row)
    {
        if (!has_source(row))
            return;
        const auto of_boot_file = [&](const BootFileDesc &file) {
            return std::string_view(row.source_file).starts_with(file.file_name);
        };
        if (std::any_of(std::begin(g_bootFileDesc), std::end(g_bootFileDesc), of_boot_file)) {
            ++counts_["unlink"];
            is_there(row) = false;
        }
        ++counts_["readlink"];
        if (!is_there(row))
            ++counts_["symlink"];
        is_there(row) = true;
    }
    // Whatever is there makes way.
    void by_logic_id(const LinkEncapFileDesc &row)
    {
        ++counts_["readlink"];
        if (!has_source(row))
            return;
        ++counts_[is_there(row) ? "unlink" : "access"];
        ++counts_["symlink"];
        is_there(row) = true;
    }

  private:
    Counts &counts_;
    fs::path root_;
    std::map<fs::path, bool> there_;
};

} // namespace

Counts implied_by_links(const std::string &install_root)
{
    static_assert(link_asks.size() == DRVBOOT_LINK_FILES);
    Counts counts;
    Links links(counts, install_root);
    for (std::size_t i = 0; i < DRVBOOT_LINK_FILES; ++i) {
        ask(counts, link_asks[i]);
        if (asks_ptn_mode(i))
            ask_ptn_mode(counts);
        std::uint8_t applies = 1;
        if (g_linkFileDesc[i].predicate != nullptr)
            g_linkFileDesc[i].predicate(&applies, 0);
        if (applies != 0)
            links.by_predicate(g_linkFileDesc[i]);
    }
    converse(counts, for_logic_id);
    for (const LinkEncapFileDesc &row : g_linkEncapFileDesc)
        if (row.logic_id == board().logic_id)
            links.by_logic_id(row);
    return counts;
}

Counts implied_by_extraction()
{
    static_assert(boot_file_asks.size() == DRVBOOT_BOOT_FILES);
    Counts counts;
    for (std::size_t i = 0; i < DRVBOOT_BOOT_FILES; ++i) {
        ask(counts, boot_file_asks[i]);
        std::uint8_t needed = 0;
        g_bootFileDesc[i].predicate(&needed, 0);
        if (needed != 0)
            ++counts["CCPKG_ExtractFileFromCCExt"];
    }
    return counts;
}

} // namespace bench
