// SPDX-License-Identifier: Apache-2.0
// The measured images as the tests know them: a copy of its own, so that a slip in the library's table shows.
#pragma once

#include "trust/trust_boards.hpp"

#include <string>

namespace test
{

struct Image {
    std::uint32_t board_type, row, key_type;
    std::string keyword, hash, patch;
    std::uint32_t index;
};

inline const std::vector<Image> images = {
    {1, 0, 0, "bios_qs3520", "esbc_filehash", "esbc_usepatch", 8},
    {1, 1, 3, "Image", "kernel_filehash", "kernel_usepatch", 13},
    {1, 2, 4, "initrd", "initrd_filehash", "initrd_usepatch", 13},
    {1, 3, 5, "dtb", "dtb_filehash", "dtb_usepatch", 13},
    {2, 0, 1, "bios_qs3540", "esbc_filehash", "esbc_usepatch", 8},
    {2, 1, 0, "bios_qs3540", "bios_filehash", "bios_usepatch", 9},
    {2, 2, 6, "ospkg_qs3540", "ospkg_filehash", "ospkg_usepatch", 13},
    {3, 0, 0, "bios_qs3520", "bios_filehash", "bios_usepatch", 8},
    {3, 1, 6, "ospkg_qs3520", "ospkg_filehash", "ospkg_usepatch", 13},
};

inline const std::string type_texts[] = {"BIOS", "BIOS", "BOOTLOADER", "INITRD", "INITRD", "INITRD", "OSPKG"};

inline std::vector<Image> images_of(std::uint32_t board_type)
{
    std::vector<Image> some;
    for (const Image &image : images)
        if (image.board_type == board_type)
            some.push_back(image);
    return some;
}

// 0 for a board without.
inline std::uint32_t sml_type_of(std::uint32_t hard_type)
{
    if (among(attested_boards, hard_type))
        return 1;
    if (among(esbc_boards, hard_type))
        return 2;
    return among(measured_alone_boards, hard_type) ? 3 : 0;
}
constexpr std::uint32_t board_of_type[] = {0x9000054b, 0x90000713, 0x90020720, 0x90b2077d};

} // namespace test
