// SPDX-License-Identifier: Apache-2.0
#include "machine/kernel_image.hpp"

#include <archive.h>
#include <archive_entry.h>
#include <cstdint>
#include <cstring>
#include <gmock/gmock.h>
#include <string>
#include <vector>
#include <zlib.h>

namespace
{

using vboard::machine::boot_image;

constexpr unsigned memory_start = 0x40000000;
constexpr std::size_t table = 0x100;

std::string xz(const std::string &content)
{
    std::vector<char> packed(content.size() + 4096);
    std::size_t used = 0;
    archive *writer = archive_write_new();
    archive_write_set_format_raw(writer);
    archive_write_add_filter_xz(writer);
    archive_write_set_bytes_per_block(writer, 0);
    EXPECT_EQ(ARCHIVE_OK, archive_write_open_memory(writer, packed.data(), packed.size(), &used));
    archive_entry *entry = archive_entry_new();
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_entry_set_pathname(entry, "kernel");
    EXPECT_EQ(ARCHIVE_OK, archive_write_header(writer, entry));
    EXPECT_EQ(static_cast<la_ssize_t>(content.size()),
              archive_write_data(writer, content.data(), content.size()));
    EXPECT_EQ(ARCHIVE_OK, archive_write_close(writer));
    archive_entry_free(entry);
    archive_write_free(writer);
    return {packed.data(), used};
}

void put(std::string &bytes, std::size_t at, std::uint32_t value)
{
    std::memcpy(bytes.data() + at, &value, sizeof value);
}

std::uint32_t big_endian(const std::string &bytes, std::size_t at)
{
    std::uint32_t value = 0;
    for (std::size_t i = at; i < at + 4; ++i)
        value = value << 8 | static_cast<unsigned char>(bytes.at(i));
    return value;
}

// A file with a kernel's marks, an unpacker that names its format in a text, the kernel, its size, and
// something behind it.
std::string zimage(const std::string &kernel, const std::string &packed)
{
    std::string file(0x200, '\0');
    put(file, 0x24, 0x016f2818);
    put(file, 0x30, 0x04030201);
    put(file, 0x34, 0x45454545);
    put(file, 0x38, table);
    put(file, table, 6);
    put(file, table + 4, 0x5a534c4b);
    put(file, table + 16, 0x208000);
    file.append("\xfd"
                "7zXZ\0 cannot be read",
                21);
    file += packed;
    put(file, table + 8, static_cast<std::uint32_t>(file.size()));
    file.append(4, '\0');
    put(file, file.size() - 4, static_cast<std::uint32_t>(kernel.size()));
    return file + std::string(100, 'x');
}

std::string some_kernel()
{
    std::string kernel;
    for (int i = 0; i < 20000; ++i)
        kernel += "instruction " + std::to_string(i * 7919) + "\n";
    return kernel;
}

std::string inflated(const std::string &packed, std::size_t size)
{
    std::string content(size + 1, '\0');
    z_stream stream{};
    EXPECT_EQ(Z_OK, inflateInit2(&stream, 15 + 16));
    std::string in = packed;
    stream.next_in = reinterpret_cast<Bytef *>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef *>(content.data());
    stream.avail_out = static_cast<uInt>(content.size());
    EXPECT_EQ(Z_STREAM_END, inflate(&stream, Z_FINISH));
    content.resize(stream.total_out);
    inflateEnd(&stream);
    return content;
}

std::uint32_t checksum(const std::string &bytes)
{
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef *>(bytes.data()), static_cast<uInt>(bytes.size())));
}

TEST(KernelImage, HoldsTheUnpackedKernelForItsPlaceInMemory)
{
    const std::string kernel = some_kernel();
    const std::string image = boot_image(zimage(kernel, xz(kernel)), memory_start);
    ASSERT_GT(image.size(), 64U);
    const std::string content = image.substr(64);
    EXPECT_EQ(kernel, inflated(content, kernel.size()));
    EXPECT_EQ(0x27051956U, big_endian(image, 0));
    EXPECT_EQ(content.size(), big_endian(image, 12));
    EXPECT_EQ(0x40208000U, big_endian(image, 16)) << "where it is loaded";
    EXPECT_EQ(0x40208000U, big_endian(image, 20)) << "where it begins";
    EXPECT_EQ(checksum(content), big_endian(image, 24));
    EXPECT_EQ(std::string("\5\2\2\1board"), image.substr(28, 9)) << "Linux, ARM, a kernel, gzip, its name";
    std::string without = image.substr(0, 64);
    without.replace(4, 4, 4, '\0');
    EXPECT_EQ(checksum(without), big_endian(image, 4));
}

TEST(KernelImage, IsTheSameForTheSameKernel)
{
    const std::string file = zimage(some_kernel(), xz(some_kernel()));
    EXPECT_EQ(boot_image(file, memory_start), boot_image(file, memory_start));
}

TEST(KernelImage, IsNotMadeOfWhatDoesNotSayWhereItsPartsLie)
{
    const std::string whole = zimage(some_kernel(), xz(some_kernel()));
    for (const std::size_t mark : {std::size_t{0x24}, std::size_t{0x30}, std::size_t{0x34}, table + 4}) {
        std::string other = whole;
        put(other, mark, 1);
        EXPECT_EQ("", boot_image(other, memory_start)) << mark;
    }
    for (const std::size_t place : {std::size_t{0x38}, table + 8}) {
        std::string other = whole;
        put(other, place, 0xfffffff0);
        EXPECT_EQ("", boot_image(other, memory_start)) << place;
    }
}

TEST(KernelImage, IsNotMadeOfADamagedOrOtherwiseCompressedKernel)
{
    const std::string kernel = some_kernel();
    const std::string packed = xz(kernel);
    EXPECT_EQ("", boot_image(zimage(kernel, packed.substr(0, packed.size() / 2)), memory_start));
    EXPECT_EQ("", boot_image(zimage(kernel, std::string(1000, 'g')), memory_start));
    EXPECT_EQ("", boot_image(zimage(kernel + "more", packed), memory_start)) << "longer than what is packed";
    EXPECT_EQ("", boot_image("", memory_start));
    EXPECT_EQ("", boot_image(std::string(0x3c, '\0'), memory_start));
}

TEST(KernelImage, OfAHugeSizeIsNotMade)
{
    std::string file = zimage(some_kernel(), xz(some_kernel()));
    put(file, file.size() - 104, 0xffffffff);
    EXPECT_EQ("", boot_image(file, memory_start));
}

} // namespace
