// SPDX-License-Identifier: Apache-2.0
// SHA-256, FIPS 180-4.
#pragma once

#include <cstddef>
#include <mbedtls/sha256.h>
#include <string>
#include <string_view>

namespace package
{

class Digest
{
  public:
    Digest();
    ~Digest();
    Digest(const Digest &) = delete;
    Digest &operator=(const Digest &) = delete;
    void add(const void *data, std::size_t size);
    // In lower-case hexadecimal. The last call.
    std::string text();

  private:
    mbedtls_sha256_context context_;
};

std::string digest_of(std::string_view data);

} // namespace package
