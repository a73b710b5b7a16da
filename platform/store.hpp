// SPDX-License-Identifier: Apache-2.0
// A file of variables: records "name=value", each ended by a zero byte. A reader sees the file before or
// after a change, never between, and so does whoever comes after a kill or a power cut. Changes of several
// processes follow one another; none is lost.
#pragma once

#include <cstddef>

namespace platform
{

constexpr size_t most_characters = 255; // of a name and of a value

// A text without terminator.
struct Text {
    const char *data;
    size_t length;
};

// Copies the value and a terminator to `value`, which has `size` bytes. False, with `value` untouched, when
// the variable is absent, its value does not fit, or the store cannot be read.
bool store_get(const char *path, const char *name, char *value, size_t size);

// False when the change did not get as far as the storage device. The folder must exist.
bool store_set(const char *path, const char *name, Text value);

} // namespace platform
