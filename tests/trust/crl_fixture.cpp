// SPDX-License-Identifier: Apache-2.0
#include "trust/crl_fixture.hpp"

#include "support/from_library.hpp"
#include "support/front_library.hpp"
#include "trust/crl_driver.hpp"

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <unistd.h>

std::uint32_t test_crl_patch_write(const void *list, std::uint32_t length)
{
    return test::on_patch_write(list, length);
}

namespace test
{

CrlModule crl_module;
CrlDriver crl_driver;
std::function<std::uint32_t(const void *, std::uint32_t)> on_patch_write;

namespace
{

// As any other call of the library; then the module's path leads to the file behind it.
std::optional<vboard::LibcAnswer> on_call(const vboard::LibcCall &call)
{
    if (auto planned = on_any_call(call))
        return planned;
    if (!from_library(call.caller) || std::strcmp(call.function, "open") != 0 ||
        std::strcmp(call.path, module_path) != 0)
        return std::nullopt;
    const int flags = static_cast<int>(call.size);
    const bool writes = (flags & O_ACCMODE) == O_WRONLY;
    const int error = writes ? crl_module.write_error : crl_module.read_error;
    if (error != 0)
        return vboard::LibcAnswer{-1, error};
    return vboard::LibcAnswer{open(module_file, writes ? flags | O_TRUNC : flags), std::nullopt};
}

} // namespace

std::string a_list(std::size_t size, unsigned salt)
{
    std::string list;
    for (std::size_t i = 0; i < size; ++i)
        list += static_cast<char>((i * i / 7 + i * 31 + salt) % 251);
    return list;
}

std::string content(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return "no file " + path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void put_file(const std::string &path, const std::string &list)
{
    std::ofstream(path, std::ios::binary) << list;
}

Said crl_log(const std::vector<std::string> &lines)
{
    Said said;
    for (const std::string &line : lines)
        said = said + message(1, line);
    return said;
}

std::vector<std::string> read_back_lines(std::size_t size)
{
    return {
        "[bootdrv_CRL]GetCrlFromDev start \n",
        text("[bootdrv_CRL]read success! len = %d\n", static_cast<int>(std::min<std::size_t>(size, 1024))),
        "[bootdrv_CRL]GetCrlFromDev end \n"};
}

std::vector<std::string> driver_lines()
{
    return {"[bootdrv_CRL]write crl to drv success.", "[bootdrv_CRL]Write2Drv end",
            "[bootdrv_CRL]SupportSetCrlFile2Drv success."};
}

void CrlTest::SetUp()
{
    BoardTest::SetUp();
    for (const char *path : {module_file, copy_path})
        unlink(path);
    put_file(module_file, "");
    crl_module = {};
    crl_driver = {};
    on_patch_write = [](const void *list, std::uint32_t length) {
        EXPECT_TRUE(loaded(secure_driver));
        crl_driver.lists.emplace_back(static_cast<const char *>(list), length);
        return crl_driver.answer;
    };
    copy_to_front(secure_driver, CRL_DRIVER_LIBRARY);
    vboard::set_libc_hook(on_call);
}

void CrlTest::TearDown()
{
    vboard::set_libc_hook(on_any_call);
    remove_from_front(secure_driver);
    EXPECT_FALSE(loaded(secure_driver)) << "the library is still open";
    EXPECT_TRUE(operations().empty()) << "the board was asked";
    BoardTest::TearDown();
}

std::vector<std::string> CrlTest::order(const std::vector<std::string> &functions)
{
    std::vector<std::string> lines;
    for (const Call &call : calls())
        if (std::find(functions.begin(), functions.end(), call.function) != functions.end())
            lines.push_back(call.path.empty() || call.function == "syslog" ? call.function
                                                                           : call.function + " " + call.path);
    return lines;
}

} // namespace test
