// SPDX-License-Identifier: Apache-2.0
// The board of each product model is that model: its feature file or key file wins.
#include "moxctl/session.hpp"

using namespace test;

namespace
{

struct ModelBoard {
    const char *board;
    const char *destination;
    const char *source; // below the package's program folder
};
void PrintTo(const ModelBoard &model, std::ostream *out)
{
    *out << model.board;
}

constexpr const char *features = "../data/paf.dat";
constexpr const char *key = "../conf/keyFile_MOX.txt";

constexpr ModelBoard models[] = {
    {"kyp362r-h", features, "res/mim/paf_KYP362R_HJV.bin"},
    {"kyp432r", features, "res/mim/paf_kyp427W_432R.bin"},
    {"kyp432v-6273", features, "res/mim/paf_kyp245W_432V.bin"},
    {"kyp432v-6274", features, "res/mim/paf_kyp519W_432V.bin"},
    {"kyp432r-6273", features, "res/mim/paf_kyp245W_432R.bin"},
    {"kyp432r-6274", features, "res/mim/paf_kyp519W_432R.bin"},
    {"kyp467j", features, "res/mim/paf_kyp467j_427W.bin"},
    {"kyp247", features, "res/mim/paf_KYP247.bin"},
    {"kyp467r", features, "res/mim/paf_KYP_467R.bin"},
    {"kyp362r-l", features, "res/mim/paf_KYP362R_LW.bin"},
    {"kyp362r-w", features, "res/mim/paf_KYP362R_LW.bin"},
    {"kyp362r-z", features, "res/mim/paf_KYP362R_ZQ.bin"},
    {"gl6264-q2r", features, "res/mim/paf_GL6264_Q2R.bin"},
    {"gl6264-q2h", features, "res/mim/paf_GL6264_Q2H.bin"},
    {"gl6264-q2v", features, "res/mim/paf_GL6264_Q2V.bin"},
    {"gl6264-q2v-j", features, "res/mim/paf_GL6264_Q2V_J.bin"},
    {"kyp613-s", features, "res/mim/paf_Ploxy_H637S.bin"},
    {"dub594j-r92", features, "res/mim/paf_DUB_594J_R92.bin"},
    {"dub594h-r22", features, "res/mim/paf_dub594h_r22.bin"},
    {"gl6264-q7", features, "res/mim/paf_GL6264_Q7.bin"},
    {"gl6264-q7z", features, "res/mim/paf_GL6264_Q7Z.bin"},
    {"gl6264-r22", features, "res/mim/paf_GL6264_R22.bin"},
    {"ploxy-h639q", features, "res/mim/paf_Ploxy_H639Q.bin"},
    {"ploxy-h632", features, "res/mim/paf_Ploxy_H632.bin"},
    {"ploxy-h632u", features, "res/mim/paf_Ploxy_H632U.bin"},
    {"ploxy-h622", features, "res/mim/paf_Ploxy_H622.bin"},
    {"ploxy-h622q", features, "res/mim/paf_Ploxy_H622Q.bin"},
    {"kyp362v-h", features, "res/mim/paf_KYP362V_H.bin"},
    {"kyp362v-j", features, "res/mim/paf_KYP362V_J.bin"},
    {"kyp627-s", features, "res/mim/paf_Ploxy_H647S.bin"},
    {"wox415", features, "data/paf_wox415.bin"},
    {"wox462", features, "data/paf_wox462.bin"},
    {"wox458u", features, "data/paf_wox458u.bin"},
    {"wox475", features, "data/paf_wox475.bin"},
    {"wox247v", features, "data/paf_wox247v.bin"},
    {"wox467", features, "data/paf_wox467.bin"},
    {"wox475u", features, "data/paf_wox475u.bin"},
    {"wox462r", features, "data/paf_wox462r.bin"},
    {"wox374l", features, "data/paf_wox374l.bin"},
    {"wox-cpe-27", features, "data/paf_wox_cpe_27.bin"},
    {"wox-cpe-382l", features, "data/paf_wox_cpe_382l.bin"},
    {"wox362vl", features, "data/paf_wox362vl.bin"},
    {"dub594h-r22-pair", features, "data/paf_wox_cpe_382l.bin"},
    {"wox247u", key, "conf/keyFile_MOX_WOX247U.txt"},
    {"wox247l", key, "conf/keyFile_MOX_WOX247L.txt"},
    {"wox247w", key, "conf/keyFile_MOX_WOX247W.txt"},
    {"wox362u", key, "conf/keyFile_MOX_WOX362U.txt"},
};

class PlanModels : public Session, public testing::WithParamInterface<ModelBoard>
{
};

TEST_P(PlanModels, TheModelsOwnFileWins)
{
    start_board(GetParam().board);
    const json plan = object({"plan"});
    std::string winner;
    for (const json &destination : plan.at("destinations"))
        if (destination.at("destination") == GetParam().destination && !destination.at("winner").is_null())
            winner = destination.at("winner").at("source");
    EXPECT_EQ(winner, std::string("../pkg_pool/program/current/") + GetParam().source);
}

INSTANTIATE_TEST_SUITE_P(Boards, PlanModels, testing::ValuesIn(models), [](const auto &model) {
    std::string name = model.param.board;
    std::ranges::replace(name, '-', '_');
    return name;
});

} // namespace
