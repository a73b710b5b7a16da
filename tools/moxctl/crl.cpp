// SPDX-License-Identifier: Apache-2.0
// moxctl crl: the certificate revocation list, delivered and looked at.
#include "bytes.hpp"
#include "library_lines.hpp"
#include "verbs.hpp"

#include <moxboot/crl.h>

#include <mbedtls/md.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <stdexcept>
#include <unistd.h>

namespace moxctl
{

namespace
{

constexpr const char *module = "/dev/module_crl";
constexpr const char *driver = "libdrv_secure.so";
constexpr std::size_t most = 0x1000000; // more than any list has

// The last line that the library said, without what stands in front of each.
std::string last_line(const std::string &lines)
{
    constexpr std::string_view mark = "[bootdrv_CRL]";
    const std::size_t at = lines.rfind(mark);
    if (at == std::string::npos)
        return {};
    const std::size_t start = at + mark.size();
    return lines.substr(start, lines.find_first_of("\r\n", start) - start);
}

std::string sha256(const std::string &content)
{
    std::array<std::uint8_t, 32> sum{};
    (void)mbedtls_md(mbedtls_md_info_from_type(MBEDTLS_MD_SHA256),
                     reinterpret_cast<const unsigned char *>(content.data()), content.size(), sum.data());
    return digits(sum);
}

// A list: in JSON its size and sum, so that it can be compared with a file.
Answer list_in(const std::string &file)
{
    try {
        const std::string content = read_file(file, most);
        if (content.empty())
            return {{{"size", 0}, {"sha256", nullptr}}, "empty", "no list was delivered yet"};
        const std::string sum = sha256(content);
        return {{{"size", content.size()}, {"sha256", sum}},
                std::to_string(content.size()) + " bytes",
                "SHA-256 " + sum};
    } catch (const std::runtime_error &error) {
        return unreadable(static_cast<std::uint32_t>(errno), error.what());
    }
}

Answer held_by_module()
{
    if (::access(module, F_OK) != 0)
        return not_applicable(std::string("the board has no ") + module);
    return list_in(module);
}

// The platform's own library keeps its list to itself; the stand-in tells where it lies.
Answer held_by_driver()
{
    void *const library = ::dlopen(driver, RTLD_NOW);
    if (library == nullptr)
        return unreadable(0, std::string(driver) + " cannot be loaded");
    const auto path = reinterpret_cast<const char *(*)()>(::dlsym(library, "moxplatform_crl_path"));
    Answer answer = not_applicable(std::string(driver) + " does not show it");
    if (path != nullptr) {
        const std::string file = path();
        answer = ::access(file.c_str(), F_OK) == 0 ? list_in(file)
                                                   : Answer{nullptr, "none", "no list was delivered yet"};
    }
    ::dlclose(library);
    return answer;
}

} // namespace

Outcome write_crl(const std::string &file)
{
    LibraryLines lines;
    const std::uint32_t result = MOX_WirteCrl(file.c_str());
    const std::string said = lines.take();
    if (result != 0)
        return failure("the list was not delivered (code " + hex_text(result) + "): " + last_line(said));
    const bool no_module = said.find("unsupport module_crl") != std::string::npos;
    const bool taken = said.find("write crl to drv success") != std::string::npos;
    Outcome outcome{{{"file", "File", words(file)},
                     {"module", "CRL module", yes_or_no(!no_module, "took the list")},
                     {"secure_driver", "Secure driver", yes_or_no(taken, "took the list")}},
                    Style::silent};
    // The library calls it delivered all the same: a board without the module needs no list, and the secure
    // driver's part is by the way. Who delivers one wants to know.
    if (no_module)
        outcome.error = taken ? "the board has no CRL module; the secure driver got an older list once more"
                              : "the board has no CRL module, and the secure driver got no list";
    else if (!taken)
        outcome.error = "the CRL module took the list, the secure driver did not";
    return outcome;
}

Outcome show_crl()
{
    return {
        {{"module", "CRL module", held_by_module()}, {"secure_driver", "Secure driver", held_by_driver()}}};
}

} // namespace moxctl
