// SPDX-License-Identifier: Apache-2.0
// A board with a TPM, and a board-support library of the test's choice that is asked for it.
#pragma once

#include "support/board_test.hpp"
#include "support/direct_log.hpp"
#include "trust/library_use.hpp"
#include "trust/tpm_library.hpp"

#include <filesystem>
#include <unistd.h>

namespace test
{

const std::string ask_type = "get /dev/board0 0x8000001";
const std::string type_unread = "Not succeed to get board hardtype,ret=0x2710.\n";
const char *const tpm_device = "/dev/tpm0";
const char *const platform_variables = "/opt/moxv8/var/platform.env";
constexpr std::uint32_t cannot_ask = 0xFFFFFFF2;

// What a process says once only: kept for the process, as the tests may share one.
struct SaidAlready {
    bool active = false;
    bool online = false;
    bool tpm2 = false;
};
inline SaidAlready said_already;

inline Said once(bool &said, const Said &line)
{
    if (said)
        return nothing();
    said = true;
    return line;
}
inline Said active_told(std::uint32_t result, std::uint32_t status)
{
    return once(said_already.active,
                information(text("[drv_boot]get_tpm_active_status ret:%u, status:%u, pid:%d\n", result,
                                 status, getpid())));
}
inline Said online_told(std::uint32_t result, std::uint32_t status)
{
    return once(said_already.online,
                information(text("[drv_boot]get_tpm_online_status pid:%d, ret:%u, status:%s\n", getpid(),
                                 result, status == 0 ? "PRESENT" : "NO PRESENT")));
}
inline Said no_tpm2_told()
{
    return once(said_already.tpm2, logged_directly(text("pid:%d board is not tpm2.0\n", getpid())));
}
inline Said not_ready_told()
{
    return failure(type_unread) + failure(text("[tpm ready]pid:%d get hard type is wrong\n", getpid()));
}

class TpmTest : public BoardTest
{
  protected:
    unsigned asked = 0;

    void TearDown() override
    {
        remove_from_front(drv_basic);
        // A test that shares its process shares its files, too.
        std::filesystem::remove(tpm_device);
        std::filesystem::remove(platform_variables);
        EXPECT_FALSE(loaded(drv_basic)) << "the library is still open";
        BoardTest::TearDown();
    }
    Said heard(const std::function<void()> &action)
    {
        forget_calls();
        forget_journal();
        asked = 0;
        return with_direct_lines(during(action));
    }
    // The library has this function, which gives these.
    void give(const std::string &function, std::uint32_t result, std::uint32_t status)
    {
        copy_to_front(drv_basic, library_with(function));
        on_tpm_status = [=, this](const std::string &called, std::uint32_t which, std::uint32_t *stored) {
            ++asked;
            EXPECT_EQ(called, function);
            EXPECT_EQ(which, 0xffffffffu);
            EXPECT_TRUE(loaded(drv_basic));
            *stored = status;
            return result;
        };
    }
    // It has the other function alone.
    static void give_another(const std::string &function)
    {
        copy_to_front(drv_basic,
                      library_with(function == active_function ? online_function : active_function));
    }
    void expect_asked() const
    {
        EXPECT_EQ(asked, 1u);
        expect_one_use(drv_basic, 10, true, true);
    }
    void expect_nobody_asked() const
    {
        EXPECT_EQ(asked, 0u);
        EXPECT_TRUE(calls("dlopen").empty());
        EXPECT_TRUE(calls("dlclose").empty());
    }
};

} // namespace test
