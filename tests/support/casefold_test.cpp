#include "support/casefold.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

namespace
{

using support::EqualIgnoringAsciiCase;
using support::EqualIgnoringCase;
using support::LowerCase;

struct FoldCase
{
    const char* name;
    char32_t character;
    char32_t lower;
};

class LowerCasing : public testing::TestWithParam<FoldCase>
{
};

const FoldCase kFoldCases[] = {
    {"LatinA", U'A', U'a'},
    {"LatinZ", U'Z', U'z'},
    {"LowerCaseStays", U'z', U'z'},
    {"DigitStays", U'7', U'7'},
    {"AtSignBeforeA", U'@', U'@'},
    {"BracketBehindZ", U'[', U'['},
    {"EAcute", U'\u00C9', U'\u00E9'},
    {"MultiplicationSignStays", U'\u00D7', U'\u00D7'},
    {"Thorn", U'\u00DE', U'\u00FE'},
    {"SharpSStays", U'\u00DF', U'\u00DF'},
    {"CapitalSharpS", U'\u1E9E', U'\u00DF'},
    {"AMacron", U'\u0100', U'\u0101'},
    {"AMacronLowerStays", U'\u0101', U'\u0101'},
    {"CapitalIWithDotIsPlainI", U'\u0130', U'i'},
    {"DotlessIStays", U'\u0131', U'\u0131'},
    {"PlainIIsPlainI", U'I', U'i'},
    {"YDiaeresis", U'\u0178', U'\u00FF'},
    {"LongSStays", U'\u017F', U'\u017F'},
    {"DzTitleCase", U'\u01C5', U'\u01C6'},
    {"OE", U'\u0152', U'\u0153'},
    {"GreekAlpha", U'\u0391', U'\u03B1'},
    {"GreekSigma", U'\u03A3', U'\u03C3'},
    {"GreekFinalSigmaStays", U'\u03C2', U'\u03C2'},
    {"GreekAlphaWithTonos", U'\u0386', U'\u03AC'},
    {"UnassignedGreekStays", U'\u03A2', U'\u03A2'},
    {"CyrillicA", U'\u0410', U'\u0430'},
    {"CyrillicYa", U'\u042F', U'\u044F'},
    {"CyrillicIo", U'\u0401', U'\u0451'},
    {"KelvinSign", U'\u212A', U'k'},
    {"AngstromSign", U'\u212B', U'\u00E5'},
    {"Armenian", U'\u0531', U'\u0561'},
    {"Georgian", U'\u10A0', U'\u2D00'},
    {"Fullwidth", U'\uFF21', U'\uFF41'},
    {"DeseretFirst", U'\U00010400', U'\U00010428'},
    {"DeseretLast", U'\U00010427', U'\U0001044F'},
    {"BehindDeseretStays", U'\U00010450', U'\U00010450'},
    {"AdlamLast", U'\U0001E921', U'\U0001E943'},
    {"BehindTheTable", U'\U0010FFFF', U'\U0010FFFF'},
    {"NoCharacter", 0xFFFFFFFF, 0xFFFFFFFF},
};

TEST_P(LowerCasing, FollowsTheSimpleMapping)
{
    EXPECT_EQ(static_cast<unsigned>(LowerCase(GetParam().character)),
              static_cast<unsigned>(GetParam().lower));
}

INSTANTIATE_TEST_SUITE_P(Table, LowerCasing, testing::ValuesIn(kFoldCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(CaseFolding, LowerCaseOfALowerCaseIsItself)
{
    for (char32_t character = 0; character <= 0x10FFFF; ++character)
    {
        const char32_t lower = LowerCase(character);
        ASSERT_EQ(LowerCase(lower), lower) << static_cast<unsigned>(character);
    }
}

TEST(CaseFolding, TheLocaleHasNoSay)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* const locale : {"tr_TR.UTF-8", "fr_FR.UTF-8", "C"})
    {
        std::setlocale(LC_ALL, locale);
        EXPECT_TRUE(EqualIgnoringCase(L"IIII", L"iiii")) << locale;
        EXPECT_TRUE(EqualIgnoringCase(L"\u00C9", L"\u00E9")) << locale;
    }
    std::setlocale(LC_ALL, before.c_str());
}

struct Comparison
{
    const char* name;
    const wchar_t* left;
    const wchar_t* right;
    std::size_t count;
    bool equal;
};

class CaseComparison : public testing::TestWithParam<Comparison>
{
};

const Comparison kComparisons[] = {
    {"SameTextInOtherCase", L"ANA RUIZ", L"Ana Ruiz", 255, true},
    {"Accents", L"REN\u00C9E L\u00D6SER", L"Ren\u00E9e L\u00F6ser", 255, true},
    {"GreekAndCyrillic", L"\u0391\u0416", L"\u03B1\u0436", 255, true},
    {"Deseret", L"\U00010400x", L"\U00010428X", 255, true},
    {"AccentIsNoPlainLetter", L"Renee", L"Ren\u00E9e", 255, false},
    {"FinalSigmaIsAnotherLetter", L"\u03C3", L"\u03C2", 255, false},
    {"Prefix", L"Ana", L"Ana Ruiz", 255, false},
    {"LongerLeft", L"Ana Ruiz", L"Ana", 255, false},
    {"DifferenceBehindTheCount", L"ABCx", L"abcy", 3, true},
    {"DifferenceAtTheCount", L"ABCx", L"abcy", 4, false},
    {"ShorterThanTheCount", L"ABC", L"abcd", 3, true},
    {"CountNull", L"a", L"b", 0, true},
    {"BothEmpty", L"", L"", 255, true},
    {"EmptyAndNot", L"", L"a", 255, false},
    {"NullIsEmpty", nullptr, L"", 255, true},
    {"NullAndText", nullptr, L"a", 255, false},
};

TEST_P(CaseComparison, IsTheSameInBothDirections)
{
    const Comparison& compared = GetParam();
    EXPECT_EQ(EqualIgnoringCase(compared.left, compared.right, compared.count), compared.equal);
    EXPECT_EQ(EqualIgnoringCase(compared.right, compared.left, compared.count), compared.equal);
}

INSTANTIATE_TEST_SUITE_P(Table, CaseComparison, testing::ValuesIn(kComparisons),
                         [](const auto& tested) { return tested.param.name; });

TEST(CaseFolding, SurrogatePairsAreComparedAsOneCharacter)
{
    const wchar_t capital[] = {static_cast<wchar_t>(0xD801), static_cast<wchar_t>(0xDC00), L'\0'};
    const wchar_t lower[] = {static_cast<wchar_t>(0xD801), static_cast<wchar_t>(0xDC28), L'\0'};
    EXPECT_TRUE(EqualIgnoringCase(capital, lower));
    // A count that ends within the pair leaves two equal halves.
    EXPECT_TRUE(EqualIgnoringCase(capital, lower, 1));
}

TEST(CaseFolding, TheWholeTextCountsWithoutACount)
{
    const std::wstring upper(300, L'A');
    const std::wstring lower(300, L'a');
    EXPECT_TRUE(EqualIgnoringCase(upper.c_str(), lower.c_str()));
    EXPECT_FALSE(EqualIgnoringCase((upper + L"x").c_str(), (lower + L"y").c_str()));
    EXPECT_TRUE(EqualIgnoringCase((upper + L"x").c_str(), (lower + L"y").c_str(), 255));
}

TEST(AsciiCase, FoldsAsciiLettersOnly)
{
    EXPECT_TRUE(EqualIgnoringAsciiCase("CtlVEU.INI", "ctlveu.ini"));
    EXPECT_FALSE(EqualIgnoringAsciiCase("\xC9", "\xE9"));
    EXPECT_FALSE(EqualIgnoringAsciiCase("@[`{", "`{@["));
    EXPECT_FALSE(EqualIgnoringAsciiCase("abc", "ab"));
    EXPECT_FALSE(EqualIgnoringAsciiCase("ab", "abc"));
    EXPECT_TRUE(EqualIgnoringAsciiCase(nullptr, ""));
    EXPECT_FALSE(EqualIgnoringAsciiCase(nullptr, "a"));
}

} // namespace
