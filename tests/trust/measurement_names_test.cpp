// SPDX-License-Identifier: Apache-2.0
// The names of measured files: one fixed, the others found in "/boot" in the directory's order.
#include "trust/measurement_fixture.hpp"

#include <cerrno>
#include <filesystem>
#include <fstream>

namespace test
{
namespace
{

using Names = std::vector<std::string>;
const std::string untouched(200, '#');

class FileNameTest : public MeasurementTest
{
  protected:
    std::array<char, 200> out = {};

    std::string written() const
    {
        return {out.data(), out.size()};
    }
    // Asks for a keyword's name. How much of the directory is read, and that it is closed, is checked too.
    void expect_search(const Names &names, const char *keyword, std::uint32_t size, std::uint32_t result,
                       unsigned read, const Said &said = nothing())
    {
        SCOPED_TRACE(testing::PrintToString(names));
        out.fill('#');
        show_directory(names);
        expect_result([&] { return TPMAgent_GetfileName(keyword, out.data(), size); }, result, said);
        const DirectoryUse use = directory_use();
        EXPECT_EQ(use.opened, Names{"/boot"});
        EXPECT_EQ(use.read, read);
        EXPECT_EQ(use.closed, 1u);
    }
    void expect_found(const Names &names, const std::string &found, unsigned read, std::uint32_t size = 128)
    {
        expect_search(names, "Image", size, 0, read);
        std::string wanted = found + '\0' + untouched.substr(found.size() + 1);
        wanted[size - 1] = '\0';
        EXPECT_EQ(written(), wanted) << testing::PrintToString(names);
    }
    // Nothing is written, yet that is no failure.
    void expect_passed_over(const Names &names)
    {
        expect_search(names, "Image", 128, 0, static_cast<unsigned>(names.size() + 1));
        EXPECT_EQ(written(), untouched);
    }
    void expect_none(const Names &names)
    {
        expect_search(names, "Image", 128, minus_one, static_cast<unsigned>(names.size() + 1),
                      failure("pstr is null \n\n"));
        EXPECT_EQ(written(), untouched);
    }
    void expect_too_long(const Names &names, std::uint32_t size, unsigned read)
    {
        expect_search(names, "Image", size, minus_one, read,
                      failure("d_name length is longer than fileNameLen \n\n"));
        EXPECT_EQ(written(), untouched);
    }
};

TEST_F(FileNameTest, IsTheFirstThatHoldsTheKeyword)
{
    expect_found({"Image"}, "Image", 1);
    expect_found({".", "..", "Image-5.10"}, "Image-5.10", 3);
    expect_found({"Image-5.10", "Image-6.1"}, "Image-5.10", 1);
    expect_found({"Image-6.1", "Image-5.10"}, "Image-6.1", 1);
    expect_found({"dtb", "vmImage.gz", "Image"}, "vmImage.gz", 2);
    expect_found({"initrd", "theImage", "x"}, "theImage", 2);
}

TEST_F(FileNameTest, PassesOverWhatIsPrivate)
{
    expect_found({"Image-priv", "Image-5.10"}, "Image-5.10", 2);
    expect_found({"privImage", "Image-priv", "aprivbImage", "dtb", "Image"}, "Image", 5);
    expect_found({"priv", "Image-pri"}, "Image-pri", 2);
    expect_found({"Image-Priv"}, "Image-Priv", 1);
    expect_found({"Image-5.10", "Image-priv"}, "Image-5.10", 1);
}

TEST_F(FileNameTest, IsLeftAloneWithoutFailureWhenAPrivateOneComesLast)
{
    expect_passed_over({"Image-priv"});
    expect_passed_over({".", "..", "dtb", "Image-priv"});
    expect_passed_over({"Image-priv", "dtb", "privImage"});
}

TEST_F(FileNameTest, IsMissedWhenAnythingElseComesLast)
{
    expect_none({});
    expect_none({".", ".."});
    expect_none({"image", "IMAGE", "Imag", "I-mage"});
    expect_none({"Image-priv", "dtb"});
    expect_none({"Image-priv", "priv"});
    expect_none({"Image-priv", "Image-priv", "."});
}

TEST_F(FileNameTest, MustFitWithItsTerminator)
{
    const std::string longest = "Image" + std::string(122, 'x');
    expect_found({longest}, longest, 1);
    expect_too_long({longest + "x"}, 128, 1);
    expect_too_long({"dtb", "Image" + std::string(250, 'x'), "Image"}, 128, 2);
    expect_found({"Image"}, "Image", 1, 6);
    for (std::uint32_t size : {0u, 1u, 4u, 5u})
        expect_too_long({"Image"}, size, 1);
    // Other names may be as long as they like, and a private one is too long before it is private.
    expect_found({std::string(255, 'y'), "Image"}, "Image", 2);
    expect_too_long({"Image-priv" + std::string(128, 'x'), "Image"}, 128, 1);
}

TEST_F(FileNameTest, NeedsTheDirectory)
{
    for (int error : {ENOENT, EACCES, ENOMEM}) {
        out.fill('#');
        show_no_directory(error);
        expect_result([&] { return TPMAgent_GetfileName("Image", out.data(), 128); }, minus_one,
                      failure("pstDir is null \n\n"));
        EXPECT_EQ(directory_use().opened, Names{"/boot"});
        EXPECT_EQ(directory_use().closed, 0u);
        EXPECT_EQ(written(), untouched);
    }
}

TEST_F(FileNameTest, NeedsKeywordAndPlace)
{
    const Said said = failure("pcKeyWord or pcFilename is null \n\n");
    show_directory({"Image"});
    expect_result([&] { return TPMAgent_GetfileName(nullptr, out.data(), 128); }, minus_one, said);
    expect_result([] { return TPMAgent_GetfileName("Image", nullptr, 128); }, minus_one, said);
    expect_result([] { return TPMAgent_GetfileName(nullptr, nullptr, 0); }, minus_one, said);
    EXPECT_TRUE(directory_use().opened.empty());
}

TEST_F(FileNameTest, ThatCannotBeCopiedEndsTheSearchAllTheSame)
{
    answer_platform("strncpy_s", 77);
    expect_search({"Image-1", "Image-2"}, "Image", 128, 0, 1);
    std::string wanted = untouched;
    wanted[127] = '\0';
    EXPECT_EQ(written(), wanted);
}

TEST_F(FileNameTest, IsFoundOnARealDisk)
{
    show_disk();
    for (const auto &entry : std::filesystem::directory_iterator("/boot"))
        std::filesystem::remove_all(entry);
    out.fill('#');
    expect_result([&] { return TPMAgent_GetfileName("Image", out.data(), 128); }, minus_one,
                  failure("pstr is null \n\n"));
    std::ofstream("/boot/Image-5.10") << "kernel";
    std::ofstream("/boot/Image-priv") << "kernel";
    expect_result([&] { return TPMAgent_GetfileName("Image", out.data(), 128); }, 0);
    EXPECT_STREQ(out.data(), "Image-5.10");
}

// ---- the ESBC's ------------------------------------------------------------------------------------------

class EsbcNameTest : public FileNameTest
{
};

TEST_F(EsbcNameTest, IsNineteenCharactersWithoutTerminatorOnBoardsThatHaveOne)
{
    for (std::uint32_t hard_type : trust_candidates()) {
        SCOPED_TRACE(text("hard type 0x%x", hard_type));
        be(hard_type);
        out.fill('#');
        expect_result([&] { return TPMAgentGetEsbcName(out.data()); }, 0);
        std::string name;
        if (among(attested_boards, hard_type))
            name = "esbc_qs3520_mpu.bin";
        else if (among(esbc_boards, hard_type))
            name = "esbc_qs3540_mpu.bin";
        EXPECT_EQ(written(), name + untouched.substr(name.size()));
    }
}

TEST_F(EsbcNameTest, NeedsAHardTypeAndAPlace)
{
    be_type(1);
    out.fill('#');
    refuse(board0, item_hard_type);
    expect_result([&] { return TPMAgentGetEsbcName(out.data()); }, minus_one,
                  failure(type_unread) + failure("[drv_boot]GetEsbcName get board type unsuccessful!\n"));
    answer_platform("memcpy_s", 77);
    expect_result([&] { return TPMAgentGetEsbcName(out.data()); }, minus_one,
                  failure("[drv_boot]Memory copy failed, return check code=77\n\n"));
    EXPECT_EQ(written(), untouched);
    expect_result([] { return TPMAgentGetEsbcName(nullptr); }, minus_one,
                  failure(text("[drv_boot]Memory copy failed, return check code=%d\n\n", EINVAL)));
}

} // namespace
} // namespace test
