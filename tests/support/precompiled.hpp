// SPDX-License-Identifier: Apache-2.0
// What nearly every test includes, compiled once: the matchers' header alone takes longer than most tests.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>
