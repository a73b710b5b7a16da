// SPDX-License-Identifier: Apache-2.0
// The variables that the work mode hangs on.
#pragma once

#include "support/board_test.hpp"

#include <moxboot/platform.h>

#include <array>
#include <cstring>
#include <optional>

namespace test
{

class WorkModeTest : public BoardTest
{
  protected:
    static void set(const char *name, const std::string &value)
    {
        ASSERT_EQ(SetEnv(name, value.c_str()), 0u);
    }
    static std::optional<std::string> get(const char *name)
    {
        std::array<char, 256> value = {};
        if (GetEnv(name, value.data()) != 0)
            return std::nullopt;
        return value.data();
    }
    static void set_memory(const char *name, const std::string &value)
    {
        ASSERT_EQ(bsp_setenv_s(name, value.c_str(), static_cast<std::uint32_t>(value.size()) + 1), 0u);
    }
    // The current mode is kept after the last reset, or the next one holds.
    static void keep_mode(bool keep)
    {
        set_memory("lcs_reset_flag", keep ? "0x55aa" : "0");
    }

    const Said no_flag = information("get next work lcs_reset_flag is null.\n");
    const Said no_next = information("get next work mode env nextworkmode.\n");
    static Said is_ptn_iot(const char *variable)
    {
        return information(text("get next work mode env %s is ptn_iot\n", variable));
    }
};

// Texts of "lcs_reset_flag", and whether they ask for the current mode to be kept.
inline const std::pair<std::string, bool> reset_flags[] = {
    {"0x55aa", true},
    {"0x55aa!", true},
    {"0x55aa" + std::string(29, 'x'), true}, // as long as the library has room for
    {"0x55a", false},
    {"0x55ab", false},
    {"0x55AA", false},
    {"55aa", false},
    {" 0x55aa", false},
    {"", false},
    {"0", false},
};

} // namespace test
