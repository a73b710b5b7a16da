// SPDX-License-Identifier: Apache-2.0
// Programs on a board, through the preload shim: native ones, and ARM ones under the emulator where both can
// be built.
#pragma once

#include "vboard_runner.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#ifdef ARM_CLIENT
#define CLIENT_KINDS testing::Values("native", "arm")
#else
#define CLIENT_KINDS testing::Values("native")
#define ARM_CLIENT ""
#define ARM_OPENER ""
#define ARM_SHIM ""
#endif

namespace front
{

class Client : public testing::TestWithParam<const char *>
{
  protected:
    static bool arm()
    {
        return std::string(GetParam()) == "arm";
    }
    static std::string program()
    {
        return arm() ? ARM_CLIENT : client_binary();
    }

    static Outcome run(const Words &scenario, const Words &options = {})
    {
        if (arm()) {
            setenv("VBOARD_ARM_SHIM", ARM_SHIM, 1);
            setenv("CLIENT_EMULATOR", "qemu-arm", 1);
        } else {
            unsetenv("CLIENT_EMULATOR");
        }
        Words words{"run", "--show-log"};
        words.insert(words.end(), options.begin(), options.end());
        words.insert(words.end(), {"--", program()});
        words.insert(words.end(), scenario.begin(), scenario.end());
        return call_vboard(words);
    }

    static void expect_done(const Outcome &outcome)
    {
        EXPECT_EQ(outcome.status, 0) << outcome.err.substr(0, 2000);
        EXPECT_THAT(outcome.out, testing::HasSubstr("done")) << outcome.err.substr(0, 2000);
    }
};

inline std::string client_kind(const testing::TestParamInfo<const char *> &kind)
{
    return kind.param;
}

} // namespace front
