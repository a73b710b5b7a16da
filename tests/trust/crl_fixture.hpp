// SPDX-License-Identifier: Apache-2.0
// A board with a CRL module, or without, and a secure driver that keeps what it is handed.
#pragma once

#include "support/board_test.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace test
{

// The CRL module: a file stands behind "/dev/module_crl" while the library opens it. A write takes the place
// of the list before it.
struct CrlModule {
    int write_error = 0; // with which opening it fails
    int read_error = 0;
};
extern CrlModule crl_module;

// What the secure driver was handed, and what it answers.
struct CrlDriver {
    std::vector<std::string> lists;
    std::uint32_t answer = 0;
};
extern CrlDriver crl_driver;

constexpr const char *module_path = "/dev/module_crl";
constexpr const char *module_file = "/tmp/behind_module_crl";
constexpr const char *copy_path = "/tmp/crl_for_ko.crl";

// Bytes without a pattern of a power of two.
std::string a_list(std::size_t size, unsigned salt = 0);
std::string content(const std::string &path);
void put_file(const std::string &path, const std::string &content);

// Lines of the log, which go nowhere else.
Said crl_log(const std::vector<std::string> &lines);
inline std::vector<std::string> operator+(std::vector<std::string> lines,
                                          const std::vector<std::string> &more)
{
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}
// What a read-back of a list of this size says, and the delivery of a copy.
std::vector<std::string> read_back_lines(std::size_t size);
std::vector<std::string> driver_lines();

class CrlTest : public BoardTest
{
  protected:
    void SetUp() override;
    void TearDown() override;

    void no_module(int error)
    {
        crl_module = {error, error};
    }
    // The functions that were called, of these, in order; with the paths that they had.
    static std::vector<std::string> order(const std::vector<std::string> &functions);
};

} // namespace test
