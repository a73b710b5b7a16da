// SPDX-License-Identifier: Apache-2.0
#include "install/link_rows.hpp"

namespace test
{

const std::vector<EncapRun> encap_runs = {
    {0, "data/paf_wox415.bin", "../data/paf.dat", {0x4000}},
    {1, "data/paf_wox462.bin", "../data/paf.dat", {0x2000, 0x2002}},
    {3, "data/paf_wox458u.bin", "../data/paf.dat", {0x5000}},
    {4, "data/paf_wox475.bin", "../data/paf.dat", {0x1000, 0x1001, 0x1002}},
    {7, "data/paf_wox247v.bin", "../data/paf.dat", {0x3000}},
    {8, "data/paf_wox458u.bin", "../data/paf.dat", {0x5001}},
    {9,
     "data/paf_wox467.bin",
     "../data/paf.dat",
     {0x6000, 0x6001, 0x6002, 0x6004, 0x6006, 0x6007, 0x6008, 0x6009}},
    {17,
     "data/paf_wox475u.bin",
     "../data/paf.dat",
     {0x7000, 0x7001, 0x7004, 0x7007, 0x7008, 0x7009, 0x7006, 0x7005, 0x700A, 0x700B, 0x7002}},
    {28, "data/paf_wox467.bin", "../data/paf.dat", {0x6003}},
    {29, "data/paf_wox475u.bin", "../data/paf.dat", {0x7003}},
    {30, "data/paf_wox467.bin", "../data/paf.dat", {0x6005}},
    {31, "data/paf_wox462r.bin", "../data/paf.dat", {0x8001, 0x8004, 0x8005, 0x8002, 0x8003, 0x8000}},
    {37, "data/paf_wox374l.bin", "../data/paf.dat", {0x9000, 0x9001, 0x9002, 0x9003}},
    {41, "data/paf_dub594h_r22.bin", "../data/paf.dat", {0xC000, 0xD000, 0xE000}},
    {44, "data/paf_wox_cpe_27.bin", "../data/paf.dat", {0xC015}},
    {45, "data/paf_wox_cpe_382l.bin", "../data/paf.dat", {0xD000, 0xD001}},
    {47, "data/paf_wox362vl.bin", "../data/paf.dat", {0xC030, 0xC031}},
    {49, "conf/keyFile_MOX_WOX247V.txt", "../conf/keyFile_MOX.txt", {0x3000}},
    {50, "conf/keyFile_MOX_WOX247U.txt", "../conf/keyFile_MOX.txt", {0x3001}},
    {51, "conf/keyFile_MOX_WOX247L.txt", "../conf/keyFile_MOX.txt", {0x3002}},
    {52, "conf/keyFile_MOX_WOX247W.txt", "../conf/keyFile_MOX.txt", {0x3003}},
    {53, "conf/keyFile_MOX_WOX415.txt", "../conf/keyFile_MOX.txt", {0x4000}},
    {54, "conf/keyFile_MOX_WOX462.txt", "../conf/keyFile_MOX.txt", {0x2000, 0x2002}},
    {56, "conf/keyFile_MOX_WOX362U.txt", "../conf/keyFile_MOX.txt", {0x5003, 0x5004}},
    {58, "conf/keyFile_MOX_WOX467.txt", "../conf/keyFile_MOX.txt", {0x6000, 0x6001, 0x6002, 0x6004}},
    {62, "data/keyFile_MOX_WOX467.txt", "../conf/keyFile_MOX.txt", {0x6006, 0x6007, 0x6008, 0x6009}},
    {66,
     "conf/keyFile_MOX_WOX475U.txt",
     "../conf/keyFile_MOX.txt",
     {0x7000, 0x7001, 0x7004, 0x7007, 0x7008, 0x7009, 0x7006, 0x7005, 0x700A, 0x700B, 0x7002}},
    {77, "conf/keyFile_MOX_WOX467.txt", "../conf/keyFile_MOX.txt", {0x6003}},
    {78, "conf/keyFile_MOX_WOX462R.txt", "../conf/keyFile_MOX.txt", {0x8000}},
    {79, "data/keyFile_MOX_WOX462R.txt", "../conf/keyFile_MOX.txt", {0x8002, 0x8003}},
    {81, "conf/keyFile_MOX_WOX475U.txt", "../conf/keyFile_MOX.txt", {0x7003}},
    {82, "conf/keyFile_MOX_WOX467.txt", "../conf/keyFile_MOX.txt", {0x6005}},
    {83, "conf/keyFile_MOX_WOX462R.txt", "../conf/keyFile_MOX.txt", {0x8001, 0x8004, 0x8005}},
    {86, "conf/keyFileV2_MOX_WOX247V.txt", "../conf/keyFileV2_MOX.txt", {0x3000}},
    {87, "conf/keyFileV2_MOX_WOX247U.txt", "../conf/keyFileV2_MOX.txt", {0x3001}},
    {88, "conf/keyFileV2_MOX_WOX415.txt", "../conf/keyFileV2_MOX.txt", {0x4000}},
    {89, "conf/keyFileV2_MOX_WOX362U.txt", "../conf/keyFileV2_MOX.txt", {0x5003, 0x5004}},
    {91, "conf/keyFileV2_MOX_WOX467.txt", "../conf/keyFileV2_MOX.txt", {0x6000, 0x6001, 0x6002, 0x6004}},
    {95, "data/keyFileV2_MOX_WOX467.txt", "../conf/keyFileV2_MOX.txt", {0x6006, 0x6007, 0x6008, 0x6009}},
    {99,
     "conf/keyFileV2_MOX_WOX475U.txt",
     "../conf/keyFileV2_MOX.txt",
     {0x7000, 0x7001, 0x7004, 0x7007, 0x7008, 0x7009, 0x7006, 0x7005, 0x700A, 0x700B, 0x7002}},
    {110, "conf/keyFileV2_MOX_WOX467.txt", "../conf/keyFileV2_MOX.txt", {0x6003}},
    {111, "conf/keyFileV2_MOX_WOX462R.txt", "../conf/keyFileV2_MOX.txt", {0x8000}},
    {112, "data/keyFileV2_MOX_WOX462R.txt", "../conf/keyFileV2_MOX.txt", {0x8002, 0x8003}},
    {114, "conf/keyFileV2_MOX_WOX475U.txt", "../conf/keyFileV2_MOX.txt", {0x7003}},
    {115, "conf/keyFileV2_MOX_WOX467.txt", "../conf/keyFileV2_MOX.txt", {0x6005}},
    {116, "conf/keyFileV2_MOX_WOX462R.txt", "../conf/keyFileV2_MOX.txt", {0x8001, 0x8004, 0x8005}},
};

std::vector<EncapRow> encap_rows()
{
    std::vector<EncapRow> rows;
    for (const EncapRun &run : encap_runs)
        for (std::uint32_t id : run.logic_ids)
            rows.push_back(
                {0x42F00000 + id, std::string("../pkg_pool/program/current/") + run.source, run.destination});
    return rows;
}

} // namespace test
