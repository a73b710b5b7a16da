// SPDX-License-Identifier: Apache-2.0
// A thread that could not be started does not count as created, whatever id libc has written by then.
#include "reset/pre_reset_test.hpp"

#include <dlfcn.h>
#include <pthread.h>

namespace
{

bool failing = false;
unsigned asked = 0;

} // namespace

extern "C" int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*start)(void *),
                              void *argument) noexcept
{
    if (failing) {
        ++asked;
        *thread = 1;
        return EAGAIN;
    }
    using Create = int(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *);
    return reinterpret_cast<Create *>(dlsym(RTLD_NEXT, "pthread_create"))(thread, attributes, start,
                                                                          argument);
}

namespace test
{
namespace
{

TEST_F(PreResetTest, AThreadThatCouldNotBeStartedIsTriedAgainByTheNextRegistration)
{
    const Said line = information(text("[PRRESET]Task create threadid=0x1, pid=0x%x, ret=0x%x.\n",
                                       static_cast<unsigned>(getpid()), static_cast<unsigned>(EAGAIN)));
    failing = true;
    const Said said = during([] {
        Creat_PreResetThread();
        Creat_PreResetThread();
    });
    failing = false;
    EXPECT_EQ(said, line + line);
    EXPECT_EQ(asked, 2u);
}

} // namespace
} // namespace test
