#include "host/listing/csv_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace
{

using Json = nlohmann::ordered_json;

TEST(CsvLine, EndsWithCarriageReturnAndLineFeed)
{
    EXPECT_EQ(listing::CsvLine({"a", "", "c"}), "a,,c\r\n");
}

TEST(CsvLine, EnclosesWhatWouldBreakTheRecord)
{
    EXPECT_EQ(listing::CsvLine({"a,b", "say \"no\"", "two\r\nlines", "cr\ronly", "lf\nonly"}),
              "\"a,b\",\"say \"\"no\"\"\",\"two\r\nlines\",\"cr\ronly\",\"lf\nonly\"\r\n");
}

TEST(CsvLine, LeavesOtherTextsAsTheyAre)
{
    EXPECT_EQ(listing::CsvLine({"Hélène Garçon", "a;b", " blank ", "it's"}),
              "Hélène Garçon,a;b, blank ,it's\r\n");
}

TEST(CsvField, NullIsEmptyAndAmountsHaveTheirDecimals)
{
    EXPECT_EQ(listing::CsvField(Json(nullptr)), "");
    EXPECT_EQ(listing::CsvField(Json(900.0)), "900.00");
    EXPECT_EQ(listing::CsvField(Json(0.125)), "0.125");
    EXPECT_EQ(listing::CsvField(Json(1200)), "1200");
    EXPECT_EQ(listing::CsvField(Json(true)), "true");
}

TEST(CsvField, NegativeNumbersAreNoFormulas)
{
    EXPECT_EQ(listing::CsvField(Json(-7)), "-7");
    EXPECT_EQ(listing::CsvField(Json("-7")), "'-7");
}

TEST(FormulaGuard, KeepsSpreadsheetsFromCalculating)
{
    for (const std::string text : {"=1+1", "+1", "-1", "@SUM(A1)", "\t=1", "\r=1", "\n=1", " =1",
                                   "＝1", "＋1", "－1", "＠1"})
    {
        EXPECT_EQ(listing::GuardedFromFormulas(text), "'" + text);
    }
}

TEST(FormulaGuard, LeavesTextsThatNoSpreadsheetCalculates)
{
    for (const std::string text : {"", " ", "'", "it's", "'quoted'", "a=b", "1-2", "O'Brien"})
    {
        EXPECT_EQ(listing::GuardedFromFormulas(text), text);
    }
}

TEST(FormulaGuard, CanBeTakenOffAgain)
{
    EXPECT_EQ(listing::GuardedFromFormulas("'=1"), "''=1");
    EXPECT_EQ(listing::GuardedFromFormulas("''=1"), "'''=1");
}

} // namespace
