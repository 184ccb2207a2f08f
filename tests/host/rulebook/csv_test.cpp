#include "host/rulebook/csv.h"

#include <gmock/gmock.h>

namespace rulebook
{
namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<CsvRecord> Read(std::string_view csv)
{
    return ReadCsv(csv, ';', "# rejected");
}

TEST(Csv, FieldsStandBetweenSeparators)
{
    const auto records = Read("a;b c;\r\n;d;e\n");

    ASSERT_THAT(records, SizeIs(2));
    EXPECT_THAT(records[0].fields, ElementsAre("a", "b c", ""));
    EXPECT_THAT(records[1].fields, ElementsAre("", "d", "e"));
    EXPECT_EQ(records[0].text, "a;b c;");
    EXPECT_EQ(records[1].line, 2U);
}

TEST(Csv, QuotedFieldsHoldSeparatorsQuotesAndLineEnds)
{
    const auto records = Read("\"a;b\";\"say \"\"yes\"\"\"\r\n\"two\nlines\";x\n\"\"\n");

    ASSERT_THAT(records, SizeIs(3));
    EXPECT_THAT(records[0].fields, ElementsAre("a;b", "say \"yes\""));
    EXPECT_THAT(records[1].fields, ElementsAre("two\nlines", "x"));
    EXPECT_EQ(records[1].line, 2U);
    EXPECT_EQ(records[2].line, 4U);
    EXPECT_THAT(records[2].fields, ElementsAre(""));
}

TEST(Csv, EmptyLinesAreLeftOutButCounted)
{
    const auto records = Read("\n\r\na\n\nb");

    ASSERT_THAT(records, SizeIs(2));
    EXPECT_EQ(records[0].line, 3U);
    EXPECT_EQ(records[1].line, 5U);
    EXPECT_THAT(Read(""), IsEmpty());
}

TEST(Csv, AQuoteThatIsNotClosedCostsOneLine)
{
    const auto records = Read("\"a;b\nc;d\n");

    ASSERT_THAT(records, SizeIs(2));
    EXPECT_EQ(records[0].fault, "A double quote is not closed.");
    EXPECT_EQ(records[0].text, "\"a;b");
    EXPECT_THAT(records[1].fields, ElementsAre("c", "d"));
    EXPECT_EQ(records[1].line, 2U);
}

TEST(Csv, TextBehindAClosingQuoteCostsOneLine)
{
    const auto records = Read("\"a\"b;c\n\"d\";e\n");

    ASSERT_THAT(records, SizeIs(2));
    EXPECT_EQ(records[0].fault, "Something stands behind a closing double quote.");
    EXPECT_THAT(records[1].fields, ElementsAre("d", "e"));
}

TEST(Csv, CommentsAreLeftOutWhateverTheyHold)
{
    const auto records = Read("# rejected, line 2: it has ;\"a\nb;\"c\"\n# rejected");

    ASSERT_THAT(records, SizeIs(1));
    EXPECT_THAT(records[0].fields, ElementsAre("b", "c"));
    EXPECT_EQ(records[0].line, 2U);
}

TEST(Csv, WhatIsNoUtf8IsToldInItsLine)
{
    const auto records = Read("a;\xE9\nb;c\n");

    EXPECT_EQ(records[0].fault,
              "The line is no UTF-8 text. Save the file as UTF-8 (\"CSV UTF-8\" in "
              "a spreadsheet).");
    EXPECT_EQ(records[1].fault, "");
}

TEST(Csv, AByteOrderMarkIsNoLetter)
{
    EXPECT_THAT(Read("\xEF\xBB\xBFhuid;x\n")[0].fields, ElementsAre("huid", "x"));
}

TEST(Csv, TheFirstLineShowsTheSeparator)
{
    EXPECT_EQ(SeparatorOf("huid;a,b\n", "#"), ';');
    EXPECT_EQ(SeparatorOf("huid,a;b\n", "#"), ',');
    EXPECT_EQ(SeparatorOf("huid\ta\n", "#"), '\t');
    EXPECT_EQ(SeparatorOf("huid\na,b\n", "#"), ';');
    EXPECT_EQ(SeparatorOf("", "#"), ';');
    EXPECT_EQ(SeparatorOf("# a;b\n\r\n  \nhuid,a;b\n", "#"), ',');
    EXPECT_EQ(SeparatorOf("\xEF\xBB\xBF# a;b\nhuid\ta\n", "#"), '\t');
    EXPECT_EQ(SeparatorOf("# a,b\n# c", "#"), ';');
    EXPECT_EQ(SeparatorOf("\n", "#"), ';');
}

} // namespace
} // namespace rulebook
