// SPDX-License-Identifier: Apache-2.0
// The file names of measured images.
#include "base/report.hpp"
#include "base/result.hpp"
#include "board/family.hpp"
#include "trust/measurement_board.hpp"

#include <moxboot/measurement.h>
#include <moxboot/platform.h>

#include <cstring>
#include <dirent.h>

using namespace moxboot;

namespace
{

constexpr const char *boot = "/boot";
constexpr const char *hidden = "priv"; // part of the names that are passed over
constexpr size_t esbc_name_length = 19;
constexpr size_t esbc_name_room = 128;

// Null for a board without.
const char *esbc_name(uint32_t hard_type)
{
    switch (measured_board(hard_type)) {
    case measured_by_attestation:
        return "esbc_qs3520_mpu.bin";
    case measured_with_esbc:
        return "esbc_qs3540_mpu.bin";
    default:
        return nullptr;
    }
}

class Directory
{
  public:
    explicit Directory(const char *path) : stream_(opendir(path)) {}
    Directory(const Directory &) = delete;
    Directory &operator=(const Directory &) = delete;
    ~Directory()
    {
        if (stream_ != nullptr)
            closedir(stream_);
    }
    bool valid() const
    {
        return stream_ != nullptr;
    }
    // Null at the end.
    const char *next()
    {
        const dirent *entry = readdir(stream_);
        return entry != nullptr ? entry->d_name : nullptr;
    }

  private:
    DIR *stream_;
};

enum class Found { name, too_long, nothing, hidden_at_the_end };

Found find_file(Directory *directory, const char *keyword, char *out, uint32_t size)
{
    Found at_the_end = Found::nothing;
    while (const char *name = directory->next()) {
        at_the_end = Found::nothing;
        if (strstr(name, keyword) == nullptr)
            continue;
        const size_t length = strlen(name);
        if (length >= size)
            return Found::too_long;
        if (strstr(name, hidden) != nullptr) {
            at_the_end = Found::hidden_at_the_end;
            continue;
        }
        strncpy_s(out, size, name, length);
        out[size - 1] = '\0';
        return Found::name;
    }
    return at_the_end;
}

} // namespace

uint32_t TPMAgentGetEsbcName(char *out)
{
    uint32_t hard_type = 0;
    if (!read_hard_type("[drv_boot]GetEsbcName get board type unsuccessful!\n", &hard_type))
        return failed;
    const char *name = esbc_name(hard_type);
    if (name == nullptr)
        return ok;
    int copied = memcpy_s(out, esbc_name_room, name, esbc_name_length);
    if (copied != 0) {
        REPORT_FAILURE("[drv_boot]Memory copy failed, return check code=%d\n\n", copied);
        return failed;
    }
    return ok;
}

uint32_t TPMAgent_GetfileName(const char *keyword, char *out, uint32_t size)
{
    if (keyword == nullptr || out == nullptr) {
        REPORT_FAILURE("pcKeyWord or pcFilename is null \n\n");
        return failed;
    }
    Found found;
    {
        Directory directory(boot);
        if (!directory.valid()) {
            REPORT_FAILURE("pstDir is null \n\n");
            return failed;
        }
        found = find_file(&directory, keyword, out, size);
        if (found == Found::nothing)
            REPORT_FAILURE("pstr is null \n\n"); // said before the directory is closed
    }
    if (found == Found::too_long)
        REPORT_FAILURE("d_name length is longer than fileNameLen \n\n");
    return found == Found::name || found == Found::hidden_at_the_end ? ok : failed;
}
