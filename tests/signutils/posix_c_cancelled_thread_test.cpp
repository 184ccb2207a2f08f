// Cancelled threads, which Windows does not have.

#include "tests/signutils/c_handles.h"
#include "tests/signutils/session_fixture.h"
#include "tests/testing/address_sanitizer.h"

#include <atomic>
#include <cstdint>
#include <pthread.h>
#include <sched.h>
#include <string>

using namespace testing_support;

namespace
{

struct Work
{
    SignUtilsSession* session;
    std::atomic<int> rounds{0};
    std::atomic<int> failures{0};
};

void* JudgeForEver(void* argument)
{
    Work& work = *static_cast<Work*>(argument);
    for (;;)
    {
        std::uint32_t verdict = 4711;
        if (SignUtilsCheckSignRules(work.session, "order.xml", "Ana Ruiz", &verdict) !=
            SIGNUTILS_OK)
        {
            ++work.failures;
        }
        ++work.rounds;
    }
    return nullptr;
}

class CCancelledThread : public SessionTest
{
};

TEST_F(CCancelledThread, EndsInsideACallWithoutEndingTheProcess)
{
    if (kAddressSanitizer)
    {
        GTEST_SKIP() << "the sanitizer reports its own look at the stack of a cancelled thread";
    }
    for (int run = 0; run < 10; ++run)
    {
        const CSession session;
        PrepareC(session, m_database.ConnexionString());
        Work work;
        work.session = session;
        pthread_t thread{};
        ASSERT_EQ(pthread_create(&thread, nullptr, JudgeForEver, &work), 0);
        while (work.rounds == 0)
        {
            sched_yield();
        }
        pthread_cancel(thread);
        void* result = nullptr;
        pthread_join(thread, &result);
        EXPECT_EQ(result, PTHREAD_CANCELED);
        EXPECT_EQ(work.failures, 0);

        // The session can be used on, and says that its check was cut short.
        const SignUtilsCheck check = LastCheckOf(session);
        EXPECT_STREQ(check.problem, "The check was ended by an exception");
    }
}

} // namespace
