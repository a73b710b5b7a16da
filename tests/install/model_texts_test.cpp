// SPDX-License-Identifier: Apache-2.0
// Operators' tools search the library for its message texts: each stands in the built file as it is printed.
#include "support/library_texts.hpp"

namespace
{

constexpr std::string_view texts[] = {
    "pack_type",
    "product_service_type",
    "get service type env unsuccess!\n",
    "Drvboot Install Runfile By Hardtype NOK for get hard type NOK\n",
    "Drvboot Is Install GL6264_Q7Z Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install GL6264 R22 Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install GL6264 H639Q Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install Ploxy_H632U Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install GL6264 H622 Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install GL6264 H622Q Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install KYP362R_ZQ Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install GL6264_Q2R Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install GL6264_Q2H Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install GL6264_Q2V Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install GL6264_Q2V_J Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install KYP613_S Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install GL6264_R92 Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot Is Install KYP627_S Runfile By Hardtype nok for get hard type unsuccess\n",
    "Drvboot GL6264_Q7Z get local encap logic id NOK, return 0x%x\n",
    "Drvboot Ploxy_H632U get local encap logic id NOK, return 0x%x\n",
    "Drvboot get local encap logic id NOK, return 0x%x\n",
    "Drvboot get local encap logic id NOK\n",
};

TEST(ModelTexts, StandInTheLibraryAsTheyArePrinted)
{
    test::expect_in_library(texts);
}

// These models speak in a sibling's name; words of their own would be another text than operators know.
TEST(ModelTexts, HaveNoneForTheModelsThatSpeakInASiblingsName)
{
    constexpr std::string_view others[] = {"Is Install GL6264_Q7 Runfile",
                                           "Is Install Ploxy_H632 Runfile",
                                           "Is Install DUB594_R22 Runfile",
                                           "Is Install KYP362R_LW Runfile",
                                           "Is Install KYP362V",
                                           "Is Install GL6264_R22",
                                           "Is Install GL6264_H6",
                                           "get service type env unsuccess.",
                                           "Hardtype NOK for get hard type unsuccess"};
    test::expect_not_in_library(others);
}

} // namespace
