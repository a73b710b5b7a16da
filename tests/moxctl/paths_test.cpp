// SPDX-License-Identifier: Apache-2.0
// moxctl paths: where product files lie.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::ContainsRegex;
using testing::HasSubstr;

class Paths : public Session
{
  protected:
    static constexpr const char *homes = "mkdir -p /opt/moxv8/home /opt/moxv8bak/home; ";
};

TEST_F(Paths, A_package_is_found_where_it_is_kept)
{
    start(0x900005d1);
    shell(std::string(homes) +
          "cd /opt/moxv8bak/home; touch one.cc two.cc; cd /opt/moxv8/home; touch one.cc; "
          "ln -s one.cc two.cc; ln -s one.cc three.cc");
    EXPECT_EQ(object({"paths", "--package", "one.cc"}),
              (json{{"package", "/boot/"}, {"image_manager", nullptr}, {"resource_package", "reslink_le"}}));
    EXPECT_EQ(object({"paths", "--package", "/flash/two.cc"}).at("package"), "/bootbak/");
    for (const std::string &name : {std::string("three.cc"), std::string("four.cc"), std::string(237, 'n')}) {
        EXPECT_TRUE(object({"paths", "--package", name}, 1).at("package").is_null());
        EXPECT_EQ(moxctl({"paths", "--package", name}).err,
                  "moxctl: it cannot be told where the package \"" + name + "\" is kept\n");
    }
}

TEST_F(Paths, Other_boards_tell_of_no_package)
{
    start(an_mpu);
    shell(std::string(homes) + "touch /opt/moxv8/home/one.cc");
    const Ended ended = moxctl({"paths", "--package", "one.cc"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.out,
                ContainsRegex("Package +not applicable +only boards of hard type 0x900005d1 tell; this is "
                              "0x90020709\n"));
    EXPECT_EQ(object({"paths"}), (json{{"image_manager", nullptr}, {"resource_package", "reslink_le"}}));
}

TEST_F(Paths, A_board_that_cannot_tell_its_type_is_told)
{
    start(0x900005d1);
    fault({"ioctl", board0, "--item", "0x8000001", "--code", "7", "--times", "0"});
    EXPECT_EQ(object({"paths", "--package", "one.cc"}, 1).at("errors").at("package").at("code"), 10000);
}

TEST_F(Paths, The_resource_package_follows_the_work_mode)
{
    start_with_profile("[platform-env]\nnextworkmode = \"ptn_iot\"\n[memory-env]\npack_type = \"101\"\n");
    EXPECT_EQ(object({"paths"}).at("resource_package"), "reslink_le_ptn");
}

TEST_F(Paths, The_image_manager_lies_on_the_ram_disk)
{
    start(an_mpu);
    if (shell("unshare -m true").status != 0)
        GTEST_SKIP() << "no mount namespace to be had";
    const Ended ended = shell("exec unshare -m sh -c 'mkdir /opt/moxv8/bim && mount -t tmpfs /dev/pramdisk "
                              "/opt/moxv8/bim && $MOXCTL paths'");
    EXPECT_EQ(ended.status, 0) << ended.err;
    EXPECT_THAT(ended.out, ContainsRegex("Boot image manager +/opt/moxv8/bim/\n"));
    EXPECT_THAT(output({"paths"}), ContainsRegex("Boot image manager +none +/opt/moxv8/bim is not there"));
}

} // namespace

} // namespace test
