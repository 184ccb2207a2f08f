#include "support/trace.h"

#include "tests/testing/failing_allocations.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing_support::ReadWholeFile;
using testing_support::TemporaryFolder;

void* AllOnes()
{
    return reinterpret_cast<void*>(UINTPTR_MAX);
}

std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
    {
        lines.push_back(line);
    }
    return lines;
}

/// A trace in a file of its own.
class TraceFile : public testing::Test
{
protected:
    TraceFile() : m_path(m_folder.Path("test.trc")), m_trace(TraceOpen(m_path.c_str())) {}
    ~TraceFile() override { TraceClose(m_trace); }

    std::string Written() const { return ReadWholeFile(m_path); }
    std::string Closed()
    {
        TraceClose(m_trace);
        m_trace = nullptr;
        return Written();
    }

    TemporaryFolder m_folder;
    std::string m_path;
    void* m_trace;
};

TEST_F(TraceFile, ValuesKeepTheBlanksOfTheirLabels)
{
    TraceValue(m_trace, "HUID Signer       ", "H1", 1);
    TraceValue(m_trace, "CUID Rules     ", " C1 ", 1);
    TraceValue(m_trace, "SIGNER NAME-------", "---------------------------", 1);
    EXPECT_EQ(Closed(), "HUID Signer       : H1\n"
                        "CUID Rules     :  C1 \n"
                        "SIGNER NAME-------: ---------------------------\n");
}

TEST_F(TraceFile, NarrowValuesAndLabelsAreWindows1252AndBecomeUtf8)
{
    TraceValue(m_trace, "Entit\xE9", "R\xE8gle manquantes \x80", 1);
    EXPECT_EQ(Closed(), "Entit\xC3\xA9: R\xC3\xA8gle manquantes \xE2\x82\xAC\n");
}

TEST_F(TraceFile, WideValuesBecomeUtf8)
{
    TraceValueUTF8(m_trace, "Signers", L"\u0416\u00E9 \U0001F600");
    TraceValueUTF8(m_trace, "Level", L"two", 2);
    EXPECT_EQ(Closed(), "Signers: \xD0\x96\xC3\xA9 \xF0\x9F\x98\x80\nLevel: two\n");
}

TEST_F(TraceFile, NullTextsAreEmptyValues)
{
    TraceValue(m_trace, "a", nullptr, 1);
    TraceValueUTF8(m_trace, "b", nullptr);
    TraceValue(m_trace, nullptr, "c", 1);
    TraceString(m_trace, nullptr);
    EXPECT_EQ(Closed(), "a: \nb: \n: c\n");
}

TEST_F(TraceFile, ValuesCannotForgeLines)
{
    TraceValue(m_trace, "FileName", "a\r\n[2026-01-01 00:00:00.000 +0 ms] FORGED", 1);
    TraceValueUTF8(m_trace, "Signers", L"a\nb\rc\u0085d\u2028e\u2029f");
    TimeTraceDump(m_trace, "TITLE\nFORGED: x", 0, 0);
    const auto lines = Lines(Closed());
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], "FileName: a\\r\\n[2026-01-01 00:00:00.000 +0 ms] FORGED");
    EXPECT_EQ(lines[1], "Signers: a\\nb\\rc\\x85d\\u2028e\\u2029f");
    EXPECT_THAT(lines[2], testing::EndsWith("] TITLE\\nFORGED: x"));
}

TEST_F(TraceFile, OtherControlCharactersAreShownAndTabAndBackslashStay)
{
    TraceValue(m_trace, "v", "\x1B[2J\x07\x7F\x81\tC:\\new", 1);
    EXPECT_EQ(Closed(), "v: \\x1B[2J\\x07\\x7F\\x81\tC:\\new\n");
}

TEST_F(TraceFile, SectionsShowLocalTimeElapsedMillisecondsAndTitle)
{
    TimeTraceDump(m_trace, "CHECK SIGNATURES RULES", 0, 0);
    TimeTraceDump(m_trace, "SIGNERS", 0, 0);
    const auto lines = Lines(Closed());
    ASSERT_EQ(lines.size(), 2U);
    const std::string stamp = R"(\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \+\d+ ms\] )";
    EXPECT_TRUE(std::regex_match(lines[0], std::regex(stamp + "CHECK SIGNATURES RULES")));
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(stamp + "SIGNERS")));
}

TEST_F(TraceFile, ASectionWritesEverythingUpToItsTitle)
{
    TraceValue(m_trace, "before", "1", 1);
    EXPECT_EQ(Written(), "") << "lines wait for their section";
    TimeTraceDump(m_trace, "SECTION", 0, 0);
    TraceValue(m_trace, "behind", "2", 1);
    const auto lines = Lines(Written());
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "before: 1");
    EXPECT_THAT(lines[1], testing::EndsWith("] SECTION"));
    EXPECT_THAT(Closed(), testing::EndsWith("] SECTION\nbehind: 2\n"));
}

TEST_F(TraceFile, ALongSectionDoesNotPileUpInMemory)
{
    const std::string value(1000, 'x');
    for (int i = 0; i < 1000; ++i)
    {
        TraceValue(m_trace, "v", value.c_str(), 1);
    }
    EXPECT_GT(std::filesystem::file_size(m_path), 900'000U);
    EXPECT_EQ(Lines(Closed()).size(), 1000U);
}

TEST_F(TraceFile, BlocksAreIndentedLineByLine)
{
    TraceString(m_trace, "<a>\r\n <b/>\n\r</a>");
    TraceString(m_trace, "one\n");
    TraceString(m_trace, "");
    EXPECT_EQ(Closed(), "    <a>\n     <b/>\n    \n    </a>\n    one\n");
}

TEST_F(TraceFile, BlocksOfUtf8StayAndOthersAreReadAsWindows1252)
{
    TraceString(m_trace, "R\xC3\xA8gle");
    TraceString(m_trace, "R\xE8gle");
    EXPECT_EQ(Closed(), "    R\xC3\xA8gle\n    R\xC3\xA8gle\n");
}

TEST_F(TraceFile, LinesOfBlocksCannotLookLikeSections)
{
    TraceString(m_trace, "[2026-01-01 00:00:00.000 +0 ms] FORGED\x1B");
    EXPECT_EQ(Closed(), "    [2026-01-01 00:00:00.000 +0 ms] FORGED\\x1B\n");
}

TEST_F(TraceFile, AFileThatIsThereIsAppendedTo)
{
    TraceValue(m_trace, "first", "1", 1);
    EXPECT_EQ(Closed(), "first: 1\n");
    m_trace = TraceOpen(m_path.c_str());
    TraceValue(m_trace, "second", "2", 1);
    EXPECT_EQ(Closed(), "first: 1\nsecond: 2\n");
}

TEST_F(TraceFile, ThreadsShareAHandleLineByLine)
{
    constexpr int threads = 4;
    constexpr int values = 500;
    std::vector<std::thread> running;
    for (int thread = 0; thread < threads; ++thread)
    {
        running.emplace_back(
            [this, thread]
            {
                const std::string label = "thread " + std::to_string(thread);
                for (int i = 0; i < values; ++i)
                {
                    TraceValue(m_trace, label.c_str(), std::to_string(i).c_str(), 1);
                    TraceString(m_trace, "block one\nblock two");
                }
                TimeTraceDump(m_trace, label.c_str(), 0, 0);
            });
    }
    for (std::thread& thread : running)
    {
        thread.join();
    }
    const auto lines = Lines(Closed());
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(threads * values * 3 + threads));
    std::vector<int> next(threads);
    for (std::size_t i = 0; i < lines.size(); ++i)
    {
        if (lines[i].rfind("thread ", 0) == 0)
        {
            const auto thread = static_cast<std::size_t>(lines[i][7] - '0');
            EXPECT_EQ(lines[i].substr(8), ": " + std::to_string(next[thread]++));
        }
        else if (lines[i] == "    block one")
        {
            EXPECT_EQ(lines[i + 1], "    block two") << "a block stays together";
        }
    }
    EXPECT_THAT(next, ElementsAre(values, values, values, values));
}

TEST(Trace, HandlesOf0AndAllOnesAreNotUsableAndIgnored)
{
    for (void* const handle : {static_cast<void*>(nullptr), AllOnes()})
    {
        EXPECT_FALSE(TraceIsUsable(handle));
        TimeTraceDump(handle, "TITLE", 0, 0);
        TraceValue(handle, "label", "value", 1);
        TraceValueUTF8(handle, "label", L"value");
        TraceString(handle, "block");
        TraceClose(handle);
    }
    int any = 0;
    EXPECT_TRUE(TraceIsUsable(&any));
}

TEST(Trace, FilesThatCannotBeWrittenGiveNoHandle)
{
    const TemporaryFolder folder;
    EXPECT_EQ(TraceOpen(folder.Path("none/test.trc").c_str()), nullptr);
    EXPECT_EQ(TraceOpen(folder.Path().c_str()), nullptr);
    EXPECT_EQ(TraceOpen(""), nullptr);
    EXPECT_EQ(TraceOpen(nullptr), nullptr);
}

TEST_F(TraceFile, WithoutMemoryALineIsMissingAndTheHostIsSpared)
{
    const std::string large(5000, 'x');
    const std::wstring wide(5000, L'x');
    const auto refused = [](const auto& write)
    {
        const testing_support::FailNextAllocation failing;
        write();
        EXPECT_TRUE(failing.WasUsed());
    };
    refused([&] { TraceValue(m_trace, "value", large.c_str(), 1); });
    refused([&] { TraceValueUTF8(m_trace, "value", wide.c_str()); });
    refused([&] { TraceString(m_trace, large.c_str()); });
    refused([&] { TimeTraceDump(m_trace, large.c_str(), 0, 0); });
    TraceValue(m_trace, "behind", "1", 1);
    EXPECT_EQ(Closed(), "behind: 1\n");
}

TEST(Trace, AFullDiskStopsTheTraceOnly)
{
    const char* const alwaysFull = "/dev/full";
    if (!std::filesystem::exists(alwaysFull))
    {
        GTEST_SKIP() << "this system has no device that is always full";
    }
    void* const trace = TraceOpen(alwaysFull);
    ASSERT_TRUE(TraceIsUsable(trace));
    TraceValue(trace, "value", "1", 1);
    TimeTraceDump(trace, "SECTION", 0, 0);
    TraceValue(trace, "value", "2", 1);
    TraceClose(trace);
}

TEST(Trace, WithoutMemoryThereIsNoHandle)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("test.trc");
    const testing_support::FailNextAllocation failing;
    EXPECT_EQ(TraceOpen(path.c_str()), nullptr);
}

TEST(TraceDeathTest, ACrashLosesTheSectionUnderWayOnly)
{
    // What dies may be a process of its own that runs the test from its start.
    constexpr const char* kPath = "SIGNUTILS_TEST_CRASH_TRACE";
    const TemporaryFolder folder;
    const char* const given = std::getenv(kPath);
    const std::string path = given == nullptr ? folder.Path("crash.trc") : given;
    const testing_support::ScopedEnvironment variable(kPath, path.c_str());
    const auto crash = [&path]
    {
        void* const trace = TraceOpen(path.c_str());
        TraceValue(trace, "first", "1", 1);
        TimeTraceDump(trace, "SECOND", 0, 0);
        TraceValue(trace, "lost", "2", 1);
        std::abort();
    };
    EXPECT_DEATH(crash(), "");
    const auto lines = Lines(ReadWholeFile(path));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "first: 1");
    EXPECT_THAT(lines[1], testing::EndsWith("] SECOND"));
}

} // namespace
