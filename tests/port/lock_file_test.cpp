#include "port/kernel.h"
#include "port/lock_file.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

namespace
{

namespace fs = std::filesystem;
using port::LockFile;
using testing_support::TemporaryFolder;

TEST(LockFile, IsTakenByOneAtATime)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("order.veu.lock");
    LockFile first;
    LockFile second;
    EXPECT_FALSE(first.IsTaken());
    ASSERT_EQ(first.TryTake(path.c_str(), "first"), LockFile::Attempt::Taken);
    EXPECT_TRUE(first.IsTaken());

    EXPECT_EQ(second.TryTake(path.c_str(), "second"), LockFile::Attempt::Held);
    EXPECT_FALSE(second.IsTaken());

    first.GiveBack();
    EXPECT_FALSE(first.IsTaken());
    EXPECT_EQ(second.TryTake(path.c_str(), "second"), LockFile::Attempt::Taken);
}

TEST(LockFile, SaysWhoHoldsItWhileItIsHeldOnly)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("order.veu.lock");
    EXPECT_EQ(port::NoteOfLock(path.c_str()), "");
    {
        LockFile lock;
        ASSERT_EQ(lock.TryTake(path.c_str(), "process 4711"), LockFile::Attempt::Taken);
        EXPECT_EQ(port::NoteOfLock(path.c_str()), "process 4711");
    }
    EXPECT_EQ(port::NoteOfLock(path.c_str()), "");
    EXPECT_FALSE(fs::exists(path));
}

TEST(LockFile, TakesOverWhatADeadHolderLeft)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.veu.lock", "a longer note of a dead process");
    LockFile lock;
    ASSERT_EQ(lock.TryTake(path.c_str(), "alive"), LockFile::Attempt::Taken);
    EXPECT_EQ(port::NoteOfLock(path.c_str()).substr(0, 5), "alive");
    lock.GiveBack();
    EXPECT_FALSE(fs::exists(path));
}

TEST(LockFile, OfAFolderThatIsNotThereFails)
{
    const TemporaryFolder folder;
    LockFile lock;
    EXPECT_EQ(lock.TryTake(folder.Path("missing/order.veu.lock").c_str(), ""),
              LockFile::Attempt::Failed);
    EXPECT_EQ(GetLastError(), 3U);
    EXPECT_FALSE(lock.IsTaken());
}

TEST(LockFile, IsNoFolder)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.Path("order.veu.lock"));
    LockFile lock;
    EXPECT_EQ(lock.TryTake(folder.Path("order.veu.lock").c_str(), ""), LockFile::Attempt::Failed);
    EXPECT_TRUE(fs::is_directory(folder.Path("order.veu.lock")));
}

TEST(LockFile, KeepsThreadsApartThatTakeAndGiveItBackAllTheTime)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("order.veu.lock");
    std::atomic<int> inside = 0;
    std::atomic<int> met = 0;
    std::atomic<int> taken = 0;
    const auto work = [&]
    {
        for (int turn = 0; turn < 500; ++turn)
        {
            LockFile lock;
            if (lock.TryTake(path.c_str(), "thread") == LockFile::Attempt::Taken)
            {
                met += inside.fetch_add(1);
                ++taken;
                inside.fetch_sub(1);
            }
        }
    };
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index)
    {
        threads.emplace_back(work);
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(met, 0);
    EXPECT_GT(taken, 0);
}

} // namespace
