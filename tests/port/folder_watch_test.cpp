#include "port/folder_watch.h"

#include "port/file_writer.h"
#include "port/files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

namespace
{

namespace fs = std::filesystem;
using port::FolderWatch;
using std::chrono::milliseconds;
using testing_support::TemporaryFolder;

constexpr milliseconds kLong(10'000);
constexpr milliseconds kShort(50);

// The name, or that everything is to be looked at.
bool IsTold(FolderWatch& watch, const std::string& name)
{
    for (;;)
    {
        std::vector<std::string> names;
        switch (watch.WaitFor(kLong, names))
        {
        case FolderWatch::Told::Changes:
            return true;
        case FolderWatch::Told::Names:
            if (std::find(names.begin(), names.end(), name) != names.end())
            {
                return true;
            }
            break;
        default:
            return false;
        }
    }
}

TEST(FolderWatch, TellsFilesThatAreClosedAfterWriting)
{
    const TemporaryFolder folder;
    FolderWatch watch;
    ASSERT_TRUE(watch.Open(folder.Path().c_str()));

    folder.Write("order.xml", "whole");

    EXPECT_TRUE(IsTold(watch, "order.xml"));
}

TEST(FolderWatch, TellsFilesThatAreMovedIn)
{
    const TemporaryFolder folder;
    const TemporaryFolder other;
    const std::string outside = other.Write("order.xml", "whole");
    FolderWatch watch;
    ASSERT_TRUE(watch.Open(folder.Path().c_str()));

    fs::rename(outside, folder.Path("order.xml"));

    EXPECT_TRUE(IsTold(watch, "order.xml"));
}

TEST(FolderWatch, TellsNothingOfWhatWasThere)
{
    const TemporaryFolder folder;
    folder.Write("order.xml", "whole");
    FolderWatch watch;
    ASSERT_TRUE(watch.Open(folder.Path().c_str()));

    std::vector<std::string> names;
    EXPECT_EQ(watch.WaitFor(kShort, names), FolderWatch::Told::Nothing);
    EXPECT_TRUE(names.empty());
}

TEST(FolderWatch, OfNoFolderIsRefused)
{
    const TemporaryFolder folder;
    FolderWatch watch;
    EXPECT_FALSE(watch.Open(folder.Path("missing").c_str()));
    EXPECT_FALSE(watch.Open(folder.Write("file", "").c_str()));
}

TEST(WriterOfAFile, IsSeenWhileItIsOpen)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.xml", "whole");
    EXPECT_EQ(port::WriterOf(path.c_str()), port::Writer::None);
    port::File file;
    ASSERT_TRUE(file.Open(path.c_str(), port::OpenMode::Append));

    EXPECT_EQ(port::WriterOf(path.c_str()), port::Writer::Some);

    file.Close();
    EXPECT_EQ(port::WriterOf(path.c_str()), port::Writer::None);
}

TEST(WriterOfAFile, IsNobodyWhoReads)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.xml", "whole");
    port::File file;
    ASSERT_TRUE(file.Open(path.c_str(), port::OpenMode::Read));

    EXPECT_EQ(port::WriterOf(path.c_str()), port::Writer::None);
}

TEST(WriterOfAFile, IsUnknownWhereThereIsNone)
{
    const TemporaryFolder folder;
    EXPECT_EQ(port::WriterOf(folder.Path("missing").c_str()), port::Writer::Unknown);
}

} // namespace
