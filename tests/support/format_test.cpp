#include "support/format.h"

#include "support/tsimplestring.h"
#include "support/tsimplestringw.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <limits>
#include <string>

namespace
{

using support::FormatA;
using support::FormatW;

struct FormatCase
{
    const char* name;
    const char* format;
    FormatArgument argument;
    const char* expected;
};

std::ostream& operator<<(std::ostream& stream, const FormatCase& formatted)
{
    return stream << formatted.format;
}

class FormatNumbers : public testing::TestWithParam<FormatCase>
{
};

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

const FormatCase kFormatCases[] = {
    {"Decimal", "%d", 42, "42"},
    {"DecimalByI", "%i", -42, "-42"},
    {"SmallestInt", "%d", INT_MIN, "-2147483648"},
    {"AllOnesIsMinusOneAsDecimal", "%d", 0xFFFFFFFFU, "-1"},
    {"MinusOneIsAllOnesAsUnsigned", "%u", -1, "4294967295"},
    {"LongHas32Bits", "%ld", -7L, "-7"},
    {"UnsignedLongHas32Bits", "%lu", 4294967295UL, "4294967295"},
    {"WideDecimal", "%I64d", LLONG_MIN, "-9223372036854775808"},
    {"WideUnsigned", "%I64u", ULLONG_MAX, "18446744073709551615"},
    {"DoubleLIsWide", "%lld", LLONG_MAX, "9223372036854775807"},
    {"WideTakesASmallNumber", "%I64d", -5, "-5"},
    {"PlainCutsAWideNumberTo32Bits", "%d", 0x100000001LL, "1"},
    {"ShortHas16Bits", "%hd", 65537, "1"},
    {"ShortUnsigned", "%hu", -1, "65535"},
    {"Hexadecimal", "%x", 255, "ff"},
    {"HexadecimalCapitals", "%X", 255, "FF"},
    {"HexadecimalEightDigits", "%08X", 170393626, "0A28001A"},
    {"HexadecimalOfANegativeNumber", "%x", -1, "ffffffff"},
    {"HexadecimalWithPrefix", "%#x", 255, "0xff"},
    {"HexadecimalZeroHasNoPrefix", "%#x", 0, "0"},
    {"HexadecimalPrefixBeforeZeros", "%#08X", 255, "0X0000FF"},
    {"Width", "%5d", 42, "   42"},
    {"WidthToTheLeft", "%-5d", 42, "42   "},
    {"WidthWithZeros", "%05d", -42, "-0042"},
    {"LeftBeatsZero", "%-05d", 42, "42   "},
    {"Plus", "%+d", 42, "+42"},
    {"Blank", "% d", 42, " 42"},
    {"PlusBeatsBlank", "%+ d", 42, "+42"},
    {"UnsignedHasNoPlus", "%+u", 42, "42"},
    {"PrecisionIsDigits", "%.02d", 7, "07"},
    {"PrecisionLeavesLongerNumbers", "%.02d", 123, "123"},
    {"PrecisionSwitchesZerosOff", "%05.2d", 7, "   07"},
    {"NoDigitForZeroWithPrecisionNull", "%.0d", 0, ""},
    {"Fixed", "%f", 1.5, "1.500000"},
    {"FixedTwo", "%.2f", 1234.5, "1234.50"},
    {"FixedWithoutPlaces", "%20.0f", 12345.0, "               12345"},
    {"FixedPointByFlag", "%#.0f", 3.0, "3."},
    {"PrecisionWithoutNumberIsNull", "%.f", 2.4, "2"},
    {"HalfToEvenDown", "%.0f", 0.5, "0"},
    {"HalfToEvenUp", "%.0f", 1.5, "2"},
    {"HalfToEvenDownAgain", "%.0f", 2.5, "2"},
    {"EighthToEven", "%.2f", 0.125, "0.12"},
    {"ThreeEighthsToEven", "%.2f", 0.375, "0.38"},
    {"NoExactHalfInBinaryDown", "%.2f", 2.675, "2.67"},
    {"NoExactHalfInBinaryUp", "%.2f", 0.135, "0.14"},
    {"LargeValuesPrintAllDigits", "%.6f", 1e22, "10000000000000000000000.000000"},
    {"SmallValuesRoundToNull", "%f", 1e-9, "0.000000"},
    {"NegativeNull", "%.1f", -0.0, "-0.0"},
    {"ZeroPaddedReal", "%08.2f", -3.14159, "-0003.14"},
    {"Infinity", "%f", kInfinity, "inf"},
    {"NegativeInfinity", "%.2f", -kInfinity, "-inf"},
    {"InfinityIsNotPaddedWithZeros", "%06f", kInfinity, "   inf"},
    {"NotANumber", "%f", kNan, "nan"},
    {"NotANumberHasNoSign", "%.2f", -kNan, "nan"},
    {"Scientific", "%e", 12345.678, "1.234568e+04"},
    {"ScientificLargeExponent", "%.1e", 1e300, "1.0e+300"},
    {"ScientificPointByFlag", "%#.0e", 5.0, "5.e+00"},
    {"GeneralFixed", "%g", 100000.0, "100000"},
    {"GeneralScientific", "%g", 1000000.0, "1e+06"},
    {"GeneralSmall", "%g", 0.0001, "0.0001"},
    {"GeneralSmaller", "%g", 0.00001, "1e-05"},
    {"GeneralKeepsZerosByFlag", "%#g", 1.5, "1.50000"},
    {"GeneralKeepsZerosOfScientific", "%#.3g", 1e10, "1.00e+10"},
    {"GeneralKeepsZerosOfSmallNumbers", "%#.3g", 0.00015, "0.000150"},
    {"GeneralRoundsUpToTheNextExponent", "%#.3g", 999.9, "1.00e+03"},
    {"GeneralPrecisionNullIsOne", "%.0g", 12.0, "1e+01"},
    {"Percent", "%%", 0, "%"},
    {"Character", "%c", 'x', "x"},
    {"CharacterWithWidth", "%-3c|", 'x', "x  |"},
};

TEST_P(FormatNumbers, NarrowTemplate)
{
    const FormatCase& formatted = GetParam();
    EXPECT_EQ(support::FormatNarrow(formatted.format, &formatted.argument, 1), formatted.expected);
}

TEST_P(FormatNumbers, WideTemplate)
{
    const FormatCase& formatted = GetParam();
    const std::string format = formatted.format;
    const std::string expected = formatted.expected;
    EXPECT_EQ(support::FormatWide(std::wstring(format.begin(), format.end()).c_str(),
                                  &formatted.argument, 1),
              std::wstring(expected.begin(), expected.end()));
}

INSTANTIATE_TEST_SUITE_P(Table, FormatNumbers, testing::ValuesIn(kFormatCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(Format, WideTemplatesTakeWideTextWithSAndNarrowTextWithCapitalS)
{
    EXPECT_EQ(FormatW(L"%s|%S|%ls|%hs", L"w\u0416", "n\xE9", L"l", "h"), L"w\u0416|n\u00E9|l|h");
}

TEST(Format, NarrowTemplatesTakeNarrowTextWithSAndWideTextWithCapitalS)
{
    EXPECT_EQ(FormatA("%s|%S|%ls|%hs", "n\xE9", L"w\u20AC\u0416", L"l", "h"), "n\xE9|w\x80?|l|h");
}

TEST(Format, TextClassesAreTexts)
{
    const TSimpleString narrow("narrow");
    const TSimpleStringW wide(L"wide");
    EXPECT_EQ(FormatW(L"%S %s", narrow, wide), L"narrow wide");
}

TEST(Format, NullTextsPrintNull)
{
    const char* const narrow = nullptr;
    const wchar_t* const wide = nullptr;
    EXPECT_EQ(FormatW(L"%S %s", narrow, wide), L"(null) (null)");
    EXPECT_EQ(FormatA("%s %S", narrow, wide), "(null) (null)");
}

TEST(Format, WidthAndPrecisionCountCharactersOfTheResult)
{
    EXPECT_EQ(FormatW(L"%-8.8S|", "\xC9\x80"), L"\u00C9\u20AC      |");
    EXPECT_EQ(FormatW(L"%.8S|", "PARTNER12"), L"PARTNER1|");
    EXPECT_EQ(FormatW(L"%8.2s|", L"\u0416\u0416\u0416"), L"      \u0416\u0416|");
    EXPECT_EQ(FormatA("%-4.3S|", L"\u00E9\u0416xy"), "\xE9?x |");
    EXPECT_EQ(FormatA("%.0s|", "abc"), "|");
    EXPECT_EQ(FormatA("%.s|", "abc"), "|");
}

TEST(Format, PaddedAuditFieldsHaveExactWidths)
{
    EXPECT_EQ(FormatW(L"Entit\u00E9:%-8.8S\r\n", "AB"), L"Entit\u00E9:AB      \r\n");
    EXPECT_EQ(FormatW(L"OrderId=%-10.10S\r\n", "ABCDEFGHIJKL"), L"OrderId=ABCDEFGHIJ\r\n");
}

TEST(Format, ACutLeavesNoHalfOfASurrogatePair)
{
    const wchar_t pair[] = {L'a', static_cast<wchar_t>(0xD801), static_cast<wchar_t>(0xDC00), L'b',
                            L'\0'};
    EXPECT_EQ(FormatW(L"%.2s|", pair), L"a|");
    EXPECT_EQ(FormatW(L"%.3s|", pair), std::wstring(pair, 3) + L"|");
    EXPECT_EQ(FormatW(L"%4.2s|", pair), L"   a|");
}

TEST(Format, ASurrogatePairIsOneCharacterOfANarrowResult)
{
    const wchar_t pairs[] = {static_cast<wchar_t>(0xD801),
                             static_cast<wchar_t>(0xDC00),
                             static_cast<wchar_t>(0xD801),
                             static_cast<wchar_t>(0xDC01),
                             L'x',
                             L'y',
                             L'\0'};
    EXPECT_EQ(FormatA("%.3S|", pairs), "??x|");
}

TEST(Format, TextsCutByPrecisionNeedNoEnd)
{
    const char field[4] = {'A', 'B', 'C', 'D'};
    const wchar_t wideField[2] = {L'A', L'B'};
    EXPECT_EQ(FormatA("%.4s", static_cast<const char*>(field)), "ABCD");
    EXPECT_EQ(FormatW(L"%.2s", static_cast<const wchar_t*>(wideField)), L"AB");
}

TEST(Format, WideCharactersPassThroughTemplatesAndConversions)
{
    EXPECT_EQ(FormatW(L"n\u00B0%d \u0416%c", 7, 0x20AC), L"n\u00B07 \u0416\u20AC");
}

TEST(Format, ArgumentsAreTakenInOrder)
{
    EXPECT_EQ(FormatA("%d-%s-%.1f-%%-%u", 1, "two", 3.0, 4U), "1-two-3.0-%-4");
}

TEST(Format, NullAndEmptyTemplatesGiveEmptyTexts)
{
    EXPECT_EQ(support::FormatNarrow(nullptr, nullptr, 0), "");
    EXPECT_EQ(support::FormatWide(nullptr, nullptr, 0), L"");
    EXPECT_EQ(FormatA(""), "");
}

TEST(Format, AppendsToTheCallersBuffer)
{
    std::wstring buffer = L"kept ";
    const FormatArgument argument(7);
    support::AppendWide(buffer, L"%d", &argument, 1);
    EXPECT_EQ(buffer, L"kept 7");
}

TEST(Format, ThePointStaysAPointInEveryLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* const locale : {"fr_FR.UTF-8", "fr_FR", "de_DE.UTF-8", "French_France.1252"})
    {
        if (std::setlocale(LC_ALL, locale) != nullptr)
        {
            EXPECT_EQ(FormatA("%.2f %g", 1234.5, 0.5), "1234.50 0.5") << locale;
        }
    }
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(FormatA("%.2f %g", 1234.5, 0.5), "1234.50 0.5");
}

struct Mistake
{
    const char* name;
    const char* format;
    FormatArgument argument;
};

class FormatMistakes : public testing::TestWithParam<Mistake>
{
};

const Mistake kMistakes[] = {
    {"UnknownConversion", "%p", 1},   {"WriteBack", "%n", 1},
    {"CapitalF", "%F", 1.0},          {"WidthByArgument", "%*d", 1},
    {"TextForANumber", "%d", "text"}, {"NumberForAText", "%s", 1},
    {"WideForNarrow", "%s", L"wide"}, {"IntegerForAReal", "%f", 1},
    {"RealForAnInteger", "%d", 1.0},  {"TextForACharacter", "%c", "x"},
    {"NoConversionAtTheEnd", "%", 1}, {"FlagsOnly", "%-08", 1},
    {"MissingArgument", "%d%d", 1},
};

TEST_P(FormatMistakes, StopDebugBuildsAndPrintNothingOtherwise)
{
    const Mistake& mistake = GetParam();
#if defined(NDEBUG)
    const std::string text =
        support::FormatNarrow((std::string("[") + mistake.format).c_str(), &mistake.argument, 1);
    EXPECT_EQ(text.substr(0, 1), "[");
    EXPECT_EQ(text.find('%'), std::string::npos);
#else
    EXPECT_DEATH(static_cast<void>(support::FormatNarrow(mistake.format, &mistake.argument, 1)),
                 "format template");
#endif
}

INSTANTIATE_TEST_SUITE_P(Table, FormatMistakes, testing::ValuesIn(kMistakes),
                         [](const auto& tested) { return tested.param.name; });

#if defined(NDEBUG)
TEST(Format, AnUnknownConversionLeavesTheOthersInStep)
{
    EXPECT_EQ(FormatA("%d %p %d", 1, 2, 3), "1  3");
}
#endif

} // namespace
