// SPDX-License-Identifier: Apache-2.0
#include "package/digest.hpp"

#include <array>

namespace package
{

Digest::Digest() : context_()
{
    mbedtls_sha256_init(&context_);
    mbedtls_sha256_starts_ret(&context_, 0);
}

Digest::~Digest()
{
    mbedtls_sha256_free(&context_);
}

void Digest::add(const void *data, std::size_t size)
{
    mbedtls_sha256_update_ret(&context_, static_cast<const unsigned char *>(data), size);
}

std::string Digest::text()
{
    static constexpr char digits[] = "0123456789abcdef";
    std::array<unsigned char, 32> value{};
    mbedtls_sha256_finish_ret(&context_, value.data());
    std::string text;
    for (const unsigned char byte : value) {
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

std::string digest_of(std::string_view data)
{
    Digest digest;
    digest.add(data.data(), data.size());
    return digest.text();
}

} // namespace package
