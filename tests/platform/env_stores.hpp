// SPDX-License-Identifier: Apache-2.0
// Both environments behind one face, on files of the test's own.
#pragma once

#include "platform/scratch.hpp"

#include <moxboot/platform.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <optional>
#include <ostream>
#include <string>

namespace test
{

using namespace std::string_literals;

struct Store {
    const char *name;
    const char *variable; // of the process, names the file
    uint32_t (*get)(const char *name, char *value);
    uint32_t (*set)(const char *name, const char *value);
};

inline std::ostream &operator<<(std::ostream &out, const Store &store)
{
    return out << store.name;
}

inline const Store lasting{"Platform", "MOXPLATFORM_ENV", GetEnv, SetEnv};
inline const Store memory{
    "Memory", "MOXPLATFORM_MEMENV",
    [](const char *name, char *value) { return bsp_getmemenv_s(name, value, 256); },
    [](const char *name, const char *value) {
        return bsp_setenv_s(name, value, value == nullptr ? 1 : static_cast<uint32_t>(strlen(value) + 1));
    }};

// A test of what holds for both.
class Stores : public testing::TestWithParam<Store>
{
  protected:
    explicit Stores(const Store &store = GetParam()) : store_(store)
    {
        setenv(store_.variable, path.c_str(), 1);
    }
    ~Stores() override
    {
        unsetenv(store_.variable);
    }
    // Nothing for a variable that cannot be read; a refused read must leave the buffer as it was.
    std::optional<std::string> get(const std::string &name) const
    {
        std::array<char, 260> value;
        value.fill('#');
        if (store_.get(name.c_str(), value.data()) != 0) {
            for (const char byte : value)
                EXPECT_EQ(byte, '#') << "a refused read wrote to the buffer";
            return std::nullopt;
        }
        for (size_t i = 256; i < value.size(); ++i)
            EXPECT_EQ(value[i], '#') << "more than 256 bytes were written";
        return value.data();
    }
    bool set(const std::string &name, const std::string &value) const
    {
        return store_.set(name.c_str(), value.c_str()) == 0;
    }

    const Scratch scratch;
    const std::string path = scratch.path("store");

  private:
    const Store store_;
};

#define BOTH_STORES(suite)                                                                                   \
    INSTANTIATE_TEST_SUITE_P(Both, suite, testing::Values(test::lasting, test::memory),                      \
                             [](const auto &each) { return std::string(each.param.name); })

} // namespace test
