// SPDX-License-Identifier: Apache-2.0
// Software packages. A package is a tar archive, plain or compressed (gzip, bzip2, xz, zstd), of regular
// files. The first two are "manifest.json", which names all that follow, and "manifest.sha256" with its
// digest, a line that sha256sum checks.
//
// The manifest is a JSON object: "format" (1), "name" and "version" of the package, and "files", a list of
// objects with
//   "id"      the file's id, a text with a hexadecimal number, "0x" in front
//   "name"    its path in the archive: parts of letters, digits and "._+-" between single slashes, none of
//             them "." or "..", none before the first
//   "size"    in bytes
//   "sha256"  its digest, 64 lower-case hexadecimal digits
// No two files have the same id or name. Names below "boot/" are boot files, which the library takes out one
// by one, by id. All others are run files; an installer unpacks them below the directory that holds the
// install root.
//
// All functions throw package::Error, with a message that names the package and says what is wrong with it.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace package
{

class Error : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

constexpr std::string_view boot_folder = "boot/";

struct File {
    std::uint32_t id = 0;
    std::string name;
    std::uint64_t size = 0;
    std::string sha256;
};

struct Manifest {
    std::string name;
    std::string version;
    std::vector<File> files;
};

// One file of a package to be built.
struct Ingredient {
    std::uint32_t id = 0;
    std::string name;
    // Where its contents are; with an empty path they are `text`.
    std::string path;
    std::string text;
};

struct Recipe {
    std::string name;
    std::string version;
    std::vector<Ingredient> files;
};

// Called between blocks with the file at hand and how many of its bytes were read.
using Progress = std::function<void(const File &file, std::uint64_t done)>;

// Where a file is to be written; an empty text: nowhere.
using Placement = std::function<std::string(const File &file)>;

// What a program that loads the package library calls.
struct Interface {
    // The manifest, without a look at the files.
    Manifest (*list)(const std::string &package);
    // Reads the whole package: all files are there, whole, and nothing else. Gives the manifest.
    Manifest (*verify)(const std::string &package, const Progress &progress);
    // Writes files, each whole or not at all (the old one then stays), in the package's order; stops at the
    // first that fails. The folders must exist.
    void (*unpack)(const std::string &package, std::uint32_t mode, const Placement &placement,
                   const Progress &progress);
    // Makes a package; the same recipe makes the same bytes. By the ending of `package` it is compressed:
    // ".gz",
    // ".bz2", ".xz", ".zst". An existing file stays until the new one is whole.
    void (*build)(const std::string &package, const Recipe &recipe);
};

} // namespace package

// In libmoxpackage.so.
extern "C" {
[[gnu::visibility("default")]] const package::Interface *moxpackage_interface();

// Behind CCPKG_ExtractFileFromCCExt(): 0, or non-zero with the reason in the step trace.
[[gnu::visibility("default")]] std::uint32_t moxpackage_extract_file(const char *package,
                                                                     const char *destination,
                                                                     std::uint32_t file_id,
                                                                     std::uint32_t mode);
}
