// SPDX-License-Identifier: Apache-2.0
// Board profiles of any content: they are read, or refused with the line that is wrong.
#include "fuzz/frame.hpp"

#include "vboard/model/profile.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    try {
        const vboard::Profile profile =
            vboard::parse_profile(std::string(reinterpret_cast<const char *>(data), size), "profile");
        vboard::Board board(profile);
        board.reset(board.reboot_kind());
        for (const std::string &name : profile.boot_files)
            FUZZ_CHECK(!vboard::boot_file_content(profile, name).empty());
    } catch (const vboard::ProfileError &error) {
        FUZZ_CHECK(std::string(error.what()).find("profile") == 0);
    }
    return 0;
}
