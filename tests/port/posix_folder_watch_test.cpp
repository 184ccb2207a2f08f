// What inotify alone tells.

#include "port/files.h"
#include "port/folder_watch.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace
{

namespace fs = std::filesystem;
using port::FolderWatch;
using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::TemporaryFolder;

constexpr milliseconds kLong(10'000);
constexpr milliseconds kShort(50);

class PosixFolderWatch : public testing::Test
{
protected:
    PosixFolderWatch() { EXPECT_TRUE(m_watch.Open(m_folder.Path().c_str())); }

    FolderWatch::Told Wait(milliseconds time)
    {
        m_names.clear();
        return m_watch.WaitFor(time, m_names);
    }

    TemporaryFolder m_folder;
    FolderWatch m_watch;
    std::vector<std::string> m_names;
};

TEST_F(PosixFolderWatch, TellsNoFileBeforeItIsClosed)
{
    port::File file;
    ASSERT_TRUE(file.Open(m_folder.Path("order.xml").c_str(), port::OpenMode::CreateNew));
    ASSERT_TRUE(file.Write("half", 4));
    EXPECT_EQ(Wait(kShort), FolderWatch::Told::Nothing);

    file.Close();

    EXPECT_EQ(Wait(kLong), FolderWatch::Told::Names);
    EXPECT_THAT(m_names, ElementsAre("order.xml"));
}

TEST_F(PosixFolderWatch, TellsNoFolders)
{
    fs::create_directory(m_folder.Path("inner"));
    fs::create_directory(m_folder.Path("other"));
    fs::rename(m_folder.Path("other"), m_folder.Path("another"));

    EXPECT_EQ(Wait(kShort), FolderWatch::Told::Nothing);
    EXPECT_THAT(m_names, IsEmpty());
}

TEST_F(PosixFolderWatch, TellsThatTheFolderIsGone)
{
    const std::string inner = m_folder.Path("inner");
    fs::create_directory(inner);
    FolderWatch watch;
    ASSERT_TRUE(watch.Open(inner.c_str()));

    fs::remove(inner);

    std::vector<std::string> names;
    EXPECT_EQ(watch.WaitFor(kLong, names), FolderWatch::Told::Gone);
}

TEST_F(PosixFolderWatch, AsksToLookAtEverythingWhenItLostSomething)
{
    std::size_t most = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> most;
    ASSERT_GT(most, 0U);
    if (most > 100'000)
    {
        GTEST_SKIP() << "the queue of this system is long";
    }
    // Equal events in a row count as one, so two names take turns.
    const std::string names[] = {m_folder.Path("A"), m_folder.Path("B")};
    for (std::size_t event = 0; event <= most; ++event)
    {
        port::File file;
        ASSERT_TRUE(file.Open(names[event % 2].c_str(), port::OpenMode::Append));
    }

    FolderWatch::Told told = FolderWatch::Told::Names;
    while (told == FolderWatch::Told::Names)
    {
        told = Wait(kShort);
    }
    EXPECT_EQ(told, FolderWatch::Told::Changes);
}

} // namespace
