// SPDX-License-Identifier: Apache-2.0
// The verbs about trust on boards of every kind of measurement, the one without any included.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

struct KindOfBoard {
    const char *board;
    json type;
    std::size_t images;
    std::size_t hashes; // of these images; the others' variables are missing
    bool tpm;
};

class TrustOnBoards : public Session, public testing::WithParamInterface<KindOfBoard>
{
};

INSTANTIATE_TEST_SUITE_P(Kinds, TrustOnBoards,
                         testing::Values(KindOfBoard{"kyp362r-w", 1, 4, 3, true},
                                         KindOfBoard{"gl6264-q2h", 1, 4, 4, true},
                                         KindOfBoard{"qs3540-ng-bios", 2, 3, 3, true},
                                         KindOfBoard{"gl6264-r22", 3, 2, 2, true},
                                         KindOfBoard{"qs3520-mpu", nullptr, 0, 0, false}),
                         [](const auto &row) { return "kind" + std::to_string(row.index); });

TEST_P(TrustOnBoards, Random_bytes_tpm_and_measurements_are_told)
{
    start_board(GetParam().board);
    EXPECT_EQ(output({"random", "32"}).size(), 65u);
    const json tpm = object({"tpm"});
    EXPECT_EQ(tpm.at("present"), GetParam().tpm);
    EXPECT_EQ(tpm.at("active"), GetParam().tpm);
    const json measured = object({"measurements"});
    EXPECT_EQ(measured.at("board_type"), GetParam().type);
    ASSERT_EQ(measured.at("measurements").size(), GetParam().images);
    std::size_t hashes = 0;
    for (const json &record : measured.at("measurements")) {
        EXPECT_EQ(record.at("valid"), true) << record;
        hashes += record.at("hash").get<std::string>().size() == 64 ? 1u : 0u;
    }
    EXPECT_EQ(hashes, GetParam().hashes);
}

} // namespace

} // namespace test
