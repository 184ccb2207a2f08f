#include "amounts/text_line_reader.h"

#include "tests/testing/failing_allocations.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

using amounts::TextLineReader;
using testing_support::TemporaryFolder;

namespace
{

using Lines = std::vector<std::string>;

// Every line, and whether the reader told each time what followed.
Lines ReadAll(const std::string& path)
{
    TextLineReader reader;
    Lines lines;
    if (!reader.Open(path.c_str()))
    {
        ADD_FAILURE() << path;
        return lines;
    }
    std::string_view line;
    bool more = true;
    while (more)
    {
        more = reader.ReadLine(line);
        if (!line.empty())
        {
            lines.emplace_back(line);
        }
    }
    EXPECT_FALSE(reader.ReadLine(line));
    EXPECT_EQ(line, "");
    return lines;
}

struct LineCase
{
    const char* name;
    std::string bytes;
    Lines lines;
};

void PrintTo(const LineCase& lineCase, std::ostream* stream)
{
    *stream << lineCase.name;
}

// More than one block of the reader.
const std::string kLong(200'000, 'x');

const LineCase kLineCases[] = {
    {"EmptyFile", "", {}},
    {"OneLineWithoutEnd", "a", {"a"}},
    {"FinalLineEndIsFollowedByNoLine", "a\r\nb\r\n", {"a\n", "b\n"}},
    {"BareLineFeedsEndLines", "a\nb\n", {"a\n", "b\n"}},
    {"MixedLineEnds", "a\nb\r\nc", {"a\n", "b\n", "c"}},
    {"FirstLineMayBeEmpty", "\na", {"\n", "a"}},
    {"EmptyLinesCount", "\r\n\n\r\na", {"\n", "\n", "\n", "a"}},
    {"LoneCarriageReturnStays", "a\rb\r\nc\r", {"a\rb\n", "c\r"}},
    {"CarriageReturnBeforeTheLastCharacterStays", "a\rb", {"a\rb"}},
    {"OnlyOneCarriageReturnIsTaken", "a\r\r\nb", {"a\r\n", "b"}},
    {"EndMarkEndsTheFile",
     "a\r\nb\x1A"
     "c\r\nd",
     {"a\n", "b"}},
    {"EndMarkAfterALineEndLeavesNoLine",
     "a\r\n\x1A"
     "b",
     {"a\n"}},
    {"EndMarkFirst",
     "\x1A"
     "a\n",
     {}},
    {"NulBytesAreOrdinary",
     std::string("a\0b\n\0", 5),
     {std::string("a\0b\n", 4), std::string(1, '\0')}},
    {"HighBytesAreOrdinary", "\x80\xFF\xE9\n", {"\x80\xFF\xE9\n"}},
    {"LineLongerThanABlock", kLong + "\r\n" + kLong, {kLong + "\n", kLong}},
    {"LineEndAcrossBlocks",
     std::string(65535, 'x') + "\r\nb",
     {std::string(65535, 'x') + "\n", "b"}},
    {"LineFeedLastInItsBlock", std::string(65534, 'x') + "\r\n", {std::string(65534, 'x') + "\n"}},
    {"LineThatFillsABlockIsFollowedByAnother",
     std::string(65534, 'x') + "\r\nb\n",
     {std::string(65534, 'x') + "\n", "b\n"}},
    {"EndMarkHidesTheBlocksBehindIt", "a\n\x1A" + kLong + "\nb\n", {"a\n"}},
    {"EndMarkFirstInItsBlock",
     std::string(65536, 'x') + "\x1A"
                               "y",
     {std::string(65536, 'x')}},
};

class TextLines : public testing::TestWithParam<LineCase>
{
};

TEST_P(TextLines, AreReadInTextMode)
{
    const TemporaryFolder folder;
    EXPECT_EQ(ReadAll(folder.Write("text.txt", GetParam().bytes)), GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(Files, TextLines, testing::ValuesIn(kLineCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(TextLineReader, MissingFileCannotBeOpened)
{
    const TemporaryFolder folder;
    TextLineReader reader;
    std::string_view line = "before";
    EXPECT_FALSE(reader.Open(folder.Path("missing").c_str()));
    EXPECT_FALSE(reader.ReadLine(line));
    EXPECT_EQ(line, "");
}

TEST(TextLineReader, IsOpenedAgainFromTheStart)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("text.txt", "a\nb\n");
    TextLineReader reader;
    std::string_view line;
    for (int round = 0; round < 2; ++round)
    {
        ASSERT_TRUE(reader.Open(path.c_str()));
        EXPECT_TRUE(reader.ReadLine(line));
        EXPECT_EQ(line, "a\n");
    }
}

TEST(TextLineReader, ClosedReaderHasNoLine)
{
    const TemporaryFolder folder;
    TextLineReader reader;
    ASSERT_TRUE(reader.Open(folder.Write("text.txt", "a\nb\n").c_str()));
    std::string_view line;
    EXPECT_TRUE(reader.ReadLine(line)); // the block holds the second one, too
    reader.Close();
    EXPECT_FALSE(reader.ReadLine(line));
    EXPECT_EQ(line, "");
    EXPECT_FALSE(reader.HasFailed());
}

TEST(TextLineReader, EndMarkFirstInItsBlockLeavesNoFurtherLine)
{
    const TemporaryFolder folder;
    TextLineReader reader;
    const std::string bytes = std::string(65535, 'x') + "\n\x1A" + "y";
    ASSERT_TRUE(reader.Open(folder.Write("text.txt", bytes).c_str()));
    std::string_view line;
    EXPECT_FALSE(reader.ReadLine(line));
    EXPECT_EQ(line.size(), 65536U);
}

TEST(TextLineReader, FileOfManyLinesNeedsTheMemoryOfOneBlock)
{
    constexpr std::size_t kBlock = std::size_t{64} * 1024;
    std::string bytes;
    for (int i = 0; i < 50'000; ++i)
    {
        bytes += std::to_string(i) + "\n";
    }
    const TemporaryFolder folder;
    const std::string path = folder.Write("text.txt", bytes);
    const testing_support::AllocationLimit limit(kBlock + 1);
    TextLineReader reader;
    ASSERT_TRUE(reader.Open(path.c_str()));
    std::string_view line;
    for (int i = 0; i < 50'000; ++i)
    {
        ASSERT_EQ(reader.ReadLine(line), i < 49'999);
        ASSERT_EQ(line, std::to_string(i) + "\n");
    }
    EXPECT_FALSE(limit.WasUsed());
}

TEST(TextLineReader, LineWithoutMemoryIsEmpty)
{
    const TemporaryFolder folder;
    TextLineReader reader;
    ASSERT_TRUE(reader.Open(folder.Write("text.txt", kLong + "\nb").c_str()));
    std::string_view line = "before";
    {
        const testing_support::FailLargeAllocation fault(100'000);
        EXPECT_THROW(reader.ReadLine(line), std::bad_alloc);
    }
    EXPECT_EQ(line, "");
    EXPECT_TRUE(reader.FinishLine());
    EXPECT_FALSE(reader.ReadLine(line));
    EXPECT_EQ(line, "b");
}

TEST(TextLineReader, NothingIsLeftOfALineWhenOpenedAgain)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("text.txt", "a\nb\nc");
    TextLineReader reader;
    std::string_view line;
    ASSERT_TRUE(reader.Open(path.c_str()));
    EXPECT_TRUE(reader.ReadLine(line));
    ASSERT_TRUE(reader.Open(path.c_str()));
    EXPECT_TRUE(reader.FinishLine()) << "of the first line, of which nothing was read";
    EXPECT_TRUE(reader.ReadLine(line));
    EXPECT_EQ(line, "b\n");
}

TEST(TextLineReader, RestOfALineCanBePassedOver)
{
    const TemporaryFolder folder;
    TextLineReader reader;
    ASSERT_TRUE(reader.Open(folder.Write("text.txt", kLong + "\nb\nc").c_str()));
    std::string_view line;
    EXPECT_TRUE(reader.FinishLine());
    EXPECT_TRUE(reader.ReadLine(line));
    EXPECT_EQ(line, "b\n");
    EXPECT_TRUE(reader.FinishLine()) << "of a line that was given nothing is left";
    EXPECT_FALSE(reader.ReadLine(line));
    EXPECT_EQ(line, "c");
    EXPECT_FALSE(reader.FinishLine());
}

} // namespace
