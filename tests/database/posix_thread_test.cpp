// Cancelled threads and forked processes, which Windows does not have.

#include "database/guard_database.h"
#include "database/idle_pool.h"
#include "tests/database/sqlite_file.h"
#include "tests/testing/address_sanitizer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace database_tests;

namespace
{

struct Life
{
    std::string connexionString;
    std::atomic<int> rounds{0};
    std::atomic<int> failures{0};
    std::atomic<bool> destroyed{false};
};

class Witness
{
public:
    explicit Witness(Life& life) : m_life(life) {}
    ~Witness() { m_life.destroyed = true; }
    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;

private:
    Life& m_life;
};

void WorkForEver(Life& life)
{
    const Witness witness(life);
    for (;;)
    {
        CDatabase database;
        Open(database, life.connexionString);
        database.ExecuteSQLW(L"INSERT INTO T VALUES (1)");
        ReadOne(database, L"SELECT COUNT(*) AS N FROM T", "N");
        ++life.rounds;
    }
}

void* Thread(void* argument)
{
    Life& life = *static_cast<Life*>(argument);
    database::GuardDatabase([&] { WorkForEver(life); },
                            [&](const CDBException&) { ++life.failures; },
                            [&] { ++life.failures; });
    return nullptr;
}

TEST(CancelledThread, PassesTheGuardAndFreesWhatItHeld)
{
    if (testing_support::kAddressSanitizer)
    {
        GTEST_SKIP() << "the sanitizer reports its own look at the stack of a cancelled thread";
    }
    const SqliteFile file;
    {
        CDatabase database;
        Open(database, file.ConnexionString());
        database.ExecuteSQLW(L"CREATE TABLE T (A INTEGER)");
    }
    for (int run = 0; run < 20; ++run)
    {
        Life life;
        life.connexionString = file.ConnexionString();
        pthread_t thread{};
        ASSERT_EQ(pthread_create(&thread, nullptr, Thread, &life), 0);
        while (life.rounds == 0 && life.failures == 0)
        {
            sched_yield();
        }
        pthread_cancel(thread);
        void* result = nullptr;
        pthread_join(thread, &result);

        EXPECT_EQ(result, PTHREAD_CANCELED);
        EXPECT_TRUE(life.destroyed);
        EXPECT_EQ(life.failures, 0);
    }
    // Neither the file nor the driver manager is left locked.
    CDatabase database;
    Open(database, file.ConnexionString() + ";Timeout=1");
    EXPECT_EQ(database.ExecuteSQLW(L"INSERT INTO T VALUES (2)"), 1);
}

TEST(ForkedProcess, LeavesIdleConnectionsToItsParent)
{
    const SqliteFile file;
    database::EmptyIdlePool();
    {
        CDatabase database;
        Open(database, file.ConnexionString());
    }
    ASSERT_EQ(database::IdleConnectionCount(), 1U);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
    {
        _exit(database::TakeIdleConnection(file.ConnexionString()) == nullptr ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_EQ(database::IdleConnectionCount(), 1U);
}

} // namespace
