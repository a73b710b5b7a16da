// SPDX-License-Identifier: Apache-2.0
// A trace file of the test's own, read back with a JSON parser of others.
#pragma once

#include "platform/scratch.hpp"

#include <moxboot/platform.h>

#include <cstdlib>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace test
{

class Trace : public testing::Test
{
  protected:
    Trace()
    {
        setenv("MOXPLATFORM_TRACE", path.c_str(), 1);
    }
    ~Trace() override
    {
        unsetenv("MOXPLATFORM_TRACE");
    }
    std::vector<std::string> lines() const
    {
        std::vector<std::string> all;
        std::istringstream text(read_file(path));
        for (std::string line; std::getline(text, line);)
            all.push_back(line);
        return all;
    }
    nlohmann::json only_row() const
    {
        const auto all = lines();
        EXPECT_EQ(all.size(), 1u);
        return all.empty() ? nlohmann::json() : nlohmann::json::parse(all.front());
    }
    std::string recorded(const std::string &text)
    {
        unlink(path.c_str());
        iof_startupstep_trace(0, 1, "%s", text.c_str());
        return only_row().at("text").get<std::string>();
    }

    const Scratch scratch;
    const std::string path = scratch.path("trace");
};

} // namespace test
