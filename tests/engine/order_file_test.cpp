#include "engine/failure.h"
#include "engine/order_file.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

// A file that changes while it is read: changed between two blocks, so that no race decides.

using engine::Failure;
using engine::FailureNumber;
using engine::OrderFile;
using testing::HasSubstr;
using testing_support::TemporaryFolder;

namespace
{

const std::string kBytes(200'000, 'x');

// Reads what is left, then looks for changes; the failure, or None.
FailureNumber ReadOn(OrderFile& file)
{
    try
    {
        while (!file.NextBlock().empty())
        {
        }
        file.CheckUnchanged();
        return FailureNumber::None;
    }
    catch (const Failure& failure)
    {
        EXPECT_THAT(failure.Text(), HasSubstr(file.Path()));
        return failure.Number();
    }
}

TEST(OrderFile, UnchangedFileIsReadToItsEnd)
{
    const TemporaryFolder folder;
    OrderFile file(folder.Write("order.txt", kBytes));
    std::size_t size = 0;
    for (auto block = file.NextBlock(); !block.empty(); block = file.NextBlock())
    {
        size += block.size();
    }
    EXPECT_EQ(size, kBytes.size());
    EXPECT_NO_THROW(file.CheckUnchanged());
}

TEST(OrderFile, FileReadInPartIsNoChange)
{
    const TemporaryFolder folder;
    OrderFile file(folder.Write("order.txt", kBytes));
    file.NextBlock();
    EXPECT_NO_THROW(file.CheckUnchanged());
}

TEST(OrderFile, FileThatGrowsIsRefused)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.txt", kBytes);
    OrderFile file(path);
    file.NextBlock();
    std::ofstream(path, std::ios::app | std::ios::binary) << "more";
    EXPECT_EQ(ReadOn(file), FailureNumber::InputChanged);
}

TEST(OrderFile, FileThatIsTruncatedIsRefused)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.txt", kBytes);
    OrderFile file(path);
    file.NextBlock();
    std::error_code refused;
    std::filesystem::resize_file(path, 100'000, refused);
    if (refused)
    {
        GTEST_SKIP() << "this system keeps an open file as it is";
    }
    EXPECT_EQ(ReadOn(file), FailureNumber::InputChanged);
}

TEST(OrderFile, FileThatIsReplacedByOneOfTheSameSizeIsRefused)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.txt", kBytes);
    const std::string other = folder.Write("other.txt", std::string(kBytes.size(), 'y'));
    OrderFile file(path);
    file.NextBlock();
    std::error_code refused;
    std::filesystem::rename(other, path, refused);
    if (refused)
    {
        GTEST_SKIP() << "this system keeps an open file in its place";
    }
    EXPECT_EQ(ReadOn(file), FailureNumber::InputChanged);
}

TEST(OrderFile, FileThatIsTakenAwayIsRefused)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.txt", kBytes);
    OrderFile file(path);
    file.NextBlock();
    std::error_code refused;
    if (!std::filesystem::remove(path, refused) || refused)
    {
        GTEST_SKIP() << "this system keeps an open file in its place";
    }
    EXPECT_EQ(ReadOn(file), FailureNumber::InputChanged);
}

} // namespace
