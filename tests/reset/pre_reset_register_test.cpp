// SPDX-License-Identifier: Apache-2.0
// Registration: what is made before anything is checked, and what the table takes. No thread is started here:
// its own lines would come in between.
#include "reset/pre_reset_test.hpp"

#include <fstream>

namespace test
{
namespace
{

constexpr uint32_t registered = 0;
constexpr uint32_t turned_down = 1;

class PreResetRegistrationTest : public PreResetTest
{
  protected:
    void SetUp() override
    {
        PreResetTest::SetUp();
        answer_libc("pthread_create", 0, 0, 100);
    }

    static Said pipe_made(const char *path)
    {
        return information(text("[PRRESET]Create fifo[%s] success.\n", path));
    }
    static Said thread_asked_for(int result = 0)
    {
        return information(text("[PRRESET]Task create threadid=0x0, pid=0x%x, ret=0x%x.\n",
                                static_cast<unsigned>(getpid()), static_cast<unsigned>(result)));
    }
    static Said module_registered(const char *name)
    {
        return information(text("[PRRESET]Module[%s] register pre rst func.\n", name));
    }
    // Registers with the pipes in place; only the answer to the registration itself counts then.
    Said registering(MoxPreResetHandler handler, const char *name, uint32_t expected)
    {
        uint32_t result = 99;
        Said said = during([&] { result = MOX_Register_PreResetProcFunc(handler, name); });
        EXPECT_EQ(result, expected);
        return said;
    }
    void make_pipes()
    {
        make_pipe(request_pipe);
        make_pipe(answer_pipe);
    }
    static std::string name_of(int entry)
    {
        return g_preResetHandleTbl[entry].name;
    }
};

bool is_pipe(const char *path)
{
    struct stat status = {};
    return lstat(path, &status) == 0 && S_ISFIFO(status.st_mode);
}

TEST_F(PreResetRegistrationTest, TheTableIsEmptyAtLoadAndHasTwoEntries)
{
    EXPECT_EQ(std::size(g_preResetHandleTbl), 2u);
    EXPECT_EQ(sizeof g_preResetHandleTbl[0].name, 8u);
    for (const MoxPreResetEntry &entry : g_preResetHandleTbl) {
        EXPECT_EQ(entry.handler, nullptr);
        EXPECT_STREQ(entry.name, "");
    }
}

TEST_F(PreResetRegistrationTest, MakesPipesThenThreadThenRegisters)
{
    EXPECT_EQ(registering(first_handler, "power", registered),
              pipe_made(request_pipe) + pipe_made(answer_pipe) + thread_asked_for() +
                  module_registered("power"));
    EXPECT_EQ(g_preResetHandleTbl[0].handler, first_handler);
    EXPECT_EQ(name_of(0), "power");
    EXPECT_EQ(g_preResetHandleTbl[1].handler, nullptr);
    EXPECT_TRUE(is_pipe(request_pipe));
    EXPECT_TRUE(is_pipe(answer_pipe));
    EXPECT_EQ(requests(), std::vector<std::string>{});
}

TEST_F(PreResetRegistrationTest, PipesAreForEverybodyLessTheUmask)
{
    for (const mode_t mask : {mode_t{0}, mode_t{022}, mode_t{077}}) {
        unlink(request_pipe);
        const mode_t before = umask(mask);
        Creat_PreResetFIFO(request_pipe);
        umask(before);
        struct stat status = {};
        ASSERT_EQ(stat(request_pipe, &status), 0);
        EXPECT_EQ(status.st_mode & 07777u, 0777u & ~mask);
    }
}

TEST_F(PreResetRegistrationTest, TheSameHandlerUnderTheSameNameIsOneEntry)
{
    make_pipes();
    registering(first_handler, "power", registered);
    EXPECT_EQ(registering(first_handler, "power", registered),
              thread_asked_for() + information("[PRRESET]Module[power]'s pre rst func is exist already.\n"));
    EXPECT_EQ(g_preResetHandleTbl[1].handler, nullptr);
}

TEST_F(PreResetRegistrationTest, TheSameHandlerUnderAnotherNameTakesTheSecondEntry)
{
    make_pipes();
    registering(first_handler, "power", registered);
    EXPECT_EQ(registering(first_handler, "disk", registered), thread_asked_for() + module_registered("disk"));
    EXPECT_EQ(g_preResetHandleTbl[1].handler, first_handler);
    EXPECT_EQ(name_of(1), "disk");
}

TEST_F(PreResetRegistrationTest, AnotherHandlerUnderTheSameNameTakesTheSecondEntry)
{
    make_pipes();
    registering(first_handler, "power", registered);
    EXPECT_EQ(registering(second_handler, "power", registered),
              thread_asked_for() + module_registered("power"));
    EXPECT_EQ(g_preResetHandleTbl[1].handler, second_handler);
}

TEST_F(PreResetRegistrationTest, AThirdRegistrationFindsTheTableFull)
{
    make_pipes();
    registering(first_handler, "one", registered);
    registering(second_handler, "two", registered);
    const Said full =
        thread_asked_for() +
        failure("[PRRESET]Module[three] register pre rst func not success because of tbl full.\n");
    EXPECT_EQ(registering(first_handler, "three", turned_down), full);
    EXPECT_EQ(name_of(0), "one");
    EXPECT_EQ(name_of(1), "two");
    // Who stands in the table already is told so all the same, and a long name is no worse than a short one.
    EXPECT_EQ(registering(second_handler, "two", registered),
              thread_asked_for() + information("[PRRESET]Module[two]'s pre rst func is exist already.\n"));
    EXPECT_EQ(
        registering(first_handler, "12345678", turned_down),
        thread_asked_for() +
            failure("[PRRESET]Module[12345678] register pre rst func not success because of tbl full.\n"));
}

TEST_F(PreResetRegistrationTest, ANameHasSevenCharactersAtMost)
{
    make_pipes();
    EXPECT_EQ(registering(first_handler, "12345678", turned_down),
              thread_asked_for() + failure("String print not success, return check code=-1\n\n"));
    EXPECT_EQ(g_preResetHandleTbl[0].handler, nullptr);
    EXPECT_EQ(registering(first_handler, "1234567", registered),
              thread_asked_for() + module_registered("1234567"));
    EXPECT_EQ(name_of(0), "1234567");
}

TEST_F(PreResetRegistrationTest, AnEmptyNameIsAName)
{
    make_pipes();
    registering(first_handler, "", registered);
    EXPECT_EQ(g_preResetHandleTbl[0].handler, first_handler);
    EXPECT_EQ(Find_Repeat_Func(first_handler, ""), 0);
}

TEST_F(PreResetRegistrationTest, NullIsRefusedAfterPipesAndThread)
{
    const Said made = pipe_made(request_pipe) + pipe_made(answer_pipe) + thread_asked_for();
    EXPECT_EQ(registering(nullptr, "power", turned_down), made);
    EXPECT_EQ(registering(first_handler, nullptr, turned_down), thread_asked_for());
    EXPECT_EQ(g_preResetHandleTbl[0].handler, nullptr);
    EXPECT_TRUE(is_pipe(request_pipe));
}

TEST_F(PreResetRegistrationTest, ARefusedRegistrationStillMakesWhatIsMissing)
{
    make_pipes();
    registering(first_handler, "one", registered);
    registering(second_handler, "two", registered);
    ASSERT_EQ(unlink(answer_pipe), 0);
    registering(first_handler, "three", turned_down);
    EXPECT_TRUE(is_pipe(answer_pipe));
}

TEST_F(PreResetRegistrationTest, APipeThatCannotBeMadeIsToldAsFailureAndAsSuccess)
{
    fail_libc("mkfifo", EROFS);
    EXPECT_EQ(during([] { Creat_PreResetFIFO(request_pipe); }),
              failure(with_error("[PRRESET]Create fifo[%s] Nok[%s].\n", request_pipe, EROFS)) +
                  pipe_made(request_pipe));
}

TEST_F(PreResetRegistrationTest, WhatCanBeOpenedIsLeftAsItIs)
{
    std::ofstream(request_pipe) << "not a pipe";
    EXPECT_EQ(during([] { Creat_PreResetFIFO(request_pipe); }), nothing());
    std::string content;
    std::getline(std::ifstream(request_pipe), content);
    EXPECT_EQ(content, "not a pipe");

    ASSERT_EQ(mkdir("/dev/lm_directory", 0755), 0);
    EXPECT_EQ(during([] { Creat_PreResetFIFO("/dev/lm_directory"); }), nothing());
    EXPECT_TRUE(calls("mkfifo").empty());
}

TEST_F(PreResetRegistrationTest, WhatCannotBeOpenedGivesWayToAPipe)
{
    ASSERT_EQ(symlink("/nowhere", request_pipe), 0);
    EXPECT_EQ(during([] { Creat_PreResetFIFO(request_pipe); }), pipe_made(request_pipe));
    EXPECT_TRUE(is_pipe(request_pipe));
}

TEST_F(PreResetRegistrationTest, AThreadThatCouldNotBeMadeIsToldAndTriedAgain)
{
    forget_plans();
    answer_libc("pthread_create", EAGAIN);
    answer_libc("pthread_create", 0);
    EXPECT_EQ(during(Creat_PreResetThread), thread_asked_for(EAGAIN));
    EXPECT_EQ(during(Creat_PreResetThread), thread_asked_for());
    EXPECT_EQ(calls("pthread_create").size(), 2u);
}

TEST_F(PreResetRegistrationTest, FindsARepeatByHandlerAndName)
{
    make_pipes();
    EXPECT_EQ(Find_Repeat_Func(first_handler, "one"), 2);
    EXPECT_EQ(Find_Repeat_Func(nullptr, ""), 2) << "a free entry is nobody's";
    registering(first_handler, "one", registered);
    registering(second_handler, "two", registered);
    EXPECT_EQ(Find_Repeat_Func(first_handler, "one"), 0);
    EXPECT_EQ(Find_Repeat_Func(second_handler, "two"), 1);
    EXPECT_EQ(Find_Repeat_Func(first_handler, "two"), 2);
    EXPECT_EQ(Find_Repeat_Func(second_handler, "one"), 2);
    EXPECT_EQ(Find_Repeat_Func(first_handler, "on"), 2);
    EXPECT_EQ(Find_Repeat_Func(first_handler, nullptr), 2);
}

} // namespace
} // namespace test
