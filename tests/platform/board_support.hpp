// SPDX-License-Identifier: Apache-2.0
// The board-support libraries, opened as their callers open them, on a board in this process.
#pragma once

#include "vboard/front/inprocess.hpp"
#include "vboard/model/board.hpp"

#include <moxboot/platform.h>

#include <cstdint>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace test
{

#ifdef SANITIZED
// The address sanitizer refuses the other flag, and opens a library itself: the places where the test program
// looks do not count then.
constexpr int how_opened = RTLD_NOW;
inline const std::string folder = LIBRARIES "/";
#else
constexpr int how_opened = RTLD_NOW | RTLD_DEEPBIND;
inline const std::string folder;
#endif

constexpr const char *board0 = "/dev/board0";

class BoardSupport : public testing::Test
{
  protected:
    explicit BoardSupport(vboard::Profile profile) : board(std::move(profile))
    {
        // Loaded before the libraries are opened, as by any program that links with it.
        EXPECT_NE(iof_timer_get_freq(), 0u);
        vboard::attach(&board);
    }
    ~BoardSupport() override
    {
        vboard::detach();
        EXPECT_EQ(board.open_files(), 0u);
        for (void *library : opened_)
            dlclose(library);
    }

    template <typename Function>
    Function *function_at(const std::string &path, const char *name)
    {
        void *handle = dlopen(path.c_str(), how_opened);
        EXPECT_NE(handle, nullptr) << dlerror();
        void *found = handle == nullptr ? nullptr : dlsym(handle, name);
        EXPECT_NE(found, nullptr) << name;
        if (handle != nullptr)
            opened_.push_back(handle);
        return reinterpret_cast<Function *>(found);
    }
    template <typename Function>
    Function *function(const char *library, const char *name)
    {
        return function_at<Function>(folder + library, name);
    }
    void plan(std::uint32_t item, std::map<std::uint32_t, std::uint32_t> reply_words, int error = 0)
    {
        vboard::Fault fault;
        fault.item = item;
        fault.reply_words = std::move(reply_words);
        fault.error = error;
        board.add_fault(fault);
    }

    vboard::Board board;

  private:
    std::vector<void *> opened_;
};

} // namespace test
