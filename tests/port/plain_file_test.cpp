#include "port/kernel.h"
#include "port/plain_file.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

// What is read at a place where anything may lie.

namespace
{

using port::PlainFile;
using port::ReadPlainFile;
using testing_support::TemporaryFolder;

TEST(PlainFile, IsReadToItsEnd)
{
    const TemporaryFolder folder;
    const std::string whole(200'000, 'x');
    const std::string path = folder.Write("a.txt", whole);
    std::string bytes = "of before";
    EXPECT_EQ(ReadPlainFile(path.c_str(), 1'000'000, bytes), PlainFile::Read);
    EXPECT_EQ(bytes, whole);
}

TEST(PlainFile, IsReadNoFurtherThanAsked)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("a.txt", std::string(200'000, 'x') + "end");
    std::string bytes;
    EXPECT_EQ(ReadPlainFile(path.c_str(), 70'000, bytes), PlainFile::Read);
    EXPECT_EQ(bytes.size(), 70'000U);
    EXPECT_EQ(ReadPlainFile(path.c_str(), 0, bytes), PlainFile::Read);
    EXPECT_EQ(bytes, "");
}

TEST(PlainFile, EmptyFileIsRead)
{
    const TemporaryFolder folder;
    std::string bytes = "of before";
    EXPECT_EQ(ReadPlainFile(folder.Write("empty", "").c_str(), 10, bytes), PlainFile::Read);
    EXPECT_EQ(bytes, "");
}

TEST(PlainFile, MissingFileAndFolderAreTold)
{
    const TemporaryFolder folder;
    std::string bytes;
    EXPECT_EQ(ReadPlainFile(folder.Path("none").c_str(), 10, bytes), PlainFile::Missing);
    EXPECT_EQ(GetLastError(), 2U);
    EXPECT_EQ(ReadPlainFile(folder.Path("none/at all").c_str(), 10, bytes), PlainFile::Missing);
    EXPECT_EQ(GetLastError(), 3U);
    EXPECT_EQ(ReadPlainFile(folder.Path().c_str(), 10, bytes), PlainFile::Other);
}

} // namespace
