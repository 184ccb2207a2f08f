#include "support/append_text.h"
#include "support/casefold.h"
#include "support/code_points.h"
#include "support/codepage.h"
#include "support/format.h"
#include "support/numbers.h"
#include "support/six_places.h"
#include "support/tsimplestring.h"
#include "support/utf16.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace
{

using namespace support;

/// Doubles of every magnitude, not only those near null.
rc::Gen<double> AnyFiniteDouble()
{
    return rc::gen::suchThat(rc::gen::map(rc::gen::arbitrary<std::uint64_t>(),
                                          [](std::uint64_t bits)
                                          {
                                              double value = 0;
                                              std::memcpy(&value, &bits, sizeof value);
                                              return value;
                                          }),
                             [](double value) { return std::isfinite(value); });
}

/// Amounts as files have them, where rounding shows.
rc::Gen<double> AnyAmount()
{
    return rc::gen::map(rc::gen::inRange<std::int64_t>(-1'000'000'000'000, 1'000'000'000'000),
                        [](std::int64_t thousandths)
                        { return static_cast<double>(thousandths) / 1000.0; });
}

rc::Gen<std::wstring> AnyUnicodeText()
{
    return rc::gen::map(
        rc::gen::container<std::vector<std::uint32_t>>(
            rc::gen::inRange<std::uint32_t>(1, 0x110000)),
        [](const std::vector<std::uint32_t>& characters)
        {
            std::u16string units;
            for (const std::uint32_t character : characters)
            {
                if (character >= 0x10000)
                {
                    units.push_back(static_cast<char16_t>(0xD7C0 + (character >> 10)));
                    units.push_back(static_cast<char16_t>(0xDC00 + (character & 0x3FF)));
                }
                else if (character < 0xD800 || character > 0xDFFF)
                {
                    units.push_back(static_cast<char16_t>(character));
                }
            }
            return WideFromUtf16(units);
        });
}

/// Short texts of few letters, pairs and halves of pairs among them, so that equal beginnings and
/// cuts inside of pairs come up.
rc::Gen<std::u16string> AnyUnits()
{
    return rc::gen::map(
        rc::gen::container<std::vector<std::uint16_t>>(rc::gen::element<std::uint16_t>(
            u'a', u'A', u'b', 0xE9, 0xC9, 0x20AC, 0xD801, 0xD801, 0xDC00, 0xDC28, 0xFF21)),
        [](const std::vector<std::uint16_t>& units)
        { return std::u16string(units.begin(), units.end()); });
}

std::u16string UnitsOneByOne(std::wstring_view text)
{
    std::u16string units;
    const wchar_t* const end = text.data() + text.size();
    for (const wchar_t* position = text.data(); position != end;)
    {
        AppendCodePoint(units, ValidOrReplacement(NextCodePoint(position, end)));
    }
    return units;
}

std::u32string Lowered(std::wstring_view text, std::size_t count)
{
    std::u32string lowered;
    const wchar_t* const end = text.data() + std::min(count, text.size());
    for (const wchar_t* position = text.data(); position != end;)
    {
        lowered += LowerCase(NextCodePoint(position, end));
    }
    return lowered;
}

std::string Printed(const char* format, double value)
{
    char buffer[2000];
    const int length = std::snprintf(buffer, sizeof buffer, format, value);
    RC_ASSERT(length >= 0 && length < static_cast<int>(sizeof buffer));
    return buffer;
}

const char* const kRealFormats[] = {"%f",      "%.2f", "%.0f",  "%20.0f", "%+.3f", "%-12.1f|",
                                    "%012.4f", "% f",  "%#.0f", "%e",     "%.3e",  "%g",
                                    "%.10g",   "%#g",  "%#.3g", "%.17g",  "%015g", "%#.0e"};

RC_GTEST_PROP(FormatProperties, RealsAreAsTheRuntimePrintsThem, ())
{
    const double value = *rc::gen::oneOf(AnyFiniteDouble(), AnyAmount());
    for (const char* const format : kRealFormats)
    {
        RC_ASSERT(FormatA(format, value) == Printed(format, value));
    }
}

RC_GTEST_PROP(SixPlacesProperties, AreAsTheGeneralConversionPrintsThem, ())
{
    const double value = *rc::gen::oneOf(AnyFiniteDouble(), AnyAmount());
    std::wstring text = L"before ";
    AppendSixPlaces(text, value);
    const std::string printed = Printed("%f", value);
    RC_ASSERT(text == L"before " + std::wstring(printed.begin(), printed.end()));
}

RC_GTEST_PROP(SixPlacesProperties, HalvesOfTheLastPlaceGoToTheEvenOne, (std::uint32_t number))
{
    // Odd ones have a five in the seventh place and nothing behind it.
    const double value = number / 128.0;
    char text[kSixPlacesSize];
    const char* const end = WriteSixPlaces(value, text);
    RC_ASSERT(end != nullptr);
    RC_ASSERT(std::string(static_cast<const char*>(text), end) == Printed("%f", value));
}

RC_GTEST_PROP(AppendProperties, PiecesAreWhatTheFormatterMakesOfThem,
              (const std::string& narrow, std::int32_t number, std::uint32_t bits))
{
    const std::wstring wide = WideFromUtf16(*AnyUnits());
    const auto cut = *rc::gen::inRange<std::size_t>(0, 12);
    const std::wstring template_ =
        L"%." + std::to_wstring(cut) + L"s|%." + std::to_wstring(cut) + L"S|%d|%u";
    std::wstring text;
    AppendCut(text, wide.c_str(), cut);
    AppendWords(text, L"|");
    AppendCut(text, narrow.c_str(), cut);
    AppendWords(text, L"|");
    AppendDecimal(text, number);
    AppendWords(text, L"|");
    AppendDecimal(text, bits);
    RC_ASSERT(text == FormatW(template_.c_str(), wide.c_str(), narrow.c_str(), number, bits));
}

RC_GTEST_PROP(CaseProperties, TextsAreEqualWhereTheirCharactersAreOneByOne, ())
{
    const std::wstring left = WideFromUtf16(*AnyUnits());
    std::wstring right = *rc::gen::element(left, WideFromUtf16(*AnyUnits()));
    for (wchar_t& each : right)
    {
        each = each == L'a' && *rc::gen::arbitrary<bool>() ? L'A' : each;
    }
    const auto count = *rc::gen::inRange<std::size_t>(0, 12);
    RC_ASSERT(EqualIgnoringCase(left.c_str(), right.c_str(), count) ==
              (Lowered(left.c_str(), count) == Lowered(right.c_str(), count)));
}

RC_GTEST_PROP(CodePageProperties, UnitsAreThoseOfOneCharacterAfterTheOther, ())
{
    const std::wstring text = WideFromUtf16(*AnyUnits());
    RC_ASSERT(Utf16FromWide(text) == UnitsOneByOne(text));
    std::u16string units(text.size(), u'x');
    const char32_t bits = CopyUnits(text, units.data());
    RC_ASSERT(bits >= kFirstBeyondOneUnit || units == UnitsOneByOne(text));
    RC_ASSERT((bits < 0x80) == std::all_of(text.begin(), text.end(),
                                           [](wchar_t each)
                                           { return static_cast<char32_t>(each) < 0x80; }));
}

RC_GTEST_PROP(FormatProperties, ExactHalvesAreAsTheRuntimePrintsThem, (std::int32_t eighths))
{
    const double value = eighths / 8.0;
    RC_ASSERT(FormatA("%.2f", value) == Printed("%.2f", value));
    RC_ASSERT(FormatA("%.0f", value) == Printed("%.0f", value));
}

RC_GTEST_PROP(FormatProperties, IntegersAreAsTheRuntimePrintsThem,
              (std::int32_t number, std::uint32_t bits))
{
    const auto width = *rc::gen::inRange(0, 15);
    const auto precision = *rc::gen::inRange(-1, 12);
    const std::string flags =
        *rc::gen::container<std::string>(rc::gen::elementOf(std::string("-+ 0")));
    std::string format = "%";
    format.append(flags).append(width == 0 ? "" : std::to_string(width));
    if (precision >= 0)
    {
        format.append(".").append(std::to_string(precision));
    }
    char buffer[200];
    std::snprintf(buffer, sizeof buffer, (format + "d").c_str(), number);
    RC_ASSERT(FormatA((format + "d").c_str(), number) == buffer);
    std::snprintf(buffer, sizeof buffer, (format + "u").c_str(), bits);
    RC_ASSERT(FormatA((format + "u").c_str(), bits) == buffer);
    std::snprintf(buffer, sizeof buffer, (format + "X").c_str(), bits);
    RC_ASSERT(FormatA((format + "X").c_str(), bits) == buffer);
}

RC_GTEST_PROP(FormatProperties, WideAndNarrowTemplatesAgree, (const std::string& text, int number))
{
    const std::string narrow = FormatA("%-8.8s|%d", text.c_str(), number);
    RC_ASSERT(WideFromNarrow(narrow) == FormatW(L"%-8.8S|%d", text.c_str(), number));
}

RC_GTEST_PROP(CodePageProperties, NarrowTextsComeBack, (const std::string& text))
{
    std::string back;
    RC_ASSERT(TryNarrowFromWide(WideFromNarrow(text), back));
    RC_ASSERT(back == text);
    std::wstring wide;
    RC_ASSERT(TryWideFromUtf8(Utf8FromNarrow(text), wide));
    RC_ASSERT(wide == WideFromNarrow(text));
}

RC_GTEST_PROP(CodePageProperties, UnicodeTextsComeBackFromUtf8AndUtf16, ())
{
    const std::wstring text = *AnyUnicodeText();
    std::wstring back;
    RC_ASSERT(TryWideFromUtf8(Utf8FromWide(text), back));
    RC_ASSERT(back == text);
    RC_ASSERT(WideFromUtf16(Utf16FromWide(text)) == text);
}

RC_GTEST_PROP(CodePageProperties, AnyBytesBecomeWellFormedText, (const std::string& bytes))
{
    const std::wstring replaced = WideFromUtf8(bytes);
    std::string narrow;
    NarrowFromUtf8(bytes, narrow);
    RC_ASSERT(narrow == NarrowFromWide(replaced));
    RC_ASSERT(!IsAscii(bytes) || narrow == bytes);
    std::wstring back;
    RC_ASSERT(TryWideFromUtf8(Utf8FromWide(replaced), back));
    RC_ASSERT(back == replaced);
    if (TryWideFromUtf8(bytes, back))
    {
        RC_ASSERT(Utf8FromWide(back) == bytes);
    }
}

RC_GTEST_PROP(CodePageProperties, CutsAreTheLongestWholePrefix, ())
{
    const std::wstring text = *AnyUnicodeText();
    const auto count = *rc::gen::inRange<std::size_t>(0, text.size() + 2);
    const std::wstring_view cut = CutWide(text, count);
    RC_ASSERT(text.substr(0, cut.size()) == cut);
    RC_ASSERT(cut.size() <= count);
    RC_ASSERT(cut.size() + 1 >= std::min(count, text.size()));
    std::wstring back;
    RC_ASSERT(TryWideFromUtf8(Utf8FromWide(cut), back));
    RC_ASSERT(back == cut);
}

RC_GTEST_PROP(NumberProperties, IntegersComeBack, (std::int64_t number))
{
    RC_ASSERT(ToInt64(std::to_string(number).c_str()) == number);
    const auto small = static_cast<std::int32_t>(number);
    RC_ASSERT(ToInt32(std::to_string(small).c_str()) == small);
}

RC_GTEST_PROP(NumberProperties, RealsComeBackWithSeventeenDigits, ())
{
    const double value = *rc::gen::oneOf(AnyFiniteDouble(), AnyAmount());
    RC_ASSERT(ToDouble(FormatA("%.17g", value).c_str()) == value);
}

RC_GTEST_PROP(TextProperties, AppendsAndReplacementsAreThoseOfAPlainString,
              (const std::vector<std::string>& parts))
{
    TSimpleString text;
    std::string expected;
    for (const std::string& part : parts)
    {
        text.Append(part.data(), part.size());
        expected += part;
        RC_ASSERT(std::string(text.SafeGetString(), text.GetLength()) == expected);
    }
    text += text;
    expected += expected;
    RC_ASSERT(std::string(text.SafeGetString(), text.GetLength()) == expected);
}

} // namespace
