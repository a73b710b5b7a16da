// SPDX-License-Identifier: Apache-2.0
// A library that tells itself from others of its name.

extern "C" int nb_is_sec_boot_en();
int nb_is_sec_boot_en()
{
    return 4711;
}
