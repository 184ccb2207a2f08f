#include "support/oem.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

/// What a call writes to standard error; fails when it writes to standard output.
std::string ShownBy(const char* text)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    printfCharToOem(text);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    return testing::internal::GetCapturedStderr();
}

TEST(PrintfCharToOem, WritesToStandardErrorOnly)
{
    EXPECT_EQ(ShownBy("\nError INI : col TOTAL not found"), "\nError INI : col TOTAL not found");
}

TEST(PrintfCharToOem, AccentsOfWindows1252AreShownAsUtf8)
{
    EXPECT_EQ(ShownBy("R\xE8gle \x80"), "R\xC3\xA8gle \xE2\x82\xAC");
}

TEST(PrintfCharToOem, TheTextIsNoTemplate)
{
    EXPECT_EQ(ShownBy("100%s%n%d"), "100%s%n%d");
}

TEST(PrintfCharToOem, NullAndEmptyTextsWriteNothing)
{
    EXPECT_EQ(ShownBy(nullptr), "");
    EXPECT_EQ(ShownBy(""), "");
}

} // namespace
