// SPDX-License-Identifier: Apache-2.0
// Whole records, one by one and all of a board.
#include "trust/measurement_fixture.hpp"

#include <cerrno>

namespace test
{
namespace
{

constexpr std::uint32_t before = 0x23232323;
const std::string esbc = "esbc_qs3540_mpu.bin";

// What a record must hold.
struct Wanted {
    std::string name; // empty: untouched
    std::string type;
    std::string hash;
    std::uint32_t patch, valid, index;
    bool name_ends = true;
};

Said all_told(bool good, std::uint32_t sum = 0)
{
    return good ? information("PdtSMLInfo_Get_FileInfo get filehash success(0)\n\n")
                : failure(text("PdtSMLInfo_Get_FileInfo get filehash not normal(%u)\n\n", sum));
}
// A row without an image.
Said row_without_image()
{
    return failure("pcKeyWord or pcFilename is null \n\n") + name_unknown("(null)");
}
Said file_missing(const Image &image)
{
    return failure("pstr is null \n\n") + name_unknown(image.keyword);
}
Said hash_of_record_unknown(const Image &image)
{
    return hash_unknown(image.hash, image.patch) +
           failure("get fileHashEnv(" + image.hash + ") or filePathEnv(" + image.patch + ") unsuccess\n");
}

class RecordsTest : public MeasurementTest
{
  protected:
    std::array<PdtSmlFileInfo, 9> records = {};

    void SetUp() override
    {
        MeasurementTest::SetUp();
        clean();
    }
    void clean()
    {
        std::memset(records.data(), '#', sizeof records);
    }
    static std::string file_of(const Image &image)
    {
        return image.key_type == 1 ? esbc : image.keyword + "-1.bin";
    }
    static std::string hash_of(const Image &image)
    {
        return "hash of " + image.hash;
    }
    // A board of this type with all its files and variables, the flags "yes" and "no" by turns.
    void be_measured(std::uint32_t type)
    {
        be_type(type);
        files_.clear();
        for (const Image &image : images_of(type)) {
            if (image.key_type != 1)
                files_.push_back(file_of(image));
            board.set_boot_env(image.hash, hash_of(image));
            board.set_boot_env(image.patch, patch_of(image));
        }
        show_directory(files_);
    }
    static std::string patch_of(const Image &image)
    {
        return image.row % 2 == 0 ? "yes" : "no";
    }
    void remove_file(const Image &image)
    {
        files_.erase(std::find(files_.begin(), files_.end(), file_of(image)));
    }
    static Wanted wanted_of(const Image &image)
    {
        return {file_of(image), type_texts[image.key_type], hash_of(image), image.row % 2 == 0 ? 1u : 0u, 1,
                image.index,    image.key_type != 1};
    }
    static Said said_of(const Image &image)
    {
        return type_told(image.key_type) + hash_told(hash_of(image), image.hash) +
               patch_told(patch_of(image), image.patch);
    }
    static std::string field(std::string text, std::size_t size, char fill = '\0')
    {
        text.resize(size, fill);
        return text;
    }
    void expect_record(std::size_t i, const Wanted &wanted)
    {
        SCOPED_TRACE(text("record %zu", i));
        const PdtSmlFileInfo &record = records[i];
        // The name's field keeps what was behind the name, but for its last byte.
        std::string name = field(wanted.name + (wanted.name_ends ? std::string(1, '\0') : ""), 128, '#');
        if (wanted.name_ends)
            name.back() = '\0';
        EXPECT_EQ(std::string(record.file_name, 128), name);
        EXPECT_EQ(std::string(record.reserved, 128), std::string(128, '#'));
        EXPECT_EQ(std::string(record.file_type, 128), field(wanted.type, 128));
        EXPECT_EQ(std::string(record.file_hash, 64), field(wanted.hash, 64));
        EXPECT_EQ(record.use_patch, wanted.patch);
        EXPECT_EQ(record.valid, wanted.valid);
        EXPECT_EQ(record.measurement_index, wanted.index);
    }
    void expect_untouched(std::size_t first, std::size_t end)
    {
        for (std::size_t i = first; i < end; ++i) {
            const std::string bytes(reinterpret_cast<const char *>(&records[i]), sizeof records[i]);
            EXPECT_EQ(bytes, std::string(sizeof records[i], '#')) << "record " << i;
        }
    }
    // Each search opens the directory anew, so its reader begins anew with each record.
    void expect_all(std::uint32_t count, std::uint32_t result, const Said &said)
    {
        clean();
        show_directory(files_);
        expect_result([&] { return MOX_GetPdtSMLInfo(records.data(), count); }, result, said);
        EXPECT_EQ(directory_use().closed, directory_use().opened.size());
        expect_untouched(count < records.size() && result == 0 ? count : records.size(), records.size());
    }

  private:
    std::vector<std::string> files_;
};

TEST_F(RecordsTest, AreTheBoardsImages)
{
    for (std::uint32_t type : {1u, 2u, 3u}) {
        SCOPED_TRACE(type);
        be_measured(type);
        const auto all = images_of(type);
        Said said;
        for (const Image &image : all)
            said = said + said_of(image);
        expect_all(static_cast<std::uint32_t>(all.size()), 0, said + all_told(true));
        for (std::size_t i = 0; i < all.size(); ++i)
            expect_record(i, wanted_of(all[i]));
    }
}

TEST_F(RecordsTest, OnAllBoardsOfATypeAreTheSame)
{
    for (std::uint32_t hard_type : trust_candidates()) {
        SCOPED_TRACE(text("hard type 0x%x", hard_type));
        const std::uint32_t type = sml_type_of(hard_type);
        be_measured(type == 0 ? 1 : type);
        be(hard_type);
        const auto all = images_of(type);
        Said said;
        for (const Image &image : all)
            said = said + said_of(image);
        expect_all(all.empty() ? 4 : static_cast<std::uint32_t>(all.size()), type == 0 ? minus_one : 0,
                   type == 0 ? nothing() : said + all_told(true));
        if (type == 0)
            expect_untouched(0, records.size());
    }
}

TEST_F(RecordsTest, OnTheFirstTypeAreFourAndNothingElse)
{
    be_measured(1);
    for (std::uint32_t count : {0u, 1u, 3u, 5u, 6u, 0xffffffffu}) {
        expect_all(count, minus_one, failure(text("[drv_boot]SMLInfo(1) count(%u) is invalid.\n", count)));
        expect_untouched(0, records.size());
        EXPECT_TRUE(directory_use().opened.empty());
    }
}

TEST_F(RecordsTest, OnTheOthersMayBeFewer)
{
    for (std::uint32_t type : {2u, 3u}) {
        be_measured(type);
        Said said;
        std::uint32_t count = 0;
        expect_all(count, 0, all_told(true));
        for (const Image &image : images_of(type)) {
            said = said + said_of(image);
            expect_all(++count, 0, said + all_told(true));
        }
    }
}

TEST_F(RecordsTest, BeyondTheRowsFailOneByOne)
{
    for (std::uint32_t type : {2u, 3u}) {
        be_measured(type);
        const auto all = images_of(type);
        Said said;
        for (const Image &image : all)
            said = said + said_of(image);
        for (auto count = static_cast<std::uint32_t>(all.size() + 1); count <= 9; ++count) {
            SCOPED_TRACE(count);
            said = said + row_without_image();
            const auto beyond = static_cast<std::uint32_t>(count - all.size());
            expect_all(count, minus_one, said + all_told(false, 0 - beyond));
            for (std::size_t i = 0; i < all.size(); ++i)
                expect_record(i, wanted_of(all[i]));
            expect_untouched(all.size(), records.size());
        }
    }
}

TEST_F(RecordsTest, AreAllTriedWhenFilesAreMissing)
{
    for (std::uint32_t type : {1u, 2u, 3u}) {
        const auto all = images_of(type);
        for (std::uint32_t missing = 1; missing < 1u << all.size(); ++missing) {
            SCOPED_TRACE(text("type %u, missing 0x%x", type, missing));
            be_measured(type);
            Said said;
            std::uint32_t failures = 0;
            for (std::size_t i = 0; i < all.size(); ++i) {
                const bool gone =
                    (missing >> i & 1) != 0 && all[i].key_type != 1; // the ESBC's name is no file's
                if (gone)
                    remove_file(all[i]);
                failures += gone;
                said = said + (gone ? file_missing(all[i]) : said_of(all[i]));
            }
            expect_all(static_cast<std::uint32_t>(all.size()), failures != 0 ? minus_one : 0,
                       said + all_told(failures == 0, 0 - failures));
            for (std::size_t i = 0; i < all.size(); ++i)
                if ((missing >> i & 1) != 0 && all[i].key_type != 1)
                    expect_untouched(i, i + 1);
                else
                    expect_record(i, wanted_of(all[i]));
        }
    }
}

TEST_F(RecordsTest, StayValidWithoutTheirVariables)
{
    for (std::uint32_t type : {1u, 2u, 3u}) {
        const auto all = images_of(type);
        for (std::size_t which = 0; which < all.size(); ++which)
            for (bool hash : {true, false}) {
                SCOPED_TRACE(text("type %u, row %zu, %s", type, which, hash ? "hash" : "patch"));
                be_measured(type);
                board.set_boot_env(hash ? all[which].hash : all[which].patch, std::nullopt);
                Said said;
                for (std::size_t i = 0; i < all.size(); ++i) {
                    if (i != which)
                        said = said + said_of(all[i]);
                    else if (hash)
                        said = said + type_told(all[i].key_type) + hash_of_record_unknown(all[i]);
                    else
                        said = said + type_told(all[i].key_type) + hash_told(hash_of(all[i]), all[i].hash) +
                               patch_unknown(all[i].patch);
                }
                expect_all(static_cast<std::uint32_t>(all.size()), 0, said + all_told(true));
                for (std::size_t i = 0; i < all.size(); ++i) {
                    Wanted wanted = wanted_of(all[i]);
                    if (i == which && hash) {
                        wanted.hash = std::string("0\0", 2) + std::string(62, '#');
                        wanted.patch = before;
                    } else if (i == which) {
                        wanted.patch = 0;
                    }
                    expect_record(i, wanted);
                }
            }
    }
}

TEST_F(RecordsTest, NeedAPlaceAndAHardType)
{
    be_measured(1);
    expect_result([] { return MOX_GetPdtSMLInfo(nullptr, 4); }, minus_one, failure("smlData is null.\n\n"));
    EXPECT_TRUE(operations().empty());
    refuse(board0, item_hard_type);
    expect_all(4, minus_one, sml_type_unread());
    expect_untouched(0, records.size());
}

// The hard type is asked once for all records, and for each of them twice.
TEST_F(RecordsTest, FailWhereTheHardTypeIsLostOnTheWay)
{
    const auto all = images_of(1);
    Said rest;
    for (std::size_t i = 1; i < all.size(); ++i)
        rest = rest + said_of(all[i]);
    be_measured(1);
    refuse_type_after(1);
    expect_all(4, minus_one,
               failure(type_unread) + failure("get board hard type failed!\n") + rest +
                   all_told(false, minus_one));
    expect_untouched(0, 1);
    for (std::size_t i = 1; i < all.size(); ++i)
        expect_record(i, wanted_of(all[i]));
    // A record whose variables' names are not found goes on without them.
    refuse_type_after(2);
    expect_all(4, 0,
               sml_type_unread() +
                   failure("get fileHashEnv() name or filePathEnv() not normal by keyword(bios_qs3520)!\n") +
                   type_told(0) + hash_unknown("", "") +
                   failure("get fileHashEnv() or filePathEnv() unsuccess\n") + rest + all_told(true));
    expect_record(0, {file_of(all[0]), "BIOS", std::string("0\0", 2) + std::string(62, '#'), before, 1, 8});
}

TEST_F(RecordsTest, OfTheEsbcNeedItsBoard)
{
    be_measured(2);
    refuse_type_after(2);
    expect_all(1, minus_one,
               failure(type_unread) + failure("[drv_boot]GetEsbcName get board type unsuccessful!\n") +
                   name_unknown("bios_qs3540") + all_told(false, minus_one));
    expect_untouched(0, records.size());
    answer_platform("memcpy_s", 77);
    expect_all(1, minus_one,
               failure("[drv_boot]Memory copy failed, return check code=77\n\n") +
                   name_unknown("bios_qs3540") + all_told(false, minus_one));
}

// ---- one record ------------------------------------------------------------------------------------------

class RecordTest : public RecordsTest
{
  protected:
    void expect_one(const char *keyword, std::uint32_t key_type, std::uint32_t result, const Said &said)
    {
        clean();
        expect_result([&] { return PdtSMLInfo_Get_FileInfo(keyword, key_type, &records[1], 77); }, result,
                      said);
        expect_untouched(0, 1);
        expect_untouched(2, records.size());
    }
};

TEST_F(RecordTest, HasTheIndexItIsGiven)
{
    be_measured(1);
    const Image &kernel = images[1];
    expect_one("Image", 3, 0, said_of(kernel));
    Wanted wanted = wanted_of(kernel);
    wanted.index = 77;
    expect_record(1, wanted);
}

TEST_F(RecordTest, OfAPrivateFileKeepsTheCallersName)
{
    be_measured(1);
    show_directory({"Image-priv"});
    expect_one("Image", 3, 0, said_of(images[1]));
    Wanted wanted = wanted_of(images[1]);
    wanted.name.clear();
    wanted.name_ends = false;
    wanted.index = 77;
    expect_record(1, wanted);
}

TEST_F(RecordTest, OfAnEsbcOnABoardWithoutOneKeepsTheCallersName)
{
    be_measured(3);
    expect_one("bios_qs3520", 1, 0,
               index_told(1, "bios_qs3520") +
                   failure("get fileHashEnv() name or filePathEnv() not normal by keyword(bios_qs3520)!\n") +
                   type_told(1) + hash_unknown("", "") +
                   failure("get fileHashEnv() or filePathEnv() unsuccess\n"));
    expect_record(1, {"", "BIOS", std::string("0\0", 2) + std::string(62, '#'), before, 1, 77, false});
}

TEST_F(RecordTest, OfNoKindIsTold)
{
    be_measured(1);
    const auto said = [](const std::string &type) {
        return index_told(7, "Image") +
               failure("get fileHashEnv() name or filePathEnv() not normal by keyword(Image)!\n") +
               failure("Key type input not normal\n") +
               failure("get file type(" + type + ") not normal by keyType(7)!\n");
    };
    clean();
    std::strcpy(records[1].file_type, "before");
    expect_result([&] { return PdtSMLInfo_Get_FileInfo("Image", 7, &records[1], 77); }, minus_one,
                  said("before"));
    EXPECT_EQ(records[1].valid, before);
    EXPECT_EQ(records[1].measurement_index, before);
    EXPECT_EQ(std::string(records[1].file_name), "Image-1.bin");
    // A type of the caller's without an end is shown as far as its field goes, which is too long for the log.
    clean();
    const Said long_one = during([&] { PdtSMLInfo_Get_FileInfo("Image", 7, &records[1], 77); });
    ASSERT_FALSE(long_one.syslog.empty());
    EXPECT_EQ(long_one.syslog.back().substr(0, 20), "get file type(######");
    EXPECT_LE(long_one.syslog.back().size(), 127u);
}

TEST_F(RecordTest, WhoseTypeCannotBeWrittenFails)
{
    be_measured(1);
    clean();
    records[1].file_type[0] = '\0';
    answer_platform("memset_s", 77);
    expect_result([&] { return PdtSMLInfo_Get_FileInfo("Image", 3, &records[1], 77); }, minus_one,
                  failure("clear file type info to zero unsuccessful, type = 3\n") +
                      failure("get file type() not normal by keyType(3)!\n"));
    EXPECT_EQ(records[1].valid, before);
    answer_platform("memcpy_s", 77, 2); // the two names are copied before
    show_directory({"Image"});
    expect_result([&] { return PdtSMLInfo_Get_FileInfo("Image", 3, &records[1], 77); }, minus_one,
                  failure("get file type info unsuccessful, type = 3\n") +
                      failure("get file type() not normal by keyType(3)!\n"));
    EXPECT_EQ(records[1].valid, before);
}

TEST_F(RecordTest, NeedsAPlaceAKeywordAndADirectory)
{
    be_measured(1);
    expect_result([] { return PdtSMLInfo_Get_FileInfo("Image", 3, nullptr, 77); }, minus_one);
    expect_one(nullptr, 3, minus_one, row_without_image());
    expect_untouched(1, 2);
    show_no_directory(EACCES);
    expect_one("Image", 3, minus_one, failure("pstDir is null \n\n") + name_unknown("Image"));
    show_directory({"Image" + std::string(123, 'x')});
    expect_one("Image", 3, minus_one,
               failure("d_name length is longer than fileNameLen \n\n") + name_unknown("Image"));
    expect_untouched(1, 2);
}

} // namespace
} // namespace test
