#include "support/odbc_errors.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

std::string Formatted(const char* first, const char* second, std::int32_t returnCode = -1)
{
    tagODBCERROR error;
    ODBC_PrepareStrucError(error, "SignRules");
    return ODBC_FormatStrucError(error, 170393626, returnCode, first, second).SafeGetString();
}

TEST(OdbcErrors, TheTextShowsTagNumberReturnCodeAndBothTexts)
{
    EXPECT_EQ(Formatted("first", "second"),
              "SignRules: error 0A28001A, return code -1, first, second");
}

TEST(OdbcErrors, EmptyAndNullTextsAreLeftOut)
{
    EXPECT_EQ(Formatted("first", "", 100), "SignRules: error 0A28001A, return code 100, first");
    EXPECT_EQ(Formatted("", "second"), "SignRules: error 0A28001A, return code -1, second");
    EXPECT_EQ(Formatted(nullptr, nullptr), "SignRules: error 0A28001A, return code -1");
}

TEST(OdbcErrors, LineEndsOfDriversBecomeBlanks)
{
    EXPECT_EQ(Formatted("a\r\nb", "c\td"), "SignRules: error 0A28001A, return code -1, a  b, c d");
}

TEST(OdbcErrors, PercentSignsOfDriversAreNoConversions)
{
    EXPECT_EQ(Formatted("100%d", "%s%n"), "SignRules: error 0A28001A, return code -1, 100%d, %s%n");
}

TEST(OdbcErrors, TheRecordIsFilled)
{
    tagODBCERROR error;
    ODBC_PrepareStrucError(error, "SignRules");
    EXPECT_STREQ(error.source, "SignRules");
    EXPECT_EQ(error.number, 0U);
    EXPECT_EQ(error.returnCode, 0);
    ODBC_FormatStrucError(error, 7, -2, "first", "second");
    EXPECT_EQ(error.number, 7U);
    EXPECT_EQ(error.returnCode, -2);
    EXPECT_STREQ(error.first.SafeGetString(), "first");
    EXPECT_STREQ(error.second.SafeGetString(), "second");
}

TEST(OdbcErrors, PreparingAgainForgetsTheErrorBefore)
{
    tagODBCERROR error;
    ODBC_PrepareStrucError(error, "One");
    ODBC_FormatStrucError(error, 7, -2, "first", "second");
    ODBC_PrepareStrucError(error, nullptr);
    EXPECT_STREQ(error.source, "");
    EXPECT_EQ(error.number, 0U);
    EXPECT_TRUE(error.first.IsEmpty());
    EXPECT_TRUE(error.second.IsEmpty());
}

TEST(OdbcErrors, LongTagsAreCut)
{
    tagODBCERROR error;
    ODBC_PrepareStrucError(error, std::string(100, 'T').c_str());
    EXPECT_EQ(std::string(error.source), std::string(31, 'T'));
}

} // namespace
