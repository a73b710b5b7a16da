// SPDX-License-Identifier: Apache-2.0
// moxctl random: bytes of the library's entropy source.
#include "bytes.hpp"
#include "verbs.hpp"

#include <moxboot/product.h>

#include <mbedtls/base64.h>

namespace moxctl
{

namespace
{

std::string base64(Bytes bytes)
{
    std::size_t length = 0;
    mbedtls_base64_encode(nullptr, 0, &length, bytes.data(), bytes.size()); // with its terminator
    std::string text(length, '\0');
    mbedtls_base64_encode(reinterpret_cast<unsigned char *>(text.data()), text.size(), &length, bytes.data(),
                          bytes.size());
    text.resize(length);
    return text;
}

} // namespace

Outcome random_bytes(std::uint32_t count, Encoding encoding)
{
    std::vector<std::uint8_t> bytes(count);
    if (const std::uint32_t result = MOX_PdtGetInfo(MOX_PDT_RANDOM, bytes.data(), &count); result != 0)
        return failure("the source gives no random bytes (code " + std::to_string(result) +
                       "): it finds no memory for its walk");
    // In JSON there are no raw bytes.
    const bool encoded = encoding == Encoding::base64;
    const std::string text = encoded ? base64(bytes) : digits(bytes);
    const bool raw = encoding == Encoding::raw;
    return {{{"count", "Count", number(count)},
             {"encoding", "Encoding", words(encoded ? "base64" : "hex")},
             {"data", "Data", {text, raw ? std::string(bytes.begin(), bytes.end()) : text, {}}}},
            raw ? Style::raw : Style::bare};
}

} // namespace moxctl
