#include "port/file_identity.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

namespace
{

namespace fs = std::filesystem;
using testing_support::TemporaryFolder;

/// The system's times move in steps of up to 16 ms; what happens within one has one time.
void LetTimePass()
{
    std::this_thread::sleep_for(std::chrono::milliseconds(40));
}

TEST(StampOfAFile, StaysWhileNothingHappensToIt)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.xml", "one");
    const std::string before = port::StampOf(path);
    LetTimePass();
    EXPECT_EQ(testing_support::ReadWholeFile(path), "one");

    EXPECT_NE(before, "");
    EXPECT_EQ(port::StampOf(path), before);
}

TEST(StampOfAFile, ChangesWithContentsOfTheSameSizeWhoseTimeWasPutBack)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.xml", "one");
    const auto time = fs::last_write_time(path);
    const std::string before = port::StampOf(path);
    LetTimePass();
    folder.Write("order.xml", "two");
    fs::last_write_time(path, time);

    EXPECT_EQ(fs::last_write_time(path), time);
    EXPECT_NE(port::StampOf(path), before);
}

TEST(StampOfAFile, ChangesWithAnotherFileInItsPlace)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.xml", "one");
    fs::copy_file(path, folder.Path("other"));
    fs::last_write_time(folder.Path("other"), fs::last_write_time(path));
    const std::string before = port::StampOf(path);
    fs::rename(folder.Path("other"), path);

    EXPECT_NE(port::StampOf(path), before);
}

TEST(StampOfAFile, OfNoFileIsEmpty)
{
    EXPECT_EQ(port::StampOf(TemporaryFolder().Path("missing")), "");
}

TEST(RealPathOfAFile, IsOneByEveryWayToIt)
{
    const TemporaryFolder folder;
    fs::create_directory(folder.Path("in"));
    const std::string real = port::RealPath(folder.Path("in"));

    EXPECT_NE(real, "");
    EXPECT_EQ(port::RealPath(folder.Path("in") + "/../in/."), real);
    EXPECT_NE(port::RealPath(folder.Path()), real);
}

TEST(RealPathOfAFile, OfNothingIsEmpty)
{
    EXPECT_EQ(port::RealPath(TemporaryFolder().Path("missing")), "");
}

} // namespace
