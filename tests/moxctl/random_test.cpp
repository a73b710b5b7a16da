// SPDX-License-Identifier: Apache-2.0
// moxctl random: as many bytes as asked for, in the form asked for.
#include "moxctl/session.hpp"

#include <algorithm>

namespace test
{

namespace
{

using testing::HasSubstr;
using testing::MatchesRegex;

class Random : public Session
{
  protected:
    Random()
    {
        start_board("gl6264-r22");
    }
};

TEST_F(Random, As_many_bytes_as_asked_for_are_printed_as_digits)
{
    EXPECT_THAT(output({"random", "1"}), MatchesRegex("[0-9a-f][0-9a-f]\n"));
    const std::string digits = output({"random", "32"});
    EXPECT_THAT(digits, MatchesRegex("[0-9a-f]+\n"));
    EXPECT_EQ(digits.size(), 65u);
    EXPECT_EQ(output({"random", "32", "--hex"}).size(), 65u);
    EXPECT_NE(output({"random", "32"}), digits);
}

TEST_F(Random, Raw_bytes_come_with_no_end_of_line)
{
    EXPECT_EQ(output({"random", "1000", "--raw"}).size(), 1000u);
}

TEST_F(Random, No_two_neighbours_are_equal)
{
    const std::string bytes = output({"random", "5000", "--raw"});
    ASSERT_EQ(bytes.size(), 5000u);
    EXPECT_EQ(std::adjacent_find(bytes.begin(), bytes.end()), bytes.end());
}

TEST_F(Random, Base64_is_padded)
{
    EXPECT_THAT(output({"random", "6", "--base64"}), MatchesRegex("[A-Za-z0-9+/]+\n"));
    EXPECT_THAT(output({"random", "7", "--base64"}), MatchesRegex("[A-Za-z0-9+/]+==\n"));
    EXPECT_EQ(output({"random", "7", "--base64"}).size(), 13u);
}

TEST_F(Random, A_program_gets_the_form_with_the_bytes)
{
    const json hex = object({"random", "4"});
    EXPECT_EQ(hex.at("count"), 4);
    EXPECT_EQ(hex.at("encoding"), "hex");
    EXPECT_EQ(hex.at("data").get<std::string>().size(), 8u);
    EXPECT_EQ(object({"random", "4", "--raw"}).at("encoding"), "hex");
    const json encoded = object({"random", "4", "--base64"});
    EXPECT_EQ(encoded.at("encoding"), "base64");
    EXPECT_EQ(encoded.at("data").get<std::string>().size(), 8u);
}

TEST_F(Random, A_wrong_count_or_two_forms_are_refused)
{
    for (const Words &words :
         {Words{"random"}, Words{"random", "0"}, Words{"random", "1048577"}, Words{"random", "many"},
          Words{"random", "8", "--raw", "--hex"}, Words{"random", "8", "--raw", "--base64"}}) {
        const Ended ended = moxctl(words);
        EXPECT_EQ(ended.status, 2) << testing::PrintToString(words);
        EXPECT_EQ(ended.out, "");
        EXPECT_THAT(ended.err, HasSubstr("Try \"moxctl --help\""));
    }
}

} // namespace

} // namespace test
