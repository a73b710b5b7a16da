// SPDX-License-Identifier: Apache-2.0
// A browser without a screen, which loads a page and tells what became of it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace pages
{

using nlohmann::json;

// Empty: there is none on this machine, and a test has nothing to judge by.
std::string browser();

#define NEEDS_A_BROWSER                                                                                      \
    if (pages::browser().empty())                                                                            \
    GTEST_SKIP() << "there is no chromium on this machine"

constexpr int phone_width = 390;
constexpr int desk_width = 1280;

struct View {
    int width = desk_width;
    bool dark = false;
    bool script = true;
};

// A folder for pages, gone with the test.
class Folder
{
  public:
    Folder();
    ~Folder();
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;
    std::string path(const std::string &name) const;

  private:
    std::string path_ = "/var/tmp/pages-XXXXXX";
};

// Loads a copy of the page with a script at its end, a function body that returns an object; gives that, and
// beside it what every page must be held to: "errors", "first_error", "width" of the window, "scroll_width",
// "background", "ink", "figures" as they stand in the markup. Of a page without its script: its "text", and
// the number of "drawings".
json probed(const std::string &page, const View &view, const std::string &script = "return {};");

// No script error, nothing wider than the window, and colours that can be told from each other.
void expect_sound(const json &probe);

} // namespace pages
