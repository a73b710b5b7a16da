// SPDX-License-Identifier: Apache-2.0
// Manifests that are not right.
#include "platform/package/crafted.hpp"

#include <gmock/gmock.h>

using namespace test;
using nlohmann::json;
using testing::HasSubstr;
using testing::StartsWith;

namespace
{

class Manifest : public Package
{
  protected:
    // A good package with another manifest; every way in says the same.
    std::string error_with(const std::string &manifest)
    {
        write_file(package, package_of(manifest, good_entries()));
        unlink(path.c_str());
        EXPECT_NE(extract(0x08000005), 0u);
        const std::string error = verify_error();
        EXPECT_EQ(traced(), "package " + package + ": " + error + "\n");
        EXPECT_THROW(library.list(package), package::Error);
        expect_old_target();
        const std::string known = "the manifest is not right: ";
        return error.starts_with(known) ? error.substr(known.size()) : error;
    }
    std::string error_with_row(const char *member, const json &value)
    {
        json rows = good_rows();
        if (value.is_discarded())
            rows[1].erase(member);
        else
            rows[1][member] = value;
        return error_with(manifest_of(rows));
    }
    const json gone = json(json::value_t::discarded);
};

TEST_F(Manifest, TheGoodOneIsGood)
{
    EXPECT_EQ(verify_error(), "");
    EXPECT_EQ(extract(0x08000005), 0u);
}

TEST_F(Manifest, WhatIsNoJson)
{
    EXPECT_THAT(error_with("{"), StartsWith("the manifest is no JSON: "));
    EXPECT_THAT(error_with(""), StartsWith("the manifest is no JSON: "));
    write_file(package, package_of("\xff\xfe", good_entries()));
    EXPECT_THAT(verify_error(), StartsWith("the manifest is no JSON: "));
}

TEST_F(Manifest, MembersThatAreMissingOrOfTheWrongKind)
{
    EXPECT_EQ(error_with("[]"), "\"format\" is missing");
    EXPECT_EQ(error_with(R"({"format":2,"name":"n","version":"1","files":[]})"),
              "it has a format that is not known");
    EXPECT_EQ(error_with(R"({"format":"1"})"), "\"format\" is no whole number from 0");
    EXPECT_EQ(error_with(R"({"format":1})"), "\"name\" is missing");
    EXPECT_EQ(error_with(R"({"format":1,"name":3})"), "\"name\" is no text");
    EXPECT_EQ(error_with(R"({"format":1,"name":"n"})"), "\"version\" is missing");
    EXPECT_EQ(error_with(R"({"format":1,"name":"n","version":"1"})"), "\"files\" is missing");
    EXPECT_EQ(error_with(R"({"format":1,"name":"n","version":"1","files":{}})"), "\"files\" is no list");
    EXPECT_EQ(error_with(R"({"format":1,"name":"n","version":"1","files":[1]})"), "\"id\" is missing");
}

TEST_F(Manifest, FilesThatAreNotDescribed)
{
    for (const char *member : {"id", "name", "size", "sha256"})
        EXPECT_EQ(error_with_row(member, gone), '"' + std::string(member) + "\" is missing");
    EXPECT_EQ(error_with_row("size", -1), "\"size\" is no whole number from 0");
    EXPECT_EQ(error_with_row("size", 1.5), "\"size\" is no whole number from 0");
    EXPECT_EQ(error_with_row("sha256", "abc"), "\"abc\" is no SHA-256 digest");
    const std::string capitals(64, 'A');
    EXPECT_EQ(error_with_row("sha256", capitals), '"' + capitals + "\" is no SHA-256 digest");
}

TEST_F(Manifest, Ids)
{
    for (const char *id : {"", "0x", "5", "FE000005", " 0x5"})
        EXPECT_EQ(error_with_row("id", id), "the id \"" + std::string(id) + "\" is no hexadecimal number");
    for (const char *id : {"0x1FFFFFFFF", "0xg", "0x5 ", "0x-5", "0x0x5"})
        EXPECT_EQ(error_with_row("id", id),
                  "the id \"" + std::string(id) + "\" is no hexadecimal number of 32 bits");
    EXPECT_EQ(error_with_row("id", 5), "\"id\" is no text");
    EXPECT_EQ(error_with_row("id", "0x8000005"), "two files have the id 0x08000005");
}

TEST_F(Manifest, NamesThatLeadElsewhere)
{
    for (const char *name :
         {"", "/", "/etc/passwd", "..", "../x", "boot/../../x", "boot/..", ".", "./x", "boot/./x", "boot//x",
          "boot/", "a b", "a\\b", "a\nb", "a*", "manifest.json", "manifest.sha256", "caf\xc3\xa9"})
        EXPECT_EQ(error_with_row("name", name),
                  '"' + std::string(name) + "\" is no name for a file of a package");
    const std::string longest(201, 'n');
    EXPECT_EQ(error_with_row("name", longest), '"' + longest + "\" is no name for a file of a package");
    EXPECT_EQ(error_with_row("name", "boot/bios.bin"), "two files have the name \"boot/bios.bin\"");
}

TEST_F(Manifest, OneThatIsTooLarge)
{
    const std::string large((1 << 20) + 1, ' ');
    write_file(package, archive_of({{"manifest.json", "", AE_IFREG, large.size()}}));
    EXPECT_EQ(verify_error(), "manifest.json is larger than it may be");
}

TEST_F(Manifest, OneThatIsNotWhatItsDigestWasMadeOf)
{
    const std::string manifest = manifest_of(good_rows());
    write_file(package, archive_of({{"manifest.json", manifest},
                                    {"manifest.sha256", sha256("x") + "  manifest.json\n"}}));
    EXPECT_EQ(verify_error(), "the manifest is not the one that its digest was made of");
}

} // namespace
