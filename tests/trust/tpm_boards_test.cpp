// SPDX-License-Identifier: Apache-2.0
// What the board's hard type alone tells of TPM and trusted startup, and when secure boot is asked for.
#include "trust/tpm_fixture.hpp"

#include "trust/trust_boards.hpp"

#include <moxboot/platform.h>

#include <cerrno>
#include <climits>
#include <dlfcn.h>

namespace test
{
namespace
{

const char *const secure_boot = "/lib/libnb_bsp.so";
const std::string ask_active = "env read tpm_is_actived";

class TpmBoardsTest : public TpmTest
{
  protected:
    void expect_trust(std::uint32_t answer, const Said &said = nothing())
    {
        EXPECT_EQ(heard([&] { EXPECT_EQ(MOX_GetTrustStartupType(), answer); }), said);
        EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
    }
    // What is opened next is a library of the test's own.
    static void open_next(const char *file)
    {
        void *library = dlopen(file, RTLD_NOW);
        ASSERT_NE(library, nullptr) << dlerror();
        answer_libc("dlopen", reinterpret_cast<long>(library));
    }
    void give_secure_boot(int answer)
    {
        open_next(secure_boot_library());
        on_secure_boot = [=, this] {
            ++asked;
            EXPECT_TRUE(loaded(secure_boot_library()));
            return answer;
        };
    }
    void expect_secure_boot_asked() const
    {
        EXPECT_EQ(asked, 1u);
        expect_one_use(secure_boot, 2, true, true);
        EXPECT_FALSE(loaded(secure_boot_library()));
    }
    void expect_random(std::uint32_t answer, const Said &said, const std::vector<std::string> &wanted)
    {
        EXPECT_EQ(heard([&] { EXPECT_EQ(MOX_IsSupportTpmRandom(), answer); }), said);
        EXPECT_EQ(requests(), wanted);
        expect_nobody_asked();
    }
};

TEST_F(TpmBoardsTest, TheseAreReady)
{
    unsigned ready = 0;
    for (std::uint32_t hard_type : trust_candidates()) {
        be(hard_type);
        const bool wanted = among(tpm_boards, hard_type);
        ready += wanted;
        EXPECT_EQ(heard([&] { EXPECT_EQ(DrvBootIsTpmsiReady(), wanted ? 1u : 0u) << std::hex << hard_type; }),
                  nothing());
        EXPECT_EQ(requests(), std::vector<std::string>{ask_type});
    }
    EXPECT_EQ(ready, 17u);
}

TEST_F(TpmBoardsTest, ABoardThatCannotTellItsTypeIsNotReady)
{
    refuse(board0, item_hard_type);
    EXPECT_EQ(heard([] { EXPECT_EQ(DrvBootIsTpmsiReady(), 0u); }), not_ready_told());
    EXPECT_EQ(DrvBootIsTpmsiReady(), 1u);
}

TEST_F(TpmBoardsTest, OneIsAttestedRemotely)
{
    EXPECT_EQ(heard([&] {
                  for (std::uint32_t hard_type : trust_candidates())
                      EXPECT_EQ(DrvbootIsSupportRemoteAttest(hard_type), hard_type == 0x90000713 ? 1u : 0u);
              }),
              nothing());
    EXPECT_TRUE(operations().empty());
}

TEST_F(TpmBoardsTest, AListIsSearchedAsFarAsItsCountSays)
{
    constexpr std::uint32_t list[] = {7, 0xffffffff, 0, 7, 9};
    EXPECT_EQ(heard([&] {
                  for (std::uint32_t count = 0; count <= 5; ++count)
                      for (std::uint32_t wanted : {0u, 1u, 7u, 9u, 0xffffffffu})
                          EXPECT_EQ(IsExistInHWList(wanted, list, count),
                                    std::find(list, list + count, wanted) != list + count ? 1u : 0u)
                              << wanted << " among " << count;
                  EXPECT_EQ(IsExistInHWList(7, nullptr, 0), 0u);
                  EXPECT_EQ(IsExistInHWList(7, nullptr, 5), 0u);
              }),
              nothing());
}

// ---- trusted startup -------------------------------------------------------------------------------------

TEST_F(TpmBoardsTest, TrustedStartupIsAskedOfSecureBootOnSomeBoardsOnly)
{
    unsigned always = 0, by_secure_boot = 0;
    for (std::uint32_t hard_type : trust_candidates()) {
        SCOPED_TRACE(text("hard type 0x%x", hard_type));
        be(hard_type);
        if (among(secure_boot_boards, hard_type)) {
            ++by_secure_boot;
            give_secure_boot(1);
            expect_trust(3);
            expect_secure_boot_asked();
            give_secure_boot(0);
            expect_trust(0);
            expect_secure_boot_asked();
        } else {
            const bool trusted = among(trusted_boards, hard_type);
            always += trusted;
            expect_trust(trusted ? 3 : 0);
            expect_nobody_asked();
        }
    }
    EXPECT_EQ(always, 6u);
    EXPECT_EQ(by_secure_boot, 4u);
}

TEST_F(TpmBoardsTest, ABoardThatCannotTellItsTypeIsNotTrusted)
{
    be(0x90000713);
    refuse(board0, item_hard_type);
    expect_trust(0, failure(type_unread));
    be(0x90020720);
    refuse(board0, item_hard_type);
    expect_trust(0, failure(type_unread));
    expect_nobody_asked();
}

TEST_F(TpmBoardsTest, SecureBootIsEnabledWhenTheLibrarySaysExactlyOne)
{
    be(0x90020720);
    for (int answer : {1, 0, 2, -1, 0x100, 0x101, 0x10001, INT_MAX, INT_MIN, INT_MIN + 1}) {
        give_secure_boot(answer);
        EXPECT_EQ(heard([&] { EXPECT_EQ(Drvboot_GetSecureBootType(), answer == 1 ? 1u : 0u) << answer; }),
                  nothing());
        expect_secure_boot_asked();
        EXPECT_TRUE(operations().empty());
        give_secure_boot(answer);
        expect_trust(answer == 1 ? 3 : 0);
    }
}

TEST_F(TpmBoardsTest, SecureBootIsOffWithoutTheLibraryOrItsFunction)
{
    be(0x90020720);
    fail_libc("dlopen", ENOENT);
    EXPECT_EQ(heard([] { EXPECT_EQ(Drvboot_GetSecureBootType(), 0u); }), nothing());
    expect_one_use(secure_boot, 2, false, false);
    fail_libc("dlopen", ENOENT);
    expect_trust(0);
    expect_one_use(secure_boot, 2, false, false);
    open_next(library_with(active_function));
    expect_trust(0);
    expect_one_use(secure_boot, 2, true, false);
    EXPECT_FALSE(loaded(library_with(active_function)));
    EXPECT_EQ(asked, 0u);
}

// ---- random bytes of the TPM -----------------------------------------------------------------------------

TEST_F(TpmBoardsTest, AnActiveTpmGivesRandomBytesOnAnyBoard)
{
    board.set_boot_env("tpm_is_actived", "true");
    for (std::uint32_t hard_type : trust_candidates()) {
        be(hard_type);
        expect_random(1, nothing(), {ask_active});
    }
    ASSERT_EQ(SetEnv("product_family_type", "8"), 0u);
    be(0x90020786);
    expect_random(1, nothing(), {ask_active});
}

TEST_F(TpmBoardsTest, WithoutThatTheBoardAndItsFamilyTell)
{
    const Said missing = information("Env product_family_type not exist.\n");
    board.set_boot_env("product_family_type", "8"); // another environment
    unsigned family = 0, always = 0;
    for (const char *value : {"True", "false", "", "true "}) {
        board.set_boot_env("tpm_is_actived", value);
        for (std::uint32_t hard_type : trust_candidates()) {
            be(hard_type);
            if (among(random_by_family_boards, hard_type)) {
                ++family;
                expect_random(1, missing, {ask_active, ask_type});
            } else if (among(random_boards, hard_type)) {
                ++always;
                expect_random(1, information(text("[drv_boot] TPM random board: %x\n\n", hard_type)),
                              {ask_active, ask_type});
            } else {
                expect_random(0, nothing(), {ask_active, ask_type});
            }
        }
    }
    EXPECT_EQ(family, 4 * 5u);
    EXPECT_EQ(always, 4 * 3u);
}

TEST_F(TpmBoardsTest, OneFamilyIsPassedOver)
{
    const Said skipped = information("[drv_boot] TPM random skip product ptn.\n");
    for (const auto &[value, answer] : {std::pair{"8", 0u},
                                        {"08", 0u},
                                        {"0x8", 0u},
                                        {"8x", 0u},
                                        {"9", 1u},
                                        {"7", 1u},
                                        {"18", 1u},
                                        {"80", 1u},
                                        {"x8", 1u},
                                        {"0", 1u}}) {
        ASSERT_EQ(SetEnv("product_family_type", value), 0u);
        for (std::uint32_t hard_type : random_by_family_boards) {
            be(hard_type);
            expect_random(answer, answer == 0 ? skipped : nothing(), {ask_active, ask_type});
        }
        for (std::uint32_t hard_type : random_boards) {
            be(hard_type);
            expect_random(1, information(text("[drv_boot] TPM random board: %x\n\n", hard_type)),
                          {ask_active, ask_type});
        }
    }
}

TEST_F(TpmBoardsTest, ABoardThatCannotTellItsTypeGivesNoRandomBytes)
{
    be(0x90020752);
    refuse(board0, item_hard_type);
    expect_random(0, failure(type_unread), {ask_active, ask_type});
    refuse(board0, item_hard_type);
    board.set_boot_env("tpm_is_actived", "true");
    expect_random(1, nothing(), {ask_active});
}

} // namespace
} // namespace test
