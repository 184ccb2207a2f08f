#include "support/filter.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

struct FilterCase
{
    const char* name;
    const char* pattern;
    const char* text;
    int result;
};

class GetFilterResultOf : public testing::TestWithParam<FilterCase>
{
};

TEST_P(GetFilterResultOf, Pattern)
{
    EXPECT_EQ(GetFilterResult(GetParam().pattern, GetParam().text), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GetFilterResultOf,
    testing::Values(FilterCase{"PlainTextMatchesItself", "order", "order", 1},
                    FilterCase{"CaseIsIgnored", "ORder", "orDER", 1},
                    FilterCase{"CaseOfAccentsIsIgnored", "\xC9t\xE9", "\xE9T\xC9", 1},
                    FilterCase{"CaseBelowA0IsIgnored", "\x8A\x8C\x8E", "\x9A\x9C\x9E", 1},
                    FilterCase{"AccentIsNoPlainLetter", "\xE9", "e", 0},
                    FilterCase{"WholeTextCounts", "order", "orders", 0},
                    FilterCase{"WholePatternCounts", "orders", "order", 0},
                    FilterCase{"StarMatchesNothing", "*", "", 1},
                    FilterCase{"StarMatchesAll", "*", "anything", 1},
                    FilterCase{"StarAtTheEnd", "ord*", "order.veu", 1},
                    FilterCase{"StarAtTheStart", "*.veu", "order.veu", 1},
                    FilterCase{"StarTriesAgain", "*.veu", "a.veux.veu", 1},
                    FilterCase{"StarsInARow", "o**r", "order", 1},
                    FilterCase{"SeveralStars", "*a*b*c*", "xxaxxbxxcxx", 1},
                    FilterCase{"SeveralStarsInOrder", "*a*b*c*", "xxaxxcxxbxx", 0},
                    FilterCase{"StarsAfterTheText", "order**", "order", 1},
                    FilterCase{"QuestionMarkIsOneCharacter", "o?der", "order", 1},
                    FilterCase{"QuestionMarkIsNotNone", "order?", "order", 0},
                    FilterCase{"QuestionMarkAlone", "?", "", 0},
                    FilterCase{"QuestionMarkAfterStar", "*?", "x", 1},
                    FilterCase{"QuestionMarksCount", "???", "ab", 0},
                    FilterCase{"EmptyPatternMatchesEmptyText", "", "", 1},
                    FilterCase{"EmptyPatternMatchesNoText", "", "a", 0},
                    FilterCase{"NullPatternMatchesNothing", nullptr, "", 0},
                    FilterCase{"OtherSignsAreLetters", "[a-z].+", "[A-Z].+", 1}),
    [](const testing::TestParamInfo<FilterCase>& test) { return std::string(test.param.name); });

TEST(GetFilterResultCost, ManyStarsOnALongTextEndSoon)
{
    // Tried from every star again, this would take longer than anybody waits.
    std::string pattern;
    for (int star = 0; star < 50; ++star)
    {
        pattern += "*a";
    }
    pattern += "b";
    EXPECT_EQ(GetFilterResult(pattern.c_str(), std::string(5000, 'a').c_str()), 0);
}

} // namespace
