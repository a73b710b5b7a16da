// SPDX-License-Identifier: Apache-2.0
// moxctl crl: a list delivered to the kernel's module and the secure driver, and what both hold.
#include "moxctl/session.hpp"

namespace test
{

namespace
{

using testing::HasSubstr;

constexpr const char *module = "/dev/module_crl";

class Crl : public Session
{
  protected:
    // Makes a list of `size` bytes on the board.
    std::string list(const std::string &size)
    {
        EXPECT_EQ(shell("head -c " + size + " /dev/zero | tr '\\0' 'c' > /tmp/list.crl").status, 0);
        return "/tmp/list.crl";
    }
    std::string sum()
    {
        return on_board({"sha256sum", "/tmp/list.crl"}).out.substr(0, 64);
    }
};

TEST_F(Crl, A_list_reaches_module_and_driver_whole)
{
    start_board("gl6264-r22");
    EXPECT_EQ(object({"crl", "show"}).at("module"), (json{{"size", 0}, {"sha256", nullptr}}));
    EXPECT_TRUE(object({"crl", "show"}).at("secure_driver").is_null());
    for (const char *size : {"1", "1023", "1024", "1025", "2500", "200000"}) {
        EXPECT_EQ(output({"crl", "write", list(size)}), "");
        const json held{{"size", std::stoul(size)}, {"sha256", sum()}};
        EXPECT_EQ(object({"crl", "show"}), (json{{"module", held}, {"secure_driver", held}})) << size;
    }
    EXPECT_EQ(object({"crl", "write", list("7")}),
              (json{{"file", "/tmp/list.crl"}, {"module", true}, {"secure_driver", true}}));
    EXPECT_THAT(output({"crl", "show"}), HasSubstr("7 bytes  SHA-256 " + sum()));
}

TEST_F(Crl, A_board_without_the_module_says_so)
{
    start_board("qs3520-mpu");
    const Ended ended = moxctl({"crl", "write", list("10")});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: the board has no CRL module, and the secure driver got no list\n");
    EXPECT_EQ(object({"crl", "show"}), (json{{"module", nullptr}, {"secure_driver", nullptr}}));
    EXPECT_THAT(output({"crl", "show"}), HasSubstr("the board has no /dev/module_crl"));
}

TEST_F(Crl, A_list_that_is_empty_or_missing_is_refused_in_words)
{
    start_board("gl6264-r22");
    Ended ended = moxctl({"crl", "write", list("0")});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: the list was not delivered (code 0xffffffff): get /tmp/list.crl's crl len "
                         "unsuccessfully.\n");
    ended = moxctl({"crl", "write", "/tmp/nowhere.crl"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.err, HasSubstr("get /tmp/nowhere.crl's realpath unsuccessfully."));
    EXPECT_EQ(moxctl({"crl", "write"}).status, 2);
}

TEST_F(Crl, A_module_that_refuses_keeps_what_it_has)
{
    start_board("gl6264-r22");
    output({"crl", "write", list("100")});
    const json before = object({"crl", "show"});
    fault({"write", module, "--errno", "EIO"});
    EXPECT_EQ(moxctl({"crl", "write", list("50")}).status, 1);
    EXPECT_EQ(object({"crl", "show"}), before);
    fault({"read", module, "--errno", "EIO", "--times", "0"});
    const json shown = object({"crl", "show"});
    EXPECT_TRUE(shown.at("module").is_null());
    EXPECT_THAT(shown.at("errors").at("module").at("text"), HasSubstr("cannot read /dev/module_crl"));
}

TEST_F(Crl, A_driver_that_cannot_keep_the_list_fails_the_command)
{
    start_board("gl6264-r22");
    ASSERT_EQ(shell("mkdir -p /opt/moxv8/var/secure-driver.crl/full").status, 0);
    const Ended ended = moxctl({"crl", "write", list("10")});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.err, "moxctl: the CRL module took the list, the secure driver did not\n");
}

} // namespace

} // namespace test
