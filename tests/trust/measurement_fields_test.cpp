// SPDX-License-Identifier: Apache-2.0
// The single fields of a record, each in a place whose every byte is looked at.
#include "trust/measurement_fixture.hpp"

#include <cerrno>

namespace test
{
namespace
{

const std::string digits64 = "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef";

class MeasurementFieldsTest : public MeasurementTest
{
  protected:
    std::array<char, 512> out = {};

    char *clean()
    {
        out.fill('#');
        return out.data();
    }
    // These bytes and nothing behind.
    void expect_bytes(const std::string &bytes) const
    {
        EXPECT_EQ(std::string(out.data(), out.size()), bytes + std::string(out.size() - bytes.size(), '#'));
    }
    static std::string padded(std::string text, std::size_t size)
    {
        text.resize(size);
        return text;
    }
    void expect_hash(std::uint32_t length, std::uint32_t result, const std::string &bytes, const Said &said)
    {
        SCOPED_TRACE(length);
        for (std::uint32_t unused : {0u, 64u, 0xffffffffu}) {
            expect_result(
                [&] { return PdtSMLInfo_Get_FileHashInfo("esbc_filehash", unused, clean(), length); }, result,
                said);
            expect_bytes(bytes);
        }
    }
    void expect_patch(std::uint32_t length, std::uint32_t result, const std::string &bytes, const Said &said)
    {
        SCOPED_TRACE(length);
        for (std::uint32_t unused : {0u, 64u, 0xffffffffu}) {
            expect_result(
                [&] { return PdtSMLInfo_Get_FilePatchInfo("esbc_usepatch", unused, clean(), length); },
                result, said);
            expect_bytes(bytes);
        }
    }
    void expect_type(std::uint32_t key_type, std::uint32_t length, std::uint32_t result,
                     const std::string &bytes, const Said &said)
    {
        expect_result([&] { return PdtSMLInfo_Get_FileTypeInfo(key_type, clean(), length); }, result, said);
        expect_bytes(bytes);
    }
};

// ---- variable names --------------------------------------------------------------------------------------

class FileIndexTest : public MeasurementFieldsTest
{
  protected:
    std::uint32_t look_up(const char *keyword, std::uint32_t key_type)
    {
        clean();
        return PdtSMLInfo_Get_FileIndex(keyword, key_type, out.data(), out.data() + 64);
    }
};

TEST_F(FileIndexTest, KeyTypeAndKeywordMustBothMatchARowOfTheBoard)
{
    std::set<std::string> keywords = {"", "bios", "Imag", "Image ", "image", "bios_qs3520x"};
    for (const Image &image : images)
        keywords.insert(image.keyword);
    unsigned found = 0;
    for (std::uint32_t type : {1u, 2u, 3u})
        for (const std::string &keyword : keywords)
            for (std::uint32_t key_type : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 0xffffffffu}) {
                SCOPED_TRACE(text("type %u keyword %s key type %u", type, keyword.c_str(), key_type));
                be_type(type);
                const auto image = std::find_if(images.begin(), images.end(), [&](const Image &each) {
                    return each.board_type == type && each.keyword == keyword && each.key_type == key_type;
                });
                if (image == images.end()) {
                    expect_result([&] { return look_up(keyword.c_str(), key_type); }, minus_one,
                                  index_told(key_type, keyword));
                    expect_bytes("");
                } else {
                    ++found;
                    expect_result([&] { return look_up(keyword.c_str(), key_type); }, 0);
                    expect_bytes(padded(image->hash, 64) + padded(image->patch, 64));
                }
            }
    EXPECT_EQ(found, 9u);
}

TEST_F(FileIndexTest, ABoardThatIsNotMeasuredHasNone)
{
    be(an_mpu);
    expect_result([&] { return look_up("Image", 3); }, minus_one);
    be_type(1);
    refuse(board0, item_hard_type);
    expect_result([&] { return look_up("Image", 3); }, minus_one, sml_type_unread());
    expect_bytes("");
}

TEST_F(FileIndexTest, AnAbsentKeywordIsNoMatchForTheRowsWithoutOne)
{
    be_type(1);
    expect_result([&] { return look_up(nullptr, 0); }, minus_one, index_told(0, "(null)"));
    expect_bytes("");
}

TEST_F(FileIndexTest, ACopyThatFailsIsSilent)
{
    be_type(1);
    answer_platform("memcpy_s", 77);
    expect_result([&] { return look_up("Image", 3); }, minus_one);
    expect_bytes("");
    answer_platform("memcpy_s", 77, 1);
    expect_result([&] { return look_up("Image", 3); }, minus_one);
    expect_bytes(padded("kernel_filehash", 64));
}

// ---- hash ------------------------------------------------------------------------------------------------

TEST_F(MeasurementFieldsTest, AHashIsCopiedWithWhatFollowsIt)
{
    for (const std::string &hash : {digits64, std::string("ab12"), std::string(), digits64.substr(1)}) {
        board.set_boot_env("esbc_filehash", hash);
        for (std::uint32_t length : {0u, 1u, 2u, 63u, 64u, 65u, 128u, 255u, 256u}) {
            if (length == 0) // no room at all is no place to copy to
                expect_hash(0, minus_one, "", failure("get fileHash memcpy_s not normal!!\n"));
            else
                expect_hash(length, 0, padded(hash, length), hash_told(hash, "esbc_filehash"));
        }
    }
}

TEST_F(MeasurementFieldsTest, AHashReachesNoFurtherThanItsBuffer)
{
    board.set_boot_env("esbc_filehash", digits64);
    for (std::uint32_t length : {257u, 512u})
        expect_result([&] { return PdtSMLInfo_Get_FileHashInfo("esbc_filehash", 64, clean(), length); },
                      minus_one, failure("get fileHash memcpy_s not normal!!\n"));
}

TEST_F(MeasurementFieldsTest, AMissingHashReadsZero)
{
    for (std::uint32_t length : {2u, 3u, 64u})
        expect_hash(length, minus_one, std::string("0\0", 2), hash_missing("esbc_filehash"));
    const Said no_room = hash_missing("esbc_filehash") + failure("get pcFileHash memcpy_s not normal!\n");
    expect_hash(0, minus_one, "", no_room);
    expect_result([&] { return PdtSMLInfo_Get_FileHashInfo("esbc_filehash", 64, clean(), 1); }, minus_one,
                  no_room);
    expect_result([&] { return PdtSMLInfo_Get_FileHashInfo("esbc_filehash", 64, nullptr, 64); }, minus_one,
                  no_room);
    answer_platform("memcpy_s", 77);
    expect_result([&] { return PdtSMLInfo_Get_FileHashInfo("esbc_filehash", 64, clean(), 64); }, minus_one,
                  no_room);
    expect_bytes("");
}

TEST_F(MeasurementFieldsTest, AHashThatCannotBeReadIsMissing)
{
    board.set_boot_env("esbc_filehash", digits64);
    deny(envinfo0, EACCES);
    expect_result([&] { return PdtSMLInfo_Get_FileHashInfo("esbc_filehash", 64, clean(), 64); }, minus_one,
                  message(1, "\n\r [Getenv_s] Can't open file /dev/envinfo0!\n") +
                      hash_missing("esbc_filehash"));
    expect_bytes(std::string("0\0", 2));
}

TEST_F(MeasurementFieldsTest, AHashThatCannotBeCopiedIsTold)
{
    board.set_boot_env("esbc_filehash", digits64);
    const Said said = failure("get fileHash memcpy_s not normal!!\n");
    answer_platform("memcpy_s", 77);
    expect_result([&] { return PdtSMLInfo_Get_FileHashInfo("esbc_filehash", 64, clean(), 64); }, minus_one,
                  said);
    expect_bytes("");
    expect_result([&] { return PdtSMLInfo_Get_FileHashInfo("esbc_filehash", 64, nullptr, 64); }, minus_one,
                  said);
}

// ---- patch -----------------------------------------------------------------------------------------------

TEST_F(MeasurementFieldsTest, APatchTextIsFourBytes)
{
    for (const char *value : {"no", "yes", "", "y", "nope", "yesterday", "a text that is much longer"}) {
        const std::string kept = std::string(value).substr(0, 3);
        board.set_boot_env("esbc_usepatch", value);
        for (std::uint32_t length : {4u, 5u, 64u})
            expect_patch(length, 0, padded(kept, 4), patch_told(kept, "esbc_usepatch"));
    }
}

TEST_F(MeasurementFieldsTest, AMissingPatchReadsNo)
{
    for (std::uint32_t length : {3u, 4u, 64u})
        expect_patch(length, minus_one, std::string("no\0", 3), patch_missing("esbc_usepatch"));
    const Said no_room = patch_missing("esbc_usepatch") + failure("get patchInfo memcpy_s not normal!\n");
    expect_patch(0, minus_one, "", no_room);
    expect_result([&] { return PdtSMLInfo_Get_FilePatchInfo("esbc_usepatch", 64, clean(), 2); }, minus_one,
                  no_room);
    answer_platform("memcpy_s", 77);
    expect_result([&] { return PdtSMLInfo_Get_FilePatchInfo("esbc_usepatch", 64, clean(), 4); }, minus_one,
                  no_room);
    expect_bytes("");
}

TEST_F(MeasurementFieldsTest, APatchThatCannotBeCopiedIsTold)
{
    board.set_boot_env("esbc_usepatch", "yes");
    const Said said = failure("get patchInfo memcpy_s not normal!!\n");
    for (std::uint32_t length : {0u, 1u, 3u})
        expect_result([&] { return PdtSMLInfo_Get_FilePatchInfo("esbc_usepatch", 64, clean(), length); },
                      minus_one, said);
    expect_result([&] { return PdtSMLInfo_Get_FilePatchInfo("esbc_usepatch", 64, nullptr, 4); }, minus_one,
                  said);
    answer_platform("memcpy_s", 77);
    expect_result([&] { return PdtSMLInfo_Get_FilePatchInfo("esbc_usepatch", 64, clean(), 4); }, minus_one,
                  said);
    expect_bytes("");
}

// ---- type ------------------------------------------------------------------------------------------------

TEST_F(MeasurementFieldsTest, EachKeyTypeHasItsTextInAClearedField)
{
    for (std::uint32_t key_type = 0; key_type < 7; ++key_type)
        for (std::uint32_t length : {17u, 18u, 128u, 512u})
            expect_type(key_type, length, 0, padded(type_texts[key_type], length), type_told(key_type));
}

TEST_F(MeasurementFieldsTest, ATypeNeedsSeventeenBytesAndAKnownKeyType)
{
    for (std::uint32_t length : {0u, 1u, 10u, 15u, 16u})
        for (std::uint32_t key_type : {0u, 6u, 7u})
            expect_type(key_type, length, minus_one, "",
                        failure(text("get file type input len not normal, len = %u\n", length)));
    for (std::uint32_t key_type : {7u, 8u, 0x80000000u, 0xffffffffu})
        expect_type(key_type, 17, minus_one, "", failure("Key type input not normal\n"));
}

TEST_F(MeasurementFieldsTest, ATypeThatCannotBeWrittenIsTold)
{
    for (std::uint32_t key_type : {0u, 2u, 6u}) {
        const Said uncleared =
            failure(text("clear file type info to zero unsuccessful, type = %u\n", key_type));
        answer_platform("memset_s", 77);
        expect_type(key_type, 128, minus_one, "", uncleared);
        expect_result([&] { return PdtSMLInfo_Get_FileTypeInfo(key_type, nullptr, 128); }, minus_one,
                      uncleared);
        answer_platform("memcpy_s", 77);
        expect_type(key_type, 128, minus_one, std::string(128, '\0'),
                    failure(text("get file type info unsuccessful, type = %u\n", key_type)));
    }
}

// ---- hash and patch of a record --------------------------------------------------------------------------

class FileHashTest : public MeasurementTest
{
  protected:
    PdtSmlFileInfo record = {};
    PdtSmlFileInfo wanted = {};

    void fill(const std::string &hash, std::uint32_t patch)
    {
        std::memset(&wanted, '#', sizeof wanted);
        std::memcpy(wanted.file_hash, hash.data(), hash.size());
        wanted.use_patch = patch;
    }
    void expect_record(std::uint32_t result, const Said &said)
    {
        std::memset(&record, '#', sizeof record);
        expect_result([&] { return PdtSMLInfo_Get_FileHash("a_hash", "a_patch", &record); }, result, said);
        EXPECT_EQ(std::memcmp(&record, &wanted, sizeof record), 0) << "use patch " << record.use_patch;
    }
};

TEST_F(FileHashTest, ThePatchFlagIsSetUnlessTheTextIsNo)
{
    std::string field = "abc";
    field.resize(64);
    board.set_boot_env("a_hash", "abc");
    for (const auto &[value, flag] : {std::pair{"no", 0u},
                                      {"yes", 1u},
                                      {"", 1u},
                                      {"n", 1u},
                                      {"No", 1u},
                                      {"NO", 1u},
                                      {"no ", 1u},
                                      {" no", 1u},
                                      {"nope", 1u},
                                      {"none at all", 1u},
                                      {"0", 1u}}) {
        SCOPED_TRACE(value);
        board.set_boot_env("a_patch", value);
        fill(field, flag);
        expect_record(0, hash_told("abc", "a_hash") + patch_told(std::string(value).substr(0, 3), "a_patch"));
    }
}

TEST_F(FileHashTest, AMissingPatchIsNone)
{
    board.set_boot_env("a_hash", digits64);
    fill(digits64, 0);
    expect_record(0, hash_told(digits64, "a_hash") + patch_unknown("a_patch"));
}

TEST_F(FileHashTest, AHashOfTheFieldsWholeSizeHasNoTerminator)
{
    board.set_boot_env("a_patch", "yes");
    fill(digits64, 1);
    for (const std::string &hash : {digits64, digits64 + "!"}) {
        board.set_boot_env("a_hash", hash);
        expect_record(0, hash_told(hash, "a_hash") + patch_told("yes", "a_patch"));
    }
}

TEST_F(FileHashTest, AMissingHashFailsAndLeavesThePatchFlag)
{
    board.set_boot_env("a_patch", "yes");
    fill(std::string("0\0", 2), 0x23232323);
    expect_record(minus_one, hash_unknown("a_hash", "a_patch"));
    board.set_boot_env("a_hash", "abc");
    answer_platform("memcpy_s", 77);
    fill("", 0x23232323);
    expect_record(minus_one, failure("get fileHash memcpy_s not normal!!\n") +
                                 failure("get file hash(a_patch) unsuccess!\n"));
    expect_result([] { return PdtSMLInfo_Get_FileHash("a_hash", "a_patch", nullptr); }, minus_one);
}

TEST_F(FileHashTest, APatchThatCannotBeCopiedIsTold)
{
    board.set_boot_env("a_hash", digits64);
    board.set_boot_env("a_patch", "yes");
    answer_platform("memcpy_s", 77, 1);
    fill(digits64, 1);
    expect_record(0, hash_told(digits64, "a_hash") + failure("get patchInfo memcpy_s not normal!!\n") +
                         failure("get file patchinfo(a_patch) unsuccess!\n"));
}

} // namespace
} // namespace test
