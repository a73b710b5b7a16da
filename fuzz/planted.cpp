// SPDX-License-Identifier: Apache-2.0
// A reader with a defect that lies behind a few bytes of text: a fuzzer that does not find this one would
// find no other.
#include "fuzz/frame.hpp"

namespace
{

[[gnu::noinline]] void read_with_a_defect(const std::uint8_t *data, std::size_t size)
{
    if (size < 4 || data[0] != 'M' || data[1] != 'O' || data[2] != 'X' || data[3] != '!')
        return;
    fuzz::Room<char> room(size - 4);
    std::memcpy(room.get(), data, size); // four bytes too many
    FUZZ_CHECK(room[0] != 'M');          // so that it shows without a sanitizer, too
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    read_with_a_defect(data, size);
    return 0;
}
