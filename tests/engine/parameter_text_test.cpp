#include "engine/failure.h"
#include "engine/parameter_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using engine::Failure;
using engine::FailureNumber;
using engine::ReadParameterText;
using testing::HasSubstr;

TEST(ParameterText, NamesOrderFileAndStem)
{
    const auto treatments = ReadParameterText(L"\"/in/order 1.xml\" \"/in/order 1.xml.veu\" ;");
    ASSERT_EQ(treatments.size(), 1U);
    EXPECT_EQ(treatments[0].orderFile, "/in/order 1.xml");
    EXPECT_EQ(treatments[0].stem, "/in/order 1.xml.veu");
}

TEST(ParameterText, HasOneArgumentForEachTreatment)
{
    const auto treatments =
        ReadParameterText(L"\"a | b\" \"a.veu\" ; | \"c;\" \"c.veu\" ; | \"d\" \"d.veu\" ;");
    ASSERT_EQ(treatments.size(), 3U);
    EXPECT_EQ(treatments[0].orderFile, "a | b");
    EXPECT_EQ(treatments[1].orderFile, "c;");
    EXPECT_EQ(treatments[2].stem, "d.veu");
}

TEST(ParameterText, EmptyTextHasNoTreatment)
{
    EXPECT_TRUE(ReadParameterText(L"").empty());
}

TEST(ParameterText, PathsAreWindows1252)
{
    EXPECT_EQ(ReadParameterText(L"\"\u00E9\u20AC\" \"x\" ;").at(0).orderFile, "\xE9\x80");
}

struct BadParameters
{
    const char* name;
    const wchar_t* text;
    const char* says;
};

static void PrintTo(const BadParameters& bad, std::ostream* stream)
{
    *stream << bad.name;
}

class MalformedParameterText : public testing::TestWithParam<BadParameters>
{
};

TEST_P(MalformedParameterText, IsRefused)
{
    try
    {
        ReadParameterText(GetParam().text);
        FAIL() << "not refused";
    }
    catch (const Failure& failure)
    {
        EXPECT_EQ(failure.Number(), FailureNumber::BadParameters);
        EXPECT_THAT(failure.Text(), HasSubstr(GetParam().says));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, MalformedParameterText,
    testing::Values(
        BadParameters{"NoQuotes", L"a b ;", "character 1"},
        BadParameters{"OpenQuote", L"\"a\" \"b ;", "character 6"},
        BadParameters{"EmptyPath", L"\"\" \"b\" ;", "path in quotes expected"},
        BadParameters{"OnePath", L"\"a\" ;", "character 5"},
        BadParameters{"NoSemicolon", L"\"a\" \"b\"", "' ;' expected"},
        BadParameters{"WrongSeparator", L"\"a\" \"b\" ;, \"c\" \"d\" ;", "' | ' expected"},
        BadParameters{"SeparatorAtTheEnd", L"\"a\" \"b\" ; | ", "'\"' expected"},
        BadParameters{"QuoteInAPath", L"\"a\"b\" \"c\" ;", "' ' expected"},
        BadParameters{"LetterOutsideWindows1252", L"\"\u4E2D\" \"b\" ;", "outside Windows-1252"}),
    [](const auto& test) { return std::string(test.param.name); });
