#include "host/table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::ElementsAre;

TEST(Table, AlignsAccentedCellsByWhatIsSeen)
{
    host::Table table;
    table.AddColumn("NAME");
    table.AddColumn("TOTAL", host::Table::Align::Right);
    table.AddRow({"Élodie", "9.00"});
    table.AddRow({"Paul Martin", "12500.00"});

    EXPECT_EQ(table.Text(), "NAME            TOTAL\n"
                            "-----------  --------\n"
                            "Élodie           9.00\n"
                            "Paul Martin  12500.00\n");
}

TEST(Table, LongCellsGoOnBelow)
{
    host::Table table;
    table.AddColumn("NO");
    table.AddColumn("REASON", host::Table::Align::Left, 12);
    table.AddRow({"1", "The total is over the limit"});

    EXPECT_EQ(table.Text(), "NO  REASON\n"
                            "--  ------------\n"
                            "1   The total is\n"
                            "    over the\n"
                            "    limit\n");
}

TEST(Table, MissingCellsAreEmpty)
{
    host::Table table;
    table.AddColumn("A");
    table.AddColumn("B");
    table.AddRow({"x"});

    EXPECT_EQ(table.Text(), "A  B\n-  -\nx\n");
}

TEST(Table, LineEndsInACellDoNotBreakTheTable)
{
    host::Table table;
    table.AddColumn("A");
    table.AddRow({"x\r\ny\x1B"});

    EXPECT_EQ(table.Text(), "A\n-----\nx  y?\n");
}

TEST(Wrapped, AWordThatIsTooLongIsCut)
{
    EXPECT_THAT(host::Wrapped("abcdefgh", 3), ElementsAre("abc", "def", "gh"));
}

TEST(Wrapped, WideLettersCountTwice)
{
    EXPECT_THAT(host::Wrapped("銀行銀行", 5), ElementsAre("銀行", "銀行"));
}

TEST(Wrapped, AnEmptyTextIsOneEmptyLine)
{
    EXPECT_THAT(host::Wrapped("", 5), ElementsAre(""));
}

} // namespace
