#include "support/codepage.h"
#include "support/utf16.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using namespace support;

std::wstring Wide(std::initializer_list<unsigned> units)
{
    std::wstring text;
    for (const unsigned unit : units)
    {
        text.push_back(static_cast<wchar_t>(unit));
    }
    return text;
}

struct Own
{
    unsigned char byte;
    unsigned character;
};

const Own kOwn[] = {
    {0x80, 0x20AC},
    {0x82, 0x201A},
    {0x83, 0x0192},
    {0x84, 0x201E},
    {0x85, 0x2026},
    {0x86, 0x2020},
    {0x87, 0x2021},
    {0x88, 0x02C6},
    {0x89, 0x2030},
    {0x8A, 0x0160},
    {0x8B, 0x2039},
    {0x8C, 0x0152},
    {0x8E, 0x017D},
    {0x91, 0x2018},
    {0x92, 0x2019},
    {0x93, 0x201C},
    {0x94, 0x201D},
    {0x95, 0x2022},
    {0x96, 0x2013},
    {0x97, 0x2014},
    {0x98, 0x02DC},
    {0x99, 0x2122},
    {0x9A, 0x0161},
    {0x9B, 0x203A},
    {0x9C, 0x0153},
    {0x9E, 0x017E},
    {0x9F, 0x0178},
    // The five that the code page leaves undefined are controls, in both directions.
    {0x81, 0x0081},
    {0x8D, 0x008D},
    {0x8F, 0x008F},
    {0x90, 0x0090},
    {0x9D, 0x009D},
};

TEST(CodePage, EveryByteFrom80To9FHasItsCharacterBothWays)
{
    for (const Own& own : kOwn)
    {
        const std::string narrow(1, static_cast<char>(own.byte));
        const std::wstring wide = Wide({own.character});
        EXPECT_EQ(WideFromNarrow(narrow), wide) << unsigned{own.byte};
        EXPECT_EQ(NarrowFromWide(wide), narrow) << unsigned{own.byte};
    }
    EXPECT_EQ(std::size(kOwn), 32U);
}

TEST(CodePage, AllOtherBytesAreTheCharactersOfTheSameNumber)
{
    for (unsigned value = 0; value <= 0xFF; value = value == 0x7F ? 0xA0 : value + 1)
    {
        const char byte = static_cast<char>(static_cast<unsigned char>(value));
        EXPECT_EQ(WideFromNarrow(byte), static_cast<wchar_t>(value));
        EXPECT_EQ(NarrowFromWide(Wide({value})), std::string(1, byte));
    }
}

TEST(CodePage, AllBytesComeBackTheSame)
{
    std::string all;
    for (int value = 0; value < 256; ++value)
    {
        all.push_back(static_cast<char>(static_cast<unsigned char>(value)));
    }
    std::string back;
    EXPECT_TRUE(TryNarrowFromWide(WideFromNarrow(all), back));
    EXPECT_EQ(back, all);
}

TEST(CodePage, WhatHasNoPlaceIsAQuestionMarkAndIsTold)
{
    // The first four are C1 controls whose bytes mean something else, the next two would have
    // been replaced by similar letters.
    for (const unsigned character : {0x80U, 0x85U, 0x92U, 0x9FU, 0x100U, 0x2212U, 0x416U, 0xFFFDU})
    {
        std::string narrow;
        EXPECT_FALSE(TryNarrowFromWide(L"a" + Wide({character}) + L"b", narrow));
        EXPECT_EQ(narrow, "a?b") << character;
    }
}

TEST(CodePage, ACharacterBeyondTheBasicPlaneIsOneQuestionMark)
{
    EXPECT_EQ(NarrowFromWide(Wide({'a', 0xD83D, 0xDE00, 'b'})), "a?b");
    EXPECT_EQ(NarrowFromWide(L"a\U0001F600b"), "a?b");
    // Its low 16 bits are those of a letter that has a place.
    EXPECT_EQ(NarrowFromWide(L"\U000120AC"), "?");
}

TEST(CodePage, NarrowTextBecomesUtf8)
{
    EXPECT_EQ(Utf8FromNarrow("aR\xE8gle\x80\x81"), "aR\xC3\xA8gle\xE2\x82\xAC\xC2\x81");
}

struct Utf8Case
{
    const char* name;
    std::string bytes;
    std::wstring expected;
    bool wellFormed;
};

std::ostream& operator<<(std::ostream& stream, const Utf8Case& decoded)
{
    return stream << decoded.name;
}

class Utf8Decoding : public testing::TestWithParam<Utf8Case>
{
};

TEST_P(Utf8Decoding, TellsWellFormedFromMalformed)
{
    std::wstring wide = L"before";
    EXPECT_EQ(TryWideFromUtf8(GetParam().bytes, wide), GetParam().wellFormed);
    if (GetParam().wellFormed)
    {
        EXPECT_EQ(wide, GetParam().expected);
    }
}

TEST_P(Utf8Decoding, NarrowTextIsThatOfTheWideOne)
{
    std::string narrow = "before";
    NarrowFromUtf8(GetParam().bytes, narrow);
    EXPECT_EQ(narrow, NarrowFromWide(GetParam().expected));
}

TEST(CodePage, OneByteThatIsNotAsciiIsFoundWhereverItStands)
{
    for (std::size_t length = 0; length <= 20; ++length)
    {
        std::string text(length, '\x7F');
        EXPECT_TRUE(IsAscii(text)) << length;
        for (char& byte : text)
        {
            byte = '\x80';
            EXPECT_FALSE(IsAscii(text)) << length;
            byte = '\0';
        }
    }
}

TEST_P(Utf8Decoding, ReplacesEachMalformedByte)
{
    EXPECT_EQ(WideFromUtf8(GetParam().bytes), GetParam().expected);
}

const Utf8Case kUtf8Cases[] = {
    {"Empty", "", L"", true},
    {"Ascii", "a~", L"a~", true},
    {"EmbeddedNul", std::string("a\0b", 3), std::wstring(L"a\0b", 3), true},
    {"FirstOfTwoBytes", "\xC2\x80", Wide({0x80}), true},
    {"LastOfTwoBytes", "\xDF\xBF", Wide({0x7FF}), true},
    {"FirstOfThreeBytes", "\xE0\xA0\x80", Wide({0x800}), true},
    {"BeforeTheSurrogates", "\xED\x9F\xBF", Wide({0xD7FF}), true},
    {"BehindTheSurrogates", "\xEE\x80\x80", Wide({0xE000}), true},
    {"LastOfThreeBytes", "\xEF\xBF\xBF", Wide({0xFFFF}), true},
    {"FirstOfFourBytes", "\xF0\x90\x80\x80", L"\U00010000", true},
    {"LastCharacter", "\xF4\x8F\xBF\xBF", L"\U0010FFFF", true},
    {"BeyondTheLastCharacter", "\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD", false},
    {"OverlongTwoBytes", "\xC0\x80", L"\uFFFD\uFFFD", false},
    {"OverlongTwoBytesLast", "\xC1\xBF", L"\uFFFD\uFFFD", false},
    {"OverlongThreeBytes", "\xE0\x9F\xBF", L"\uFFFD\uFFFD\uFFFD", false},
    {"OverlongFourBytes", "\xF0\x8F\xBF\xBF", L"\uFFFD\uFFFD\uFFFD\uFFFD", false},
    {"FirstSurrogate", "\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD", false},
    {"LastSurrogate", "\xED\xBF\xBF", L"\uFFFD\uFFFD\uFFFD", false},
    {"TailWithoutLead", "a\x80z", L"a\uFFFDz", false},
    {"LeadAtTheEnd", "a\xE2\x82", L"a\uFFFD\uFFFD", false},
    {"LeadWithoutTail", "\xE2\x82z", L"\uFFFD\uFFFDz", false},
    {"LeadBeforeALead", "\xC3\xC3\xA9", L"\uFFFD\u00E9", false},
    {"NeverALead", "\xFE\xFF\xF8", L"\uFFFD\uFFFD\uFFFD", false},
    {"Windows1252", "R\xE8gle", L"R\uFFFDgle", false},
};

INSTANTIATE_TEST_SUITE_P(Table, Utf8Decoding, testing::ValuesIn(kUtf8Cases),
                         [](const auto& tested) { return tested.param.name; });

TEST(CodePage, SurrogatePairsBecomeOneUtf8Character)
{
    EXPECT_EQ(Utf8FromWide(Wide({0xD83D, 0xDE00})), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Utf8FromWide(L"\U0001F600"), "\xF0\x9F\x98\x80");
}

TEST(CodePage, LoneSurrogatesBecomeTheReplacementCharacter)
{
    EXPECT_EQ(Utf8FromWide(Wide({'a', 0xD800, 'b'})), "a\xEF\xBF\xBD"
                                                      "b");
    EXPECT_EQ(Utf8FromWide(Wide({0xDC00, 0xD800})), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(CodePage, ValuesBeyondUnicodeBecomeTheReplacementCharacter)
{
    if (sizeof(wchar_t) == 2)
    {
        GTEST_SKIP() << "a 16-bit unit holds no such value";
    }
    EXPECT_EQ(Utf8FromWide(Wide({0x110000})), "\xEF\xBF\xBD");
    EXPECT_EQ(Utf8FromWide(Wide({0xFFFFFFFF})), "\xEF\xBF\xBD");
    EXPECT_EQ(Utf16FromWide(Wide({0x110000})), u"\uFFFD");
}

TEST(CodePage, Utf16HasPairsWhateverTheWidthOfWideCharacters)
{
    EXPECT_EQ(Utf16FromWide(L"a\u20AC\U0001F600"), u"a\u20AC\U0001F600");
    EXPECT_EQ(WideFromUtf16(u"a\u20AC\U0001F600"), L"a\u20AC\U0001F600");
    EXPECT_EQ(Utf16FromWide(Wide({0xD83D, 0xDE00})), u"\U0001F600");
}

TEST(CodePage, LoneSurrogatesOfUtf16ComeInAsTheyAreAndDoNotGoOut)
{
    const std::u16string lone = {u'a', char16_t(0xD800), u'b', char16_t(0xDC00)};
    EXPECT_EQ(WideFromUtf16(lone), Wide({'a', 0xD800, 'b', 0xDC00}));
    EXPECT_EQ(Utf16FromWide(WideFromUtf16(lone)), u"a\uFFFDb\uFFFD");
    EXPECT_EQ(Utf16FromWide(Wide({0xD800})), u"\uFFFD");
    EXPECT_EQ(Utf16FromWide(Wide({0xD800, 0xD83D, 0xDE00})), u"\uFFFD\U0001F600");
}

TEST(CodePage, CutsCountCharactersAndSpareThePairs)
{
    const std::wstring text = Wide({'a', 0xD83D, 0xDE00, 'b'});
    EXPECT_EQ(CutWide(text, 0), L"");
    EXPECT_EQ(CutWide(text, 1), L"a");
    EXPECT_EQ(CutWide(text, 2), L"a");
    EXPECT_EQ(CutWide(text, 3), text.substr(0, 3));
    EXPECT_EQ(CutWide(text, 4), text);
    EXPECT_EQ(CutWide(text, 100), text);
    EXPECT_EQ(CutWide(L"", 5), L"");
    EXPECT_EQ(CutWide(text.substr(1), 1), L"");
}

TEST(CodePage, EmptyTextsStayEmpty)
{
    EXPECT_EQ(WideFromNarrow(""), L"");
    EXPECT_EQ(NarrowFromWide(L""), "");
    EXPECT_EQ(Utf8FromWide(L""), "");
    EXPECT_EQ(Utf8FromNarrow(""), "");
    EXPECT_EQ(Utf16FromWide(L""), u"");
    EXPECT_EQ(WideFromUtf16(u""), L"");
}

TEST(CodePage, FirstCharacterWithoutAPlaceIsFoundByItsPositionInCharacters)
{
    EXPECT_FALSE(FindWithoutNarrowPlace(L""));
    EXPECT_FALSE(FindWithoutNarrowPlace(Wide({'a', 0xE9, 0x20AC, 0x81})));
    const auto found = FindWithoutNarrowPlace(Wide({'a', 0x20AC, 0x141, 0x142}));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->index, 2U);
    EXPECT_EQ(found->character, 0x141U);
}

TEST(CodePage, CharacterBeyondTheBasicPlaneIsFoundAsOne)
{
    const auto found = FindWithoutNarrowPlace(WideFromUtf8("x\U0001F600\u0141"));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->index, 1U);
    EXPECT_EQ(found->character, 0x1F600U);
}

TEST(CodePage, FirstMalformedByteIsFoundByItsPositionInBytes)
{
    EXPECT_FALSE(FindMalformedUtf8(""));
    EXPECT_FALSE(FindMalformedUtf8("a\u20AC\U0001F600"));
    EXPECT_EQ(FindMalformedUtf8("\xE9"), 0U);
    EXPECT_EQ(FindMalformedUtf8("\u20AC\x80"), 3U);
    EXPECT_EQ(FindMalformedUtf8("ab\xE2\x82"), 2U);        // cut short
    EXPECT_EQ(FindMalformedUtf8("a\xC0\xAF"), 1U);         // overlong
    EXPECT_EQ(FindMalformedUtf8("a\xED\xA0\x80"), 1U);     // half a surrogate pair
    EXPECT_EQ(FindMalformedUtf8("a\xF4\x90\x80\x80"), 1U); // beyond the last character
}

} // namespace
