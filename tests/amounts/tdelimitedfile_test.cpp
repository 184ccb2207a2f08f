#include "amounts/tdelimitedfile.h"

#include "tests/testing/failing_allocations.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

using amounts::DelimitedRow;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::TemporaryFolder;

static_assert(!std::is_copy_constructible_v<DelimitedRow> &&
              !std::is_move_constructible_v<DelimitedRow>);

namespace
{

constexpr int kDelimitedFourLines = 0;
constexpr int kDelimitedOneLine = 1;

using Fields = std::vector<std::string>;

Fields FieldsOf(const DelimitedRow& row)
{
    Fields fields;
    for (std::size_t i = 0; i < row.GetCount(); ++i)
    {
        fields.emplace_back(row.GetAt(i));
    }
    return fields;
}

Fields FieldsOf(const TArray<TSimpleString>& header)
{
    Fields fields;
    for (int i = 0; i < header.GetCount(); ++i)
    {
        fields.emplace_back(header.GetAt(i)->SafeGetString());
    }
    return fields;
}

// The rows of a file of one header line, as a caller's loop reads them.
std::vector<Fields> RowsAfterOneHeader(const std::string& dataLines)
{
    const TemporaryFolder folder;
    TDelimitedFile file(folder.Write("work.txt", "A;B\r\n" + dataLines).c_str(), kDelimitedOneLine);
    std::vector<Fields> rows;
    while (file.HasRow())
    {
        rows.push_back(FieldsOf(file.CurrentRow()));
        if (!file.NextRow())
        {
            break;
        }
    }
    return rows;
}

const std::string kFourLineFile =
    "NAME;VALUE;THIRD\r\n16;16;16\r\n\"Name\";\"Value\"\r\n------\r\n";

TEST(DelimitedFile, FiveLinesGiveTwoHeadersAndTheCurrentRow)
{
    const TemporaryFolder folder;
    const TDelimitedFile file(
        folder.Write("work.txt", kFourLineFile + "\"a\";\"b\";\"c\"\r\n").c_str(),
        kDelimitedFourLines);
    EXPECT_THAT(FieldsOf(file.GetFirstHeader()), ElementsAre("NAME", "VALUE", "THIRD"));
    EXPECT_THAT(FieldsOf(file.GetSecondHeader()), ElementsAre("Name", "Value"));
    EXPECT_THAT(FieldsOf(file.CurrentRow()), ElementsAre("a", "b", "c"));
    EXPECT_TRUE(file.HasRow());
    EXPECT_FALSE(file.HasMoreRows());
    EXPECT_EQ(file.GetHeaderLineCount(), 4);
    EXPECT_EQ(file.GetRowCounter(), 5U);
}

TEST(DelimitedFile, OneLineModeTakesTheSecondLineAsData)
{
    const TemporaryFolder folder;
    TDelimitedFile file(
        folder.Write("work.txt", "POS;MESS\r\n\"1\";\"m\"\r\n\"2\";\"n\"\r\n").c_str(),
        kDelimitedOneLine);
    EXPECT_THAT(FieldsOf(file.GetFirstHeader()), ElementsAre("POS", "MESS"));
    EXPECT_THAT(FieldsOf(file.GetSecondHeader()), IsEmpty());
    EXPECT_THAT(FieldsOf(file.CurrentRow()), ElementsAre("1", "m"));
    EXPECT_EQ(file.GetHeaderLineCount(), 1);
    EXPECT_TRUE(file.HasMoreRows());
    EXPECT_TRUE(file.NextRow());
    EXPECT_THAT(FieldsOf(file.CurrentRow()), ElementsAre("2", "n"));
    EXPECT_FALSE(file.HasMoreRows());
    EXPECT_FALSE(file.NextRow());
    EXPECT_THAT(FieldsOf(file.CurrentRow()), ElementsAre("2", "n")) << "the row stays current";
    EXPECT_EQ(file.GetRowCounter(), 3U);
    EXPECT_TRUE(file.IsIntact());
}

TEST(DelimitedFile, HeaderArraysHoldRoomFor128Fields)
{
    const TemporaryFolder folder;
    const TDelimitedFile file(folder.Write("work.txt", "A\r\n").c_str(), kDelimitedOneLine);
    EXPECT_EQ(file.GetFirstHeader().GetCapacity(), 128);
    EXPECT_EQ(file.GetSecondHeader().GetCapacity(), 128);
}

TEST(DelimitedFile, QuotesOfTheFirstLineHaveNoMeaning)
{
    const TemporaryFolder folder;
    const TDelimitedFile file(folder.Write("work.txt", "\"A;B\";;C;\r\n").c_str(),
                              kDelimitedOneLine);
    EXPECT_THAT(FieldsOf(file.GetFirstHeader()), ElementsAre("\"A", "B\"", "", "C", ""));
    EXPECT_FALSE(file.HasRow());
}

TEST(DelimitedFile, ShortFilesHaveNoRow)
{
    const TemporaryFolder folder;
    for (const char* const bytes : {"", "A;B", "A;B\r\n", "A;B\r\n1;2\r\n",
                                    "A;B\r\n1;2\r\n\"a\"\r\n", "A;B\r\n1;2\r\n\"a\"\r\n-\r\n"})
    {
        const TDelimitedFile file(folder.Write("work.txt", bytes).c_str(), kDelimitedFourLines);
        EXPECT_FALSE(file.HasRow()) << bytes;
        EXPECT_FALSE(file.HasMoreRows()) << bytes;
    }
}

TEST(DelimitedFile, CallersOwnRowIsReadWithoutChangingTheCurrentOne)
{
    const TemporaryFolder folder;
    TDelimitedFile file(folder.Write("work.txt", "A\r\n\"1\"\r\n\"2\"\r\n").c_str(),
                        kDelimitedOneLine);
    DelimitedRow row;
    file.ReadRow(row);
    EXPECT_THAT(FieldsOf(row), ElementsAre("2"));
    EXPECT_THAT(FieldsOf(file.CurrentRow()), ElementsAre("1"));
    file.ReadRow(row);
    EXPECT_TRUE(row.IsEmpty());
    EXPECT_EQ(row.GetAt(0), "");
}

TEST(DelimitedFile, CurrentRowStaysWhileCallersRowsAreReadOn)
{
    const TemporaryFolder folder;
    std::string bytes = "A\r\n\"current\"\r\n";
    for (int i = 0; i < 30'000; ++i)
    {
        bytes += '"' + std::to_string(i) + "\"\r\n";
    }
    TDelimitedFile file(folder.Write("work.txt", bytes).c_str(), kDelimitedOneLine);
    DelimitedRow first;
    DelimitedRow row;
    file.ReadRow(first);
    for (int i = 1; i < 30'000; ++i)
    {
        file.ReadRow(row);
        ASSERT_EQ(row.GetAt(0), std::to_string(i));
    }
    EXPECT_THAT(FieldsOf(file.CurrentRow()), ElementsAre("current"));
    EXPECT_THAT(FieldsOf(first), ElementsAre("0"));
    EXPECT_TRUE(file.IsIntact());
}

TEST(DelimitedFile, LastRowNeedsNoLineEnd)
{
    EXPECT_THAT(RowsAfterOneHeader("\"1\"\r\n\"2\""), ElementsAre(Fields{"1"}, Fields{"2"}));
}

TEST(DelimitedFile, EndMarkEndsTheRows)
{
    EXPECT_THAT(RowsAfterOneHeader("\"1\"\r\n\x1A\"2\"\r\n"), ElementsAre(Fields{"1"}));
}

TEST(DelimitedFile, BareLineFeedsEndRows)
{
    const TemporaryFolder folder;
    std::string bytes = "A\nw\n\"a\"\n-\n";
    for (int i = 0; i < 500; ++i)
    {
        bytes += "\"" + std::to_string(i) + "\"\n";
    }
    TDelimitedFile file(folder.Write("work.txt", bytes).c_str(), kDelimitedFourLines);
    for (int i = 0; i < 500; ++i)
    {
        ASSERT_THAT(FieldsOf(file.CurrentRow()), ElementsAre(std::to_string(i)));
        EXPECT_EQ(file.NextRow(), i < 499);
    }
}

struct SplitCase
{
    const char* name;
    std::string line;
    Fields fields;
};

void PrintTo(const SplitCase& splitCase, std::ostream* stream)
{
    *stream << splitCase.name;
}

const SplitCase kSplitCases[] = {
    {"ThreeQuotedValues",
     R"("A";"B";"C")"
     "\r\n",
     {"A", "B", "C"}},
    {"UnquotedValueIsLost",
     R"("A";B;"C")"
     "\r\n",
     {"A", "C"}},
    {"EmptyValues",
     R"("";"";"x")"
     "\r\n",
     {"", "", "x"}},
    {"SeparatorInQuotesIsText",
     R"("A;B";"C")"
     "\r\n",
     {"A;B", "C"}},
    {"EscapedQuoteIsKept",
     R"("say \"yes\"";"C")"
     "\r\n",
     {R"(say \"yes\")", "C"}},
    {"EscapedQuoteOpensNoField",
     R"(\"A";"B")"
     "\r\n",
     {";", "\n"}},
    {"QuoteAfterTwoBackslashesIsEscapedAllTheSame",
     R"("a\\";"b")"
     "\r\n",
     {R"(a\\";)", "\n"}},
    {"LineWithoutQuotesIsOneFieldWithItsLineEnd", "A;B\r\n", {"A;B\n"}},
    {"LineWithoutQuotesAndWithoutEnd", "A;B", {"A;B"}},
    {"EmptyLineIsOneFieldOfItsLineEnd", "\r\n", {"\n"}},
    {"OpenQuoteTakesTheRestWithTheLineEnd",
     R"("A";"B;C)"
     "\r\n",
     {"A", "B;C\n"}},
    {"OpenQuoteAtTheLastCharacter", "\"A\";\"", {"A", ""}},
    {"OnlyAnOpenQuoteIsTheWholeLine", "\"A;B\r\n", {"\"A;B\n"}},
    {"AdjacentQuotesAreTwoFields",
     R"("A""B")"
     "\r\n",
     {"A", "B"}},
    {"TextBetweenFieldsIsPassedOver",
     R"(x"A"y"B"z)"
     "\r\n",
     {"A", "B"}},
    {"CarriageReturnInAField", "\"A\rB\"\r\n", {"A\rB"}},
    {"NulByteInAField", std::string("\"A\0B\";\"C\"\r\n", 11), {std::string("A\0B", 3), "C"}},
};

class QuotedLine : public testing::TestWithParam<SplitCase>
{
};

TEST_P(QuotedLine, SplitsIntoItsQuotedStretches)
{
    EXPECT_THAT(RowsAfterOneHeader(GetParam().line), ElementsAre(GetParam().fields));
}

INSTANTIATE_TEST_SUITE_P(Lines, QuotedLine, testing::ValuesIn(kSplitCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(QuotedLine, QuotesAndEscapesAreFoundWhereverTheyStand)
{
    // The line is searched in stretches: each quote and escape stands once at each border.
    for (std::size_t length = 0; length <= 200; ++length)
    {
        const std::string first(length, 'x');
        const std::string line = '"' + first + R"(";"a\"b\c";"";"last")" + "\r\n";
        ASSERT_THAT(RowsAfterOneHeader(line),
                    ElementsAre(ElementsAre(first, R"(a\"b\c)", "", "last")))
            << length;
    }
}

TEST(DelimitedRow, FieldsMayBeAskedForInAnyOrder)
{
    const TemporaryFolder folder;
    const TDelimitedFile file(folder.Write("work.txt", "H\n\"0\";\"1\";\"2\";\"3\"\n").c_str(),
                              kDelimitedOneLine);
    const DelimitedRow& row = file.CurrentRow();
    for (const std::size_t column : {2U, 0U, 0U, 3U, 1U})
    {
        EXPECT_EQ(row.GetAt(column), std::to_string(column));
    }
    EXPECT_EQ(row.GetAt(4), "");
    EXPECT_EQ(row.GetCount(), 4U);
    EXPECT_EQ(row.GetAt(1), "1");
    EXPECT_EQ(row.GetAt(4000), "");
    EXPECT_EQ(row.GetAt(3), "3");
}

TEST(DelimitedFile, EmptyFieldsOfTheFirstLineCount)
{
    const TemporaryFolder folder;
    const TDelimitedFile file(folder.Write("work.txt", "A;;C;\r\n\"1\"\r\n").c_str(),
                              kDelimitedOneLine);
    EXPECT_THAT(FieldsOf(file.GetFirstHeader()), ElementsAre("A", "", "C", ""));
}

TEST(DelimitedRow, RowThatWasNeverReadHasNoField)
{
    const DelimitedRow row;
    EXPECT_TRUE(row.IsEmpty());
    EXPECT_EQ(row.GetCount(), 0U);
    EXPECT_EQ(row.GetAt(0), "");
    EXPECT_EQ(row.GetAt(1), "");
}

// Opens with standard error caught.
std::string ErrorsOfOpening(const char* path, std::size_t failingSize = 0)
{
    testing::internal::CaptureStderr();
    {
        const testing_support::FailLargeAllocation fault(failingSize == 0 ? SIZE_MAX : failingSize);
        TDelimitedFile file(path, kDelimitedFourLines);
        EXPECT_EQ(file.GetHeaderLineCount(), 0);
        EXPECT_EQ(file.GetRowCounter(), 0U);
        DelimitedRow row;
        file.ReadRow(row);
        EXPECT_TRUE(row.IsEmpty());
        EXPECT_FALSE(file.HasRow());
        EXPECT_FALSE(file.HasMoreRows());
        EXPECT_FALSE(file.NextRow());
        EXPECT_FALSE(file.IsIntact());
        EXPECT_EQ(file.GetFirstHeader().GetCount(), 0);
    }
    return testing::internal::GetCapturedStderr();
}

TEST(DelimitedFileFailure, EmptyPathIsInvalid)
{
    EXPECT_EQ(ErrorsOfOpening(""), "Fatal error : invalid input file \n");
}

TEST(DelimitedFileFailure, NullPathCountsAsEmpty)
{
    EXPECT_EQ(ErrorsOfOpening(nullptr), "Fatal error : invalid input file \n");
}

TEST(DelimitedFileFailure, MissingFileIsNamed)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("missing.veu.bp");
    EXPECT_EQ(ErrorsOfOpening(path.c_str()),
              "Fatal error : unable to open input file " + path + "\n");
}

TEST(DelimitedFileFailure, FolderIsNoFile)
{
    const TemporaryFolder folder;
    EXPECT_EQ(ErrorsOfOpening(folder.Path().c_str()),
              "Fatal error : unable to open input file " + folder.Path() + "\n");
}

TEST(DelimitedFileFailure, PathWithoutMemoryForItsCopyIsNamed)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path(std::string(10'000, 'x'));
    EXPECT_EQ(ErrorsOfOpening(path.c_str(), path.size()),
              "Fatal error : unable to allocate memory for file name buffer " + path + "\n");
}

TEST(DelimitedFileFailure, WithoutMemoryForTheSentenceTheReaderHasNoRow)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("missing.veu.bp");
    unsigned long silent = 0;
    bool used = true;
    for (unsigned long spared = 0; used; ++spared)
    {
        bool opened = false;
        bool hasRow = false;
        testing::internal::CaptureStderr();
        {
            const testing_support::FailAllAllocations fault(spared);
            try
            {
                const TDelimitedFile file(path.c_str(), kDelimitedOneLine);
                opened = true;
                hasRow = file.HasRow();
            }
            catch (const std::bad_alloc&)
            {
                opened = false;
            }
            used = fault.WasUsed();
        }
        const std::string told = testing::internal::GetCapturedStderr();
        silent += opened && told.empty() ? 1U : 0U;
        EXPECT_FALSE(hasRow) << spared;
    }
    EXPECT_GT(silent, 0U);
}

TEST(DelimitedFileFailure, LineWithoutMemoryReadsAsEmptyAndIsPassedOver)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write(
        "work.txt", "A\r\n\"1\"\r\n\"" + std::string(300'000, 'x') + "\"\r\n\"3\"\r\n");
    TDelimitedFile file(path.c_str(), kDelimitedOneLine);
    DelimitedRow row;
    {
        const testing_support::FailLargeAllocation fault(100'000);
        file.ReadRow(row);
        EXPECT_TRUE(fault.WasUsed());
    }
    EXPECT_TRUE(row.IsEmpty());
    EXPECT_TRUE(file.HasMoreRows());
    EXPECT_FALSE(file.IsIntact());
    file.ReadRow(row);
    EXPECT_THAT(FieldsOf(row), ElementsAre("3"));
}

TEST(DelimitedFileFailure, LineThatFillsTheBlockIsTheOnlyOneLostWithoutMemoryForAnother)
{
    constexpr std::size_t kBlock = std::size_t{64} * 1024;
    const TemporaryFolder folder;
    const std::string path = folder.Write(
        "work.txt", "A\r\n\"1\"\r\n\"" +
                        std::string(kBlock - std::string_view("\"\"\r\n").size(), 'x') +
                        "\"\r\n\"3\"\r\n");
    TDelimitedFile file(path.c_str(), kDelimitedOneLine);
    {
        const testing_support::FailLargeAllocation fault(kBlock);
        EXPECT_TRUE(file.NextRow());
        EXPECT_TRUE(fault.WasUsed());
    }
    EXPECT_FALSE(file.HasRow());
    EXPECT_FALSE(file.IsIntact());
    EXPECT_TRUE(file.NextRow());
    EXPECT_THAT(FieldsOf(file.CurrentRow()), ElementsAre("3"));
}

class RowThatCannotBeKept : public testing::Test
{
protected:
    static constexpr std::size_t kLong = 10'000;

    /// Reads the second row of a file of three into a caller's, without memory for one long row.
    void ReadSecond(const std::string& first, const std::string& second)
    {
        m_file.emplace(
            m_folder.Write("work.txt", "A\r\n\"" + first + "\"\r\n\"" + second + "\"\r\n\"3\"\r\n")
                .c_str(),
            kDelimitedOneLine);
        const testing_support::FailLargeAllocation fault(kLong);
        m_file->ReadRow(m_row);
        EXPECT_TRUE(fault.WasUsed());
    }

    TemporaryFolder m_folder;
    std::optional<TDelimitedFile> m_file;
    DelimitedRow m_row;
};

TEST_F(RowThatCannotBeKept, IsEmptyAndToldWhenItIsTheCurrentOne)
{
    ReadSecond(std::string(kLong, 'x'), "2");
    EXPECT_THAT(FieldsOf(m_row), ElementsAre("2"));
    EXPECT_FALSE(m_file->HasRow());
    EXPECT_FALSE(m_file->IsIntact());
}

TEST_F(RowThatCannotBeKept, IsEmptyAndToldWhenItIsTheCallersOwn)
{
    ReadSecond("1", std::string(kLong, 'x'));
    EXPECT_TRUE(m_row.IsEmpty());
    EXPECT_FALSE(m_file->IsIntact());
    EXPECT_THAT(FieldsOf(m_file->CurrentRow()), ElementsAre("1"));
    m_file->ReadRow(m_row);
    EXPECT_THAT(FieldsOf(m_row), ElementsAre("3"));
    EXPECT_FALSE(m_file->IsIntact()) << "the lost row stays told";
}

TEST(DelimitedFile, ClosedFileCanBeDeletedAndHasNoFurtherRow)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("work.txt", "A\r\n\"1\"\r\n\"2\"\r\n");
    TDelimitedFile file(path.c_str(), kDelimitedOneLine);
    file.Close();
    EXPECT_FALSE(file.HasMoreRows());
    EXPECT_FALSE(file.NextRow());
    EXPECT_NE(DeleteFileA(path.c_str()), 0);
}

} // namespace
