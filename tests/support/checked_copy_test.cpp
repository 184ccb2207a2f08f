#include "support/checked_copy.h"

#include "tests/signutils/invalid_parameters.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace
{

using support::CheckedCopy;
using support::TruncatingCopy;
using testing_support::CountInvalidParameters;

struct CopyCase
{
    const char* name;
    std::size_t size;
    const char* source;
    std::size_t count;
    const char* expected;
    int refusals;
};

class CheckedCopying : public testing::TestWithParam<CopyCase>
{
};

const CopyCase kCopyCases[] = {
    {"Fits", 9, "PARTNER1", 9, "PARTNER1", 0},
    {"OneTooMany", 9, "PARTNER12", 9, "", 1},
    {"ManyTooMany", 9, "PARTNER1234567890", 9, "", 1},
    {"CountBelowTheSizeCuts", 9, "PARTNER12", 8, "PARTNER1", 0},
    {"CountFarBelowTheSizeCuts", 9, "PARTNER12", 3, "PAR", 0},
    {"CountAboveTheSizeCountsTheText", 9, "PARTNER1", 255, "PARTNER1", 0},
    {"CountAboveTheSizeRefusesALongText", 9, "PARTNER12", 255, "", 1},
    {"EmptyText", 9, "", 9, "", 0},
    {"NullText", 9, nullptr, 9, "", 1},
    {"NullTextWithoutCount", 9, nullptr, 0, "", 0},
    {"CountNull", 9, "text", 0, "", 0},
    {"SizeOneTakesAnEmptyText", 1, "", 1, "", 0},
    {"SizeOneRefusesALetter", 1, "x", 1, "", 1},
};

TEST_P(CheckedCopying, CopiesWholeOrEmptiesAndCallsTheHandler)
{
    const CopyCase& copied = GetParam();
    const CountInvalidParameters handler;
    char destination[16];
    std::memset(destination, '#', sizeof destination);
    CheckedCopy(destination, copied.size, copied.source, copied.count);
    EXPECT_STREQ(destination, copied.expected);
    EXPECT_EQ(handler.Calls(), copied.refusals);
    EXPECT_EQ(destination[copied.size], '#');
}

INSTANTIATE_TEST_SUITE_P(Table, CheckedCopying, testing::ValuesIn(kCopyCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(CheckedCopy, ArraysBringTheirSize)
{
    const CountInvalidParameters handler;
    char destination[5] = "old";
    CheckedCopy(destination, "1234");
    EXPECT_STREQ(destination, "1234");
    CheckedCopy(destination, "12345");
    EXPECT_STREQ(destination, "");
    EXPECT_EQ(handler.Calls(), 1);
}

TEST(CheckedCopy, NoDestinationOrNoRoomCallsTheHandlerAndTouchesNothing)
{
    const CountInvalidParameters handler;
    char destination[] = "#";
    CheckedCopy(nullptr, 9, "text", 9);
    EXPECT_EQ(handler.Calls(), 1);
    CheckedCopy(destination, 0, "text", 9);
    EXPECT_EQ(handler.Calls(), 2);
    EXPECT_STREQ(destination, "#");
}

TEST(CheckedCopy, ReadsNoFurtherThanTheCount)
{
    const char source[3] = {'a', 'b', 'c'};
    char destination[9];
    CheckedCopy(destination, sizeof destination, source, sizeof source);
    EXPECT_STREQ(destination, "abc");
}

TEST(CheckedCopyDeathTest, WithoutAHandlerTheProcessEnds)
{
    char destination[5];
    EXPECT_DEATH(CheckedCopy(destination, "12345"), "");
}

TEST(TruncatingCopy, CutsAndEndsTheText)
{
    char narrow[5];
    TruncatingCopy(narrow, sizeof narrow, "123456");
    EXPECT_STREQ(narrow, "1234");
    TruncatingCopy(narrow, sizeof narrow, "1234");
    EXPECT_STREQ(narrow, "1234");
    TruncatingCopy(narrow, sizeof narrow, nullptr);
    EXPECT_STREQ(narrow, "");
    TruncatingCopy(narrow, 1, "x");
    EXPECT_STREQ(narrow, "");

    wchar_t wide[5];
    TruncatingCopy(wide, 5, L"123456");
    EXPECT_STREQ(wide, L"1234");
    TruncatingCopy(wide, 5, L"12");
    EXPECT_STREQ(wide, L"12");
    TruncatingCopy(wide, 5, nullptr);
    EXPECT_STREQ(wide, L"");
    TruncatingCopy(wide, 1, L"x");
    EXPECT_STREQ(wide, L"");
}

TEST(TruncatingCopy, CutsTheLongNameOfAHolderAt255)
{
    wchar_t name[256];
    TruncatingCopy(name, 256, std::wstring(300, L'N').c_str());
    EXPECT_EQ(std::wstring(name), std::wstring(255, L'N'));
}

TEST(TruncatingCopy, LeavesNoHalfOfASurrogatePair)
{
    const wchar_t pair[] = {L'a', static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00),
                            L'\0'};
    wchar_t wide[4];
    TruncatingCopy(wide, 3, pair);
    EXPECT_STREQ(wide, L"a");
    TruncatingCopy(wide, 4, pair);
    EXPECT_STREQ(wide, pair);
}

TEST(TruncatingCopy, WithoutRoomNothingIsTouched)
{
    char narrow[] = "#";
    wchar_t wide[] = L"#";
    TruncatingCopy(narrow, 0, "x");
    TruncatingCopy(wide, 0, L"x");
    TruncatingCopy(static_cast<char*>(nullptr), 5, "x");
    TruncatingCopy(static_cast<wchar_t*>(nullptr), 5, L"x");
    EXPECT_STREQ(narrow, "#");
    EXPECT_STREQ(wide, L"#");
}

} // namespace
