#include "database/literal.h"

#include "tests/database/sqlite_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using database_tests::Failure;
using database_tests::FailureOf;
using testing::HasSubstr;

namespace
{

struct LiteralCase
{
    const char* name;
    const char* text;
    std::size_t cut;
    bool stays;
};

constexpr LiteralCase kLiteralCases[] = {
    {"Empty", "", database::kUncut, true},
    {"WithoutQuotes", "Ana Ruiz", database::kUncut, true},
    {"OneQuote", "O'Brien", database::kUncut, false},
    {"OneQuoteAlone", "'", database::kUncut, false},
    {"QuoteAtTheBeginning", "'x", database::kUncut, false},
    {"QuoteAtTheEnd", "x'", database::kUncut, false},
    {"Pair", "O''Brien", database::kUncut, true},
    {"PairAlone", "''", database::kUncut, true},
    {"ThreeInARow", "O'''Brien", database::kUncut, false},
    {"FourInARow", "O''''Brien", database::kUncut, true},
    {"TwoSingleOnes", "x' OR 'y", database::kUncut, false},
    {"TwoPairs", "x'' OR ''y", database::kUncut, true},
    {"PairThenSingleOne", "x'' OR 'y", database::kUncut, false},
    {"SingleOneThenPair", "x' OR ''y", database::kUncut, false},
    {"BehindTheCut", "abc'", 3, true},
    {"LastBeforeTheCut", "abc'", 4, false},
    {"PairThatEndsAtTheCut", "abc''", 5, true},
    {"PairCutInTwo", "abc''", 4, false},
    {"TripleCutToAPair", "abc'''x", 5, true},
    {"NothingIsKept", "'", 0, true},
};

class Literal : public testing::TestWithParam<LiteralCase>
{
};

TEST_P(Literal, HoldsTheTextOrIsRefused)
{
    const std::string narrow = GetParam().text;
    const std::wstring wide(narrow.begin(), narrow.end());
    const std::size_t cut = GetParam().cut;

    EXPECT_EQ(!FailureOf([&] { database::RequireWithinLiteral(narrow.c_str(), cut, "x", "y"); }),
              GetParam().stays);
    EXPECT_EQ(!FailureOf([&] { database::RequireWithinLiteral(wide.c_str(), cut, "x", "y"); }),
              GetParam().stays);
}

INSTANTIATE_TEST_SUITE_P(Texts, Literal, testing::ValuesIn(kLiteralCases),
                         [](const auto& row) { return row.param.name; });

TEST(LiteralRefusal, NullTextsCountAsEmpty)
{
    EXPECT_FALSE(FailureOf(
        []
        {
            database::RequireWithinLiteral(static_cast<const char*>(nullptr), 8, "x", "y");
            database::RequireWithinLiteral(static_cast<const wchar_t*>(nullptr), 8, "x", "y");
        }));
}

TEST(LiteralRefusal, NamesTextRemedyAndOperation)
{
    const auto failure = FailureOf(
        []
        { database::RequireWithinLiteral(L"x'", database::kUncut, "file name", "ExecuteSQLW"); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->returnCode, -1);
    EXPECT_EQ(failure->state, "42000");
    EXPECT_EQ(failure->nativeError, 0);
    EXPECT_EQ(failure->first,
              "[42000] The file name has an apostrophe without a partner, which would end its "
              "literal in the statement: write it without apostrophes.");
    EXPECT_EQ(failure->second, "ExecuteSQLW");
}

TEST(LiteralRefusal, NamesTheCutBecauseItMayPartAPair)
{
    const auto failure =
        FailureOf([] { database::RequireWithinLiteral("abc''", 4, "reason", "ExecuteSQLW"); });
    ASSERT_TRUE(failure);
    EXPECT_THAT(failure->first, HasSubstr("The reason, cut to 4 characters, has an apostrophe"));
}

} // namespace
