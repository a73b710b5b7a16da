// SPDX-License-Identifier: Apache-2.0
// A board whose start-up was measured, with its boot directory and variables.
#pragma once

#include "support/board_test.hpp"
#include "trust/directory_reader.hpp"
#include "trust/measurement_rows.hpp"

#include <cstring>

namespace test
{

const std::string type_unread = "Not succeed to get board hardtype,ret=0x2710.\n";

inline Said sml_type_unread()
{
    return failure(type_unread) + failure("[drv_boot]PdtSMLInfoGetType Get board type unsuccessful\n");
}
inline Said index_told(std::uint32_t key_type, const std::string &keyword)
{
    return information(text("pdtSMLInfo get file index not normal,keyType=%d,  keyword=%s.\n\n",
                            static_cast<int>(key_type), keyword.c_str()));
}
inline Said type_told(std::uint32_t key_type)
{
    return information(text("get file type info(%s) keyType(%u)\n", type_texts[key_type].c_str(), key_type));
}
inline Said hash_told(const std::string &hash, const std::string &name)
{
    return information("get fileHash(" + hash + ") by env(" + name + ") success!\n");
}
inline Said patch_told(const std::string &patch, const std::string &name)
{
    return information("get patchInfo(" + patch + ") by env(" + name + ") success!\n");
}
inline Said hash_missing(const std::string &name)
{
    return failure("get fileHash env(" + name + ") unsuccess!\n");
}
inline Said patch_missing(const std::string &name)
{
    return failure("get patchInfo env(" + name + ") not normal!\n");
}
// What a record says of a missing hash and of a missing patch variable.
inline Said hash_unknown(const std::string &hash, const std::string &patch)
{
    return hash_missing(hash) + failure("get file hash(" + patch + ") unsuccess!\n");
}
inline Said patch_unknown(const std::string &patch)
{
    return patch_missing(patch) + failure("get file patchinfo(" + patch + ") unsuccess!\n");
}
inline Said name_unknown(const std::string &keyword)
{
    return failure("get file name not normal by keyword(" + keyword + ")!\n");
}

class MeasurementTest : public BoardTest
{
  protected:
    void TearDown() override
    {
        show_disk();
        BoardTest::TearDown();
    }
    void be_type(std::uint32_t board_type)
    {
        be(board_of_type[board_type]);
    }
    // Refuses the hard type once, after so many answers.
    void refuse_type_after(unsigned answers)
    {
        vboard::Fault fault;
        fault.device = board0;
        fault.item = item_hard_type;
        fault.code = 1;
        fault.skip = answers;
        board.add_fault(fault);
    }
    // Calls, and expects this result and these words.
    void expect_result(const std::function<std::uint32_t()> &action, std::uint32_t result,
                       const Said &said = nothing())
    {
        EXPECT_EQ(during([&] { EXPECT_EQ(action(), result); }), said);
    }
};

} // namespace test
