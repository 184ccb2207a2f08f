#include "host/text.h"

#include "host/suggestion.h"

#include <gtest/gtest.h>

namespace
{

TEST(DisplayWidth, CountsLettersNotBytes)
{
    EXPECT_EQ(host::DisplayWidth("Élodie"), 6U);
    EXPECT_EQ(host::DisplayWidth(""), 0U);
}

TEST(DisplayWidth, CombiningMarksTakeNoColumn)
{
    EXPECT_EQ(host::DisplayWidth("E\xCC\x81lodie"), 6U);
}

TEST(DisplayWidth, WideLettersTakeTwoColumns)
{
    EXPECT_EQ(host::DisplayWidth("銀行"), 4U);
    EXPECT_EQ(host::DisplayWidth("💶"), 2U);
}

TEST(Printable, TakesTheForceOutOfControlCharacters)
{
    EXPECT_EQ(host::Printable("a\x1B[2Jb\r\nc\td\x7F"), "a?[2Jb  c d?");
    EXPECT_EQ(host::Printable("\xC2\x9B"), "?"); // a control sequence in one character
}

TEST(Printable, TakesTheForceOutOfDirectionMarks)
{
    EXPECT_EQ(host::Printable("a\xE2\x80\xAE"
                              "b"),
              "a?b");
}

TEST(Printable, MalformedBytesBecomeTheReplacementCharacter)
{
    EXPECT_EQ(host::Printable("a\xFF"
                              "b"),
              "a\xEF\xBF\xBD"
              "b");
}

TEST(Quoted, LongValuesAreCut)
{
    const std::string quoted = host::Quoted(std::string(500, 'x'));

    EXPECT_EQ(quoted, "'" + std::string(120, 'x') + "…'");
}

TEST(FirstWithoutNarrowPlace, IsTheWholeCharacter)
{
    EXPECT_EQ(host::FirstWithoutNarrowPlace("Élodie €"), "");
    EXPECT_EQ(host::FirstWithoutNarrowPlace("aЖb"), "Ж");
    EXPECT_EQ(host::FirstWithoutNarrowPlace("a💶b"), "💶");
}

TEST(Suggestion, NamesTheNearestCandidate)
{
    const std::vector<std::string> names = {"partner", "party", "protocol", "psr-service"};

    EXPECT_EQ(host::Nearest("partnr", names), "partner");
    EXPECT_EQ(host::Nearest("protocoll", names), "protocol");
    EXPECT_EQ(host::Nearest("psr", names), "psr-service");
    EXPECT_EQ(host::Nearest("colour", names), "");
}

TEST(ShortenedPath, LosesItsBeginningAtASeparator)
{
    EXPECT_EQ(host::ShortenedPath("/orders/a.xml", 13), "/orders/a.xml");
    EXPECT_EQ(host::ShortenedPath("/srv/bank/orders/a.xml", 16), "…/orders/a.xml");
    EXPECT_EQ(host::ShortenedPath("C:\\bank\\orders\\a.xml", 16), "…\\orders\\a.xml");
    EXPECT_EQ(host::ShortenedPath("/srv/é/a.xml", 8), "…/a.xml");
    EXPECT_EQ(host::ShortenedPath("averylongname.xml", 8), "…ame.xml");
}

} // namespace
