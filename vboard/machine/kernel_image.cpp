// SPDX-License-Identifier: Apache-2.0
#include "machine/kernel_image.hpp"

#include <archive.h>
#include <archive_entry.h>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <zlib.h>

namespace vboard::machine
{

namespace
{

// What a zImage says of itself (Linux, arch/arm/boot/compressed: head.S and vmlinux.lds.S): marks at fixed
// places, then a table that begins with its length in words, its name, where the unpacked size stands, and
// where above a boundary of memory the kernel runs.
struct Mark {
    std::size_t at;
    std::uint32_t value;
};
constexpr std::array marks{Mark{0x24, 0x016f2818}, Mark{0x30, 0x04030201}, Mark{0x34, 0x45454545}};
constexpr std::size_t table_place = 0x38;
constexpr std::uint32_t table_name = 0x5a534c4b;

constexpr std::string_view xz_begin("\xfd"
                                    "7zXZ\0",
                                    6);
constexpr std::size_t largest_kernel = 64U << 20;

std::optional<std::uint32_t> word(const std::string &bytes, std::size_t at)
{
    std::uint32_t value = 0;
    if (at > bytes.size() || bytes.size() - at < sizeof value)
        return {};
    std::memcpy(&value, bytes.data() + at, sizeof value);
    return value;
}

struct Layout {
    std::uint32_t end;    // of what is packed; its unpacked size follows
    std::uint32_t size;   // of the kernel, unpacked
    std::uint32_t offset; // where it runs, above the start of memory
};

std::optional<Layout> layout_of(const std::string &zimage)
{
    for (const Mark &mark : marks)
        if (word(zimage, mark.at) != mark.value)
            return {};
    const std::size_t table = word(zimage, table_place).value_or(0);
    if (word(zimage, table + 4) != table_name)
        return {};
    const std::uint32_t end = word(zimage, table + 8).value_or(UINT32_MAX);
    const auto size = word(zimage, end);
    const auto offset = word(zimage, table + 16);
    if (!size || !offset || *size == 0 || *size > largest_kernel)
        return {};
    return Layout{end, *size, *offset};
}

// The unpacker's own text names the format, too; only the real beginning can be read.
std::string unpacked(const std::string &zimage, const Layout &layout)
{
    const std::string_view packed = std::string_view(zimage).substr(0, layout.end);
    const std::size_t size = layout.size;
    for (std::size_t at = packed.find(xz_begin); at != std::string_view::npos;
         at = packed.find(xz_begin, at + 1)) {
        const std::unique_ptr<archive, int (*)(archive *)> reader(archive_read_new(), archive_read_free);
        archive_read_support_filter_xz(reader.get());
        archive_read_support_format_raw(reader.get());
        archive_entry *entry = nullptr;
        if (archive_read_open_memory(reader.get(), packed.data() + at, packed.size() - at) != ARCHIVE_OK ||
            archive_read_next_header(reader.get(), &entry) != ARCHIVE_OK)
            continue;
        std::string kernel(size, '\0');
        std::size_t got = 0;
        while (got < size) {
            const la_ssize_t count = archive_read_data(reader.get(), kernel.data() + got, size - got);
            if (count <= 0)
                break;
            got += static_cast<std::size_t>(count);
        }
        if (got == size)
            return kernel;
    }
    return {};
}

std::string gzipped(std::string &content)
{
    z_stream stream{};
    constexpr int with_gzip_header = 15 + 16;
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, with_gzip_header, 8, Z_DEFAULT_STRATEGY) !=
        Z_OK)
        return {};
    std::string packed(deflateBound(&stream, content.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef *>(content.data());
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int result = deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return result == Z_STREAM_END ? packed : std::string();
}

std::uint32_t checksum(const std::string &bytes)
{
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef *>(bytes.data()), static_cast<uInt>(bytes.size())));
}

// U-Boot, include/image.h: seven words, most significant byte first, four bytes, a name of 32.
std::string header(const std::string &content, std::uint32_t address)
{
    enum : char { linux_system = 5, arm = 2, kernel = 2, gzip = 1 };
    std::string bytes;
    const auto put = [&](std::uint32_t value) {
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes.push_back(static_cast<char>(value >> shift));
    };
    const auto all = [&](std::uint32_t header_checksum) {
        bytes.clear();
        for (const std::uint32_t value :
             {0x27051956U, header_checksum, 0U, static_cast<std::uint32_t>(content.size()), address, address,
              checksum(content)})
            put(value);
        bytes.append({linux_system, arm, kernel, gzip});
        bytes.append("board").resize(64, '\0');
    };
    all(0); // the header's own checksum is made without it
    all(checksum(bytes));
    return bytes;
}

} // namespace

std::string boot_image(const std::string &zimage, unsigned memory_start)
{
    const auto layout = layout_of(zimage);
    if (!layout)
        return {};
    std::string kernel = unpacked(zimage, *layout);
    const std::string content = kernel.empty() ? std::string() : gzipped(kernel);
    return content.empty() ? std::string() : header(content, memory_start + layout->offset) + content;
}

} // namespace vboard::machine
