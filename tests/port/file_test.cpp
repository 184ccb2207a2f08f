#include "port/files.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

namespace
{

namespace fs = std::filesystem;
using port::File;
using port::OpenMode;
using testing_support::ReadWholeFile;
using testing_support::TemporaryFolder;

TEST(File, ReadsBlocksUntilTheEnd)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("data", std::string("ab\r\n\x1A\0z", 7));
    File file;
    ASSERT_TRUE(file.Open(path.c_str(), OpenMode::Read));
    EXPECT_TRUE(file.IsOpen());
    EXPECT_EQ(file.Size(), 7);
    char buffer[8] = {};
    EXPECT_EQ(file.Read(buffer, 4), 4);
    EXPECT_EQ(std::string(buffer, 4), "ab\r\n");
    EXPECT_EQ(file.Read(buffer, 8), 3);
    EXPECT_EQ(std::string(buffer, 3), std::string("\x1A\0z", 3));
    EXPECT_EQ(file.Read(buffer, 8), 0);
    ASSERT_TRUE(file.Seek(1));
    EXPECT_EQ(file.Read(buffer, 1), 1);
    EXPECT_EQ(buffer[0], 'b');
    file.Close();
    EXPECT_FALSE(file.IsOpen());
}

TEST(File, OpeningRefusesWithTheReason)
{
    const TemporaryFolder folder;
    const std::string present = folder.Write("present", "x");
    const struct
    {
        const char* description;
        std::string path;
        OpenMode mode;
        DWORD error;
    } refusals[] = {
        {"missing file", folder.Path("missing"), OpenMode::Read, 2},
        {"missing folder", folder.Path("missing/file"), OpenMode::Read, 3},
        {"empty name", "", OpenMode::Read, 3},
        {"folder to read", folder.Path(), OpenMode::Read, 5},
        {"folder to append to", folder.Path(), OpenMode::Append, 5},
        {"folder to append to without links", folder.Path(), OpenMode::AppendNoLink, 5},
        {"new file that is there", present, OpenMode::CreateNew, 80},
        {"new file in a missing folder", folder.Path("missing/file"), OpenMode::CreateNew, 3},
    };
    for (const auto& refusal : refusals)
    {
        File file;
        SetLastError(0);
        EXPECT_FALSE(file.Open(refusal.path.c_str(), refusal.mode)) << refusal.description;
        EXPECT_EQ(GetLastError(), refusal.error) << refusal.description;
        EXPECT_FALSE(file.IsOpen()) << refusal.description;
    }
    EXPECT_EQ(ReadWholeFile(present), "x");
}

TEST(File, NullPathIsAnEmptyOne)
{
    File file;
    EXPECT_FALSE(file.Open(nullptr, OpenMode::Read));
    EXPECT_EQ(GetLastError(), 3U);
}

TEST(File, CreatesANewFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("new");
    File file;
    ASSERT_TRUE(file.Open(path.c_str(), OpenMode::CreateNew));
    EXPECT_TRUE(file.Write("one\n", 4));
    EXPECT_TRUE(file.Flush());
    EXPECT_EQ(file.Size(), 4);
    file.Close();
    EXPECT_EQ(ReadWholeFile(path), "one\n");
}

TEST(File, AppendsAtTheEndWhereverTheReaderStands)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("spool");
    File file;
    ASSERT_TRUE(file.Open(path.c_str(), OpenMode::Append));
    EXPECT_TRUE(file.Write("one", 3));
    ASSERT_TRUE(file.Seek(0));
    char buffer[4] = {};
    EXPECT_EQ(file.Read(buffer, 2), 2);
    EXPECT_TRUE(file.Write("two", 3));
    file.Close();
    ASSERT_TRUE(file.Open(path.c_str(), OpenMode::Append));
    EXPECT_TRUE(file.Write("three", 5));
    file.Close();
    EXPECT_EQ(ReadWholeFile(path), "onetwothree");
}

TEST(File, AppendsWithoutLinksAsItDoesWithThem)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("journal");
    for (const char* const word : {"one", "two"})
    {
        File file;
        ASSERT_TRUE(file.Open(path.c_str(), OpenMode::AppendNoLink));
        EXPECT_TRUE(file.Write(word, 3));
    }
    File file;
    ASSERT_TRUE(file.Open(path.c_str(), OpenMode::AppendNoLink));
    ASSERT_TRUE(file.Truncate(4));
    EXPECT_TRUE(file.Write("!", 1));
    file.Close();
    EXPECT_EQ(ReadWholeFile(path), "onet!");
}

TEST(File, TruncatesAndGoesOnBehindTheNewEnd)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("spool", "onetwo");
    File file;
    ASSERT_TRUE(file.Open(path.c_str(), OpenMode::Append));
    ASSERT_TRUE(file.Truncate(3));
    EXPECT_EQ(file.Size(), 3);
    EXPECT_TRUE(file.Write("!", 1));
    file.Close();
    EXPECT_EQ(ReadWholeFile(path), "one!");
}

TEST(File, ClosedFileRefusesEveryCall)
{
    File file;
    char buffer[1] = {};
    const auto error = []
    {
        const DWORD last = GetLastError();
        SetLastError(0);
        return last;
    };
    SetLastError(0);
    EXPECT_EQ(file.Read(buffer, 1), -1);
    EXPECT_EQ(error(), 6U);
    EXPECT_FALSE(file.Write("x", 1));
    EXPECT_EQ(error(), 6U);
    EXPECT_FALSE(file.Write("x", 0));
    EXPECT_EQ(error(), 6U);
    EXPECT_FALSE(file.Flush());
    EXPECT_EQ(error(), 6U);
    EXPECT_FALSE(file.Seek(0));
    EXPECT_EQ(error(), 6U);
    EXPECT_EQ(file.Size(), -1);
    EXPECT_EQ(error(), 6U);
    EXPECT_FALSE(file.Truncate(0));
    EXPECT_EQ(error(), 6U);
    EXPECT_FALSE(file.LockExclusive());
    EXPECT_EQ(error(), 6U);
    file.Close();
}

TEST(File, NegativePositionIsRefused)
{
    const TemporaryFolder folder;
    File file;
    ASSERT_TRUE(file.Open(folder.Write("data", "x").c_str(), OpenMode::Read));
    EXPECT_FALSE(file.Seek(-1));
}

TEST(File, WritingToAFileOpenedForReadingFails)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("data", "x");
    File file;
    ASSERT_TRUE(file.Open(path.c_str(), OpenMode::Read));
    EXPECT_FALSE(file.Write("y", 1));
    EXPECT_EQ(ReadWholeFile(path), "x");
}

TEST(File, MovesLeaveTheSourceClosed)
{
    const TemporaryFolder folder;
    File first;
    ASSERT_TRUE(first.Open(folder.Write("data", "x").c_str(), OpenMode::Read));
    File second(std::move(first));
    EXPECT_FALSE(first.IsOpen()); // NOLINT(bugprone-use-after-move): closed by contract
    EXPECT_TRUE(second.IsOpen());
    File third;
    third = std::move(second);
    EXPECT_FALSE(second.IsOpen()); // NOLINT(bugprone-use-after-move)
    char buffer[1] = {};
    EXPECT_EQ(third.Read(buffer, 1), 1);
}

TEST(File, OpeningAnotherFileClosesTheFirst)
{
    const TemporaryFolder folder;
    File file;
    ASSERT_TRUE(file.Open(folder.Write("first", "1").c_str(), OpenMode::Read));
    EXPECT_FALSE(file.Open(folder.Path("missing").c_str(), OpenMode::Read));
    EXPECT_FALSE(file.IsOpen());
}

TEST(File, ExclusiveLockHoldsOffAnotherFileObjectUntilItIsClosed)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("spool");
    constexpr int kThreads = 4;
    constexpr int kRounds = 50;
    const auto append = [&path]
    {
        for (int round = 0; round < kRounds; ++round)
        {
            File file;
            ASSERT_TRUE(file.Open(path.c_str(), OpenMode::Append));
            ASSERT_TRUE(file.LockExclusive());
            // Reading and writing must not be parted by another writer.
            const std::int64_t size = file.Size();
            const std::string line = std::to_string(size) + "\n";
            ASSERT_TRUE(file.Write(line.data(), line.size()));
        }
    };
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index)
    {
        threads.emplace_back(append);
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    const std::string bytes = ReadWholeFile(path);
    std::size_t position = 0;
    int lines = 0;
    while (position < bytes.size())
    {
        const std::size_t end = bytes.find('\n', position);
        ASSERT_EQ(bytes.substr(position, end - position), std::to_string(position));
        position = end + 1;
        ++lines;
    }
    EXPECT_EQ(lines, kThreads * kRounds);
}

TEST(FileNames, ExistenceTellsFilesFromFolders)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("data", "");
    EXPECT_TRUE(port::FileExists(path.c_str()));
    EXPECT_FALSE(port::FileExists(folder.Path().c_str()));
    EXPECT_FALSE(port::FileExists(folder.Path("missing").c_str()));
    EXPECT_FALSE(port::FileExists(nullptr));
    EXPECT_TRUE(port::FolderExists(folder.Path().c_str()));
    EXPECT_FALSE(port::FolderExists(path.c_str()));
}

TEST(FileNames, SizeIsThatOfAFile)
{
    const TemporaryFolder folder;
    EXPECT_EQ(port::FileSize(folder.Write("data", "12345").c_str()), 5);
    EXPECT_EQ(port::FileSize(folder.Write("empty", "").c_str()), 0);
    EXPECT_EQ(port::FileSize(folder.Path("missing").c_str()), 0);
    EXPECT_EQ(port::FileSize(folder.Path().c_str()), 0);
}

TEST(FileNames, ReplacingMovePutsTheNewFileInPlaceOfTheOld)
{
    const TemporaryFolder folder;
    const std::string from = folder.Write("from", "new");
    const std::string to = folder.Write("to", "old");
    EXPECT_TRUE(port::MoveFileReplacing(from.c_str(), to.c_str()));
    EXPECT_FALSE(fs::exists(from));
    EXPECT_EQ(ReadWholeFile(to), "new");
}

TEST(FileNames, ReplacingMoveOfAMissingFileFails)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(port::MoveFileReplacing(folder.Path("from").c_str(), folder.Path("to").c_str()));
    EXPECT_EQ(GetLastError(), 2U);
}

TEST(FileNames, ReplacingMoveIntoAMissingFolderFails)
{
    const TemporaryFolder folder;
    const std::string from = folder.Write("from", "x");
    EXPECT_FALSE(port::MoveFileReplacing(from.c_str(), folder.Path("missing/to").c_str()));
    EXPECT_EQ(GetLastError(), 3U);
    EXPECT_EQ(ReadWholeFile(from), "x");
}

TEST(FileNames, PlainMoveRefusesATargetThatIsThere)
{
    const TemporaryFolder folder;
    const std::string from = folder.Write("from", "new");
    const std::string to = folder.Write("to", "old");
    EXPECT_FALSE(port::MoveFileNoReplace(from.c_str(), to.c_str()));
    EXPECT_EQ(GetLastError(), 80U);
    EXPECT_EQ(ReadWholeFile(to), "old");
    EXPECT_EQ(ReadWholeFile(from), "new");
    EXPECT_TRUE(port::MoveFileNoReplace(from.c_str(), folder.Path("free").c_str()));
    EXPECT_EQ(ReadWholeFile(folder.Path("free")), "new");
    EXPECT_FALSE(fs::exists(from));
}

TEST(FileNames, OneSeparatorJoinsFolderAndName)
{
    const std::string separator(1, port::PathSeparator());
    EXPECT_TRUE(port::IsPathSeparator('/'));
    EXPECT_TRUE(port::IsPathSeparator(port::PathSeparator()));
    EXPECT_FALSE(port::IsPathSeparator('a'));
    EXPECT_EQ(port::JoinPath("folder", "name"), "folder" + separator + "name");
    EXPECT_EQ(port::JoinPath("folder" + separator, "name"), "folder" + separator + "name");
    EXPECT_EQ(port::JoinPath("", "name"), "name");
}

TEST(FileNames, NarrowPathsAreWindows1252)
{
    const TemporaryFolder folder;
    // Euro sign, e with acute accent, and one of the five undefined bytes.
    const std::string path = folder.Path() + port::PathSeparator() + "\x80\xE9\x81";
    File file;
    ASSERT_TRUE(file.Open(path.c_str(), OpenMode::CreateNew));
    file.Close();
    EXPECT_TRUE(fs::exists(fs::path(folder.Path()) / fs::path(u8"\u20AC\u00E9\u0081")));
    EXPECT_TRUE(port::FileExists(path.c_str()));
    EXPECT_NE(DeleteFileA(path.c_str()), 0);
}

} // namespace
