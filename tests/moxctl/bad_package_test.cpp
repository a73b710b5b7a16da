// SPDX-License-Identifier: Apache-2.0
// Packages that are not right, as moxctl tells of them.
#include "moxctl/package_folder.hpp"

#include <filesystem>

namespace test
{

namespace
{

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char *empty_digest = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";

std::string file_member(const std::string &id, const std::string &name, const std::string &size = "0",
                        const std::string &digest = empty_digest)
{
    return R"({"id":")" + id + R"(","name":")" + name + R"(","size":)" + size + R"(,"sha256":")" + digest +
           "\"}";
}

class BadPackage : public testing::Test
{
  protected:
    void expect_refused(const std::string &package, const std::string &said) const
    {
        const Ended ended = moxctl_alone({"package", "verify", package, "--quiet"});
        EXPECT_EQ(ended.status, 1) << ended.out;
        EXPECT_EQ(ended.out, "");
        EXPECT_THAT(ended.err, StartsWith("moxctl: package " + package + ": "));
        EXPECT_THAT(ended.err, HasSubstr(said));
    }
    std::string forged(const std::string &members, const Words &files = {"a"}) const
    {
        folder_.write("a", "");
        return folder_.forge("forged.tar", members, files);
    }

    PackageFolder folder_;
};

TEST_F(BadPackage, A_forged_one_that_is_right_is_taken)
{
    const Ended ended = moxctl_alone({"package", "verify", forged(file_member("0x1", "a")), "--quiet"});
    EXPECT_EQ(ended.status, 0) << ended.err;
}

TEST_F(BadPackage, That_is_not_there)
{
    expect_refused(folder_.path("none"), "No such file or directory");
}

TEST_F(BadPackage, That_is_something_else)
{
    folder_.write("other", std::string(5000, 'x'));
    expect_refused(folder_.path("other"), "");
}

TEST_F(BadPackage, That_is_cut)
{
    for (const char *name : {"s.tar", "s.tar.gz", "s.tar.xz"}) {
        const std::string package = folder_.sample(name);
        std::filesystem::resize_file(package, std::filesystem::file_size(package) * 2 / 3);
        expect_refused(package, "");
    }
}

TEST_F(BadPackage, With_one_bit_that_is_wrong)
{
    const std::string package = folder_.sample("s.tar");
    std::string bytes = folder_.read("s.tar");
    bytes[bytes.find("line 000009")] ^= 1;
    folder_.write("s.tar", bytes);
    expect_refused(package, "\"boot/bios_qs3540_mpu.bin\" is damaged");
}

TEST_F(BadPackage, With_an_id_twice)
{
    folder_.write("b", "");
    expect_refused(forged(file_member("0x1", "a") + "," + file_member("0x1", "b"), {"a", "b"}),
                   "two files have the id 0x00000001");
}

TEST_F(BadPackage, With_a_name_that_leads_elsewhere)
{
    for (const char *name : {"../a", "x/../a", "/etc/a", "./a", "x//a"})
        expect_refused(forged(file_member("0x1", name)), "is no name for a file of a package");
}

TEST_F(BadPackage, Without_an_id)
{
    expect_refused(forged(R"({"name":"a","size":0,"sha256":")" + std::string(empty_digest) + "\"}"),
                   "\"id\" is missing");
}

TEST_F(BadPackage, With_a_wrong_digest)
{
    expect_refused(forged(file_member("0x1", "a", "0", std::string(64, '0'))), "\"a\" is damaged");
}

TEST_F(BadPackage, With_a_size_that_nobody_has)
{
    expect_refused(forged(file_member("0x1", "a", "18446744073709551615")), "another size");
}

TEST_F(BadPackage, With_a_file_missing_or_one_too_many)
{
    expect_refused(forged(file_member("0x1", "a") + "," + file_member("0x2", "b")), "it ends before \"b\"");
    folder_.write("c", "");
    expect_refused(forged(file_member("0x1", "a"), {"a", "c"}), "\"c\" is not in the manifest");
}

} // namespace

} // namespace test
