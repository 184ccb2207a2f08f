#include "services/spool_depth.h"

#include "port/kernel.h"
#include "services/event_spool.h"
#include "services/file_contents.h"
#include "tests/testing/platform.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>
#include <iterator>
#include <string>
#include <thread>

namespace
{

using services::DepthOfSpool;
using services::EventRecord;
using services::EventSpool;
using services::SpoolDepth;
using testing_support::ReadWholeFile;
using testing_support::TemporaryFolder;

class SpoolDepthTest : public testing::Test
{
protected:
    void Append(const char* connection, const std::string& key) const
    {
        EventRecord event;
        event.key = key;
        event.dateTime = "2026-03-29 14:05:09";
        EXPECT_TRUE(EventSpool(m_spool, connection).Append(event));
    }

    void ExpectDepth(std::uint64_t events, std::uint64_t unreadable) const
    {
        const SpoolDepth depth = DepthOfSpool(m_spool);
        EXPECT_EQ(depth.events, events);
        EXPECT_EQ(depth.unreadable, unreadable);
    }

    TemporaryFolder m_folder;
    std::string m_spool = m_folder.Path("spool");
};

TEST_F(SpoolDepthTest, FolderThatIsNotThereHoldsNone)
{
    ExpectDepth(0, 0);
    EXPECT_FALSE(std::filesystem::exists(m_spool));
}

TEST_F(SpoolDepthTest, EventsOfAllDatabasesAreCounted)
{
    Append("one", "1");
    Append("one", "2");
    Append("two", "3");
    Append("", "4");
    ExpectDepth(4, 0);
}

TEST_F(SpoolDepthTest, DeliveredEventsAreCountedNoMore)
{
    Append("one", "1");
    Append("two", "2");
    EventSpool(m_spool, "one")
        .Deliver([](const EventRecord&) { return services::Delivery::Delivered; });
    ExpectDepth(1, 0);
}

TEST_F(SpoolDepthTest, OtherFilesAndEmptyOnesAreNoEvents)
{
    Append("one", "1");
    m_folder.Write("spool/events-x.damaged", "damaged\nlines\n");
    m_folder.Write("spool/events-y.jsonl", "");
    ExpectDepth(1, 0);
}

TEST_F(SpoolDepthTest, TornLastLineIsCounted)
{
    std::filesystem::create_directory(m_spool);
    m_folder.Write("spool/events-x.jsonl", "{}\n{}\n{\"torn");
    ExpectDepth(3, 0);
}

TEST_F(SpoolDepthTest, LinesLongerThanABlockAreCountedOnce)
{
    std::filesystem::create_directory(m_spool);
    const std::string line(std::size_t{200} * 1024, 'x');
    m_folder.Write("spool/events-x.jsonl", line + "\n" + line + "\n");
    ExpectDepth(2, 0);
}

TEST_F(SpoolDepthTest, FolderThatIsAFileHoldsNone)
{
    m_folder.Write("spool", "no folder");
    ExpectDepth(0, 0);
}

// The lock cannot be had, so nobody knows whether the file is being written.
TEST_F(SpoolDepthTest, FileWhoseLockCannotBeOpenedIsToldAndTheOthersAreCounted)
{
    Append("one", "1");
    m_folder.Write("spool/events-x.jsonl", "{}\n");
    std::filesystem::create_directory(m_spool + "/events-x.append.lock");
    ExpectDepth(1, 1);
}

TEST(ReadableFile, ReplacesTheFileAndLeavesNoOtherBehind)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("orders.prom", "before");
    ASSERT_TRUE(services::ReplaceReadableFile(path, "after"));
    EXPECT_EQ(ReadWholeFile(path), "after");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

TEST(ReadableFile, FolderThatIsNotThereIsToldWithItsReason)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(services::ReplaceReadableFile(folder.Path("away/orders.prom"), "text"));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
}

TEST(ReadableFile, TargetThatIsAFolderIsToldAndNothingIsLeftBeside)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("orders.prom");
    std::filesystem::create_directory(path);
    EXPECT_FALSE(services::ReplaceReadableFile(path, "text"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

// Each reading is one of the writers' texts, whole.
TEST(ReadableFile, ReaderFindsAWholeTextWhileSeveralWrite)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("orders.prom");
    const std::string texts[] = {std::string(100'000, 'a'), std::string(50'000, 'b')};
    ASSERT_TRUE(services::ReplaceReadableFile(path, texts[0]));
    std::atomic<int> written = 0;
    const auto write = [&](const std::string& text)
    {
        for (int number = 0; number < 25; ++number)
        {
            // Where a reader has it open, Windows refuses the replacement.
            written += services::ReplaceReadableFile(path, text) ? 1 : 0;
        }
    };
    std::thread first([&] { write(texts[0]); });
    std::thread second([&] { write(texts[1]); });
    int read = 0;
    for (int number = 0; number < 100; ++number)
    {
        const auto bytes = services::ReadFileContents(path);
        if (bytes)
        {
            ++read;
            EXPECT_TRUE(*bytes == texts[0] || *bytes == texts[1]) << bytes->size();
        }
    }
    first.join();
    second.join();
    EXPECT_GT(read, 0);
    EXPECT_GT(written, 0);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 1);
}

} // namespace
