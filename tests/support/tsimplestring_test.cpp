#include "support/tsimplestring.h"
#include "support/tsimplestringw.h"
#include "tests/testing/failing_allocations.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <type_traits>
#include <utility>

namespace
{

using testing_support::FailNextAllocation;

/// What both text classes do alike, written once for both kinds of characters.
template <typename Text>
class TextClass : public testing::Test
{
public:
    using Character = std::remove_const_t<
        std::remove_pointer_t<decltype(std::declval<const Text&>().SafeGetString())>>;
    using String = std::basic_string<Character>;

    static String Of(const char* ascii)
    {
        const std::string text = ascii;
        return String(text.begin(), text.end());
    }

    static Text Make(const char* ascii) { return Text(Of(ascii).c_str()); }

    static String Content(const Text& text)
    {
        EXPECT_EQ(text.SafeGetString()[text.GetLength()], Character());
        return String(text.SafeGetString(), text.GetLength());
    }
};

using TextClasses = testing::Types<TSimpleString, TSimpleStringW>;

class TextClassNames
{
public:
    template <typename Text>
    static std::string GetName(int)
    {
        return std::is_same_v<Text, TSimpleString> ? "Narrow" : "Wide";
    }
};

TYPED_TEST_SUITE(TextClass, TextClasses, TextClassNames);

TYPED_TEST(TextClass, StartsEmptyWithAStringThatIsNotNull)
{
    const TypeParam text;
    ASSERT_NE(text.SafeGetString(), nullptr);
    EXPECT_EQ(this->Content(text), this->Of(""));
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.GetLength(), 0U);
}

TYPED_TEST(TextClass, NullTextsCountAsEmpty)
{
    const typename TestFixture::Character* const null = nullptr;
    TypeParam text(null);
    EXPECT_EQ(this->Content(text), this->Of(""));
    EXPECT_TRUE(TypeParam(null, 5).IsEmpty());
    text = this->Make("before");
    text.Append(null);
    text.Append(null, 3);
    text.ReplaceAll(null, this->Of("x").c_str());
    EXPECT_EQ(this->Content(text), this->Of("before"));
    EXPECT_FALSE(text == null);
    text = null;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_TRUE(text == null);
}

TYPED_TEST(TextClass, TakesAPartOfATextByLength)
{
    EXPECT_EQ(this->Content(TypeParam(this->Of("abcdef").c_str(), 3)), this->Of("abc"));
}

TYPED_TEST(TextClass, CopiesAreIndependent)
{
    TypeParam first = this->Make("first");
    TypeParam second(first);
    second.Append(this->Of("!").c_str());
    EXPECT_EQ(this->Content(first), this->Of("first"));
    EXPECT_EQ(this->Content(second), this->Of("first!"));
    first = second;
    second.Empty();
    EXPECT_EQ(this->Content(first), this->Of("first!"));
}

TYPED_TEST(TextClass, MovedFromTextsAreEmptyAndUsable)
{
    TypeParam first = this->Make("first");
    TypeParam second(std::move(first));
    EXPECT_TRUE(first.IsEmpty()); // NOLINT(bugprone-use-after-move): that is what is tested
    EXPECT_EQ(this->Content(second), this->Of("first"));
    TypeParam third = this->Make("third");
    third = std::move(second);
    EXPECT_TRUE(second.IsEmpty()); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(this->Content(third), this->Of("first"));
    second.Append(this->Of("again").c_str());
    EXPECT_EQ(this->Content(second), this->Of("again"));
}

TYPED_TEST(TextClass, AssigningToItselfChangesNothing)
{
    TypeParam text = this->Make("itself");
    TypeParam& same = text;
    text = same;
    EXPECT_EQ(this->Content(text), this->Of("itself"));
    text = std::move(same);
    EXPECT_EQ(this->Content(text), this->Of("itself"));
    text = text.SafeGetString();
    EXPECT_EQ(this->Content(text), this->Of("itself"));
}

TYPED_TEST(TextClass, AssigningItsOwnEndKeepsThatEnd)
{
    TypeParam text = this->Make("0123456789");
    text = text.SafeGetString() + 4;
    EXPECT_EQ(this->Content(text), this->Of("456789"));
}

TYPED_TEST(TextClass, AppendingItselfDoublesTheText)
{
    TypeParam text = this->Make("ab");
    text += text;
    EXPECT_EQ(this->Content(text), this->Of("abab"));
    text += text.SafeGetString();
    EXPECT_EQ(this->Content(text), this->Of("abababab"));
    text.Append(text.SafeGetString() + 1, 2);
    EXPECT_EQ(this->Content(text), this->Of("ababababba"));
}

TYPED_TEST(TextClass, AppendingItselfWithRoomToSpareDoublesTheText)
{
    TypeParam text(this->Of(std::string(200, 'x').c_str()).c_str());
    text = this->Of("abc").c_str();
    text += text;
    EXPECT_EQ(this->Content(text), this->Of("abcabc"));
}

TYPED_TEST(TextClass, GrowsByManySmallAppends)
{
    TypeParam text;
    typename TestFixture::String expected;
    for (int i = 0; i < 5000; ++i)
    {
        const auto part = this->Of(std::to_string(i).c_str());
        text += part.c_str();
        expected += part;
    }
    EXPECT_EQ(this->Content(text), expected);
}

TYPED_TEST(TextClass, EmptiedTextsCanBeFilledAgain)
{
    TypeParam text = this->Make("something long enough to need memory of its own");
    text.Empty();
    EXPECT_EQ(this->Content(text), this->Of(""));
    text.Append(this->Of("new").c_str());
    EXPECT_EQ(this->Content(text), this->Of("new"));
}

TYPED_TEST(TextClass, LengthsThatNoMemoryHoldsAreRefusedAndChangeNothing)
{
    TypeParam text = this->Make("kept");
    const auto tail = this->Of("tail");
    EXPECT_THROW(text.Append(tail.c_str(), static_cast<std::size_t>(-1)), std::bad_alloc);
    EXPECT_THROW(text.Append(tail.c_str(), static_cast<std::size_t>(-1) / 2), std::bad_alloc);
    EXPECT_EQ(this->Content(text), this->Of("kept"));
}

TYPED_TEST(TextClass, AFailedAllocationLeavesTheTextAsItWas)
{
    TypeParam text = this->Make("kept");
    const typename TestFixture::String large(5000, typename TestFixture::Character('x'));
    const TypeParam other(large.c_str());
    const auto from = this->Of("e");
    const auto fails = [&text, this](const auto& change)
    {
        {
            const FailNextAllocation failing;
            EXPECT_THROW(change(), std::bad_alloc);
        }
        EXPECT_EQ(this->Content(text), this->Of("kept"));
    };
    fails([&] { text = large.c_str(); });
    fails([&] { text = other; });
    fails([&] { text.Append(large.c_str()); });
    fails([&] { text += other; });
    fails([&] { text.ReplaceAll(from.c_str(), large.c_str()); });
}

TYPED_TEST(TextClass, TrimTakesTheEndsThatTheModeNames)
{
    struct Case
    {
        int mode;
        const char* expected;
    };
    const Case kCases[] = {
        {0, " \t\r\na b\r\n\t "}, {1, "a b\r\n\t "}, {2, " \t\r\na b"}, {3, "a b"}};
    for (const Case& trim : kCases)
    {
        TypeParam text = this->Make(" \t\r\na b\r\n\t ");
        text.Trim(trim.mode);
        EXPECT_EQ(this->Content(text), this->Of(trim.expected)) << "mode " << trim.mode;
    }
}

TYPED_TEST(TextClass, TrimLeavesOtherBlanksAndEmptiesATextOfBlanks)
{
    TypeParam text = this->Make("\v\f.\v\f");
    text.Trim(3);
    EXPECT_EQ(this->Content(text), this->Of("\v\f.\v\f"));
    text = this->Of(" \t\r\n ").c_str();
    text.Trim(3);
    EXPECT_TRUE(text.IsEmpty());
    TypeParam empty;
    empty.Trim(3);
    EXPECT_TRUE(empty.IsEmpty());
}

TYPED_TEST(TextClass, ReplaceAllReplacesEveryOccurrenceOnce)
{
    struct Case
    {
        const char* text;
        const char* from;
        const char* to;
        const char* expected;
    };
    const Case kCases[] = {
        {"O'Brien's", "'", "''", "O''Brien''s"},
        {"'''", "'", "''", "''''''"},
        {"aaaa", "aa", "a", "aa"},
        {"abc", "b", "", "ac"},
        {"abc", "", "x", "abc"},
        {"abc", "d", "x", "abc"},
        {"", "a", "b", ""},
        {"abab", "ab", "ab", "abab"},
    };
    for (const Case& replace : kCases)
    {
        TypeParam text = this->Make(replace.text);
        text.ReplaceAll(this->Of(replace.from).c_str(), this->Of(replace.to).c_str());
        EXPECT_EQ(this->Content(text), this->Of(replace.expected)) << replace.text;
    }
}

TYPED_TEST(TextClass, ReplaceAllTakesTheTextItselfAsReplacement)
{
    TypeParam text = this->Make("a-b");
    text.ReplaceAll(this->Of("-").c_str(), text.SafeGetString());
    EXPECT_EQ(this->Content(text), this->Of("aa-bb"));
}

TYPED_TEST(TextClass, EqualityRespectsCaseAndLength)
{
    const TypeParam text = this->Make("Text");
    EXPECT_TRUE(text == this->Make("Text"));
    EXPECT_TRUE(text == this->Of("Text").c_str());
    EXPECT_FALSE(text == this->Make("text"));
    EXPECT_FALSE(text == this->Of("Tex").c_str());
    EXPECT_FALSE(text == this->Make("Text "));
    EXPECT_TRUE(TypeParam() == TypeParam());
}

TYPED_TEST(TextClass, ATextMayBeAnArgumentOfItsOwnGeneration)
{
    TypeParam text = this->Make("file");
    text.GenerateString(this->Of("%s.veu%d").c_str(), text, 7);
    EXPECT_EQ(this->Content(text), this->Of("file.veu7"));
}

TEST(TSimpleString, TemplatesTakeNarrowTextWithSAndWideTextWithCapitalS)
{
    TSimpleString text;
    text.GenerateString("%s|%S", TSimpleString("n\xE9"), TSimpleStringW(L"w\u20AC"));
    EXPECT_STREQ(text.SafeGetString(), "n\xE9|w\x80");
}

TEST(TSimpleStringW, TemplatesTakeWideTextWithSAndNarrowTextWithCapitalS)
{
    TSimpleStringW text;
    text.GenerateString(L"%s|%S", TSimpleStringW(L"w\u20AC"), TSimpleString("n\x80"));
    EXPECT_STREQ(text.SafeGetString(), L"w\u20AC|n\u20AC");
}

TEST(TSimpleString, FromWideKeepsWhatWindows1252Has)
{
    TSimpleString text("before");
    text.FromWide(L"\u00C9t\u00E9 \u20AC \u0416");
    EXPECT_STREQ(text.SafeGetString(), "\xC9t\xE9 \x80 ?");
    text.FromWide(nullptr);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(TSimpleStringW, FromNarrowReadsWindows1252)
{
    TSimpleStringW text(L"before");
    text.FromNarrow("\xC9t\xE9 \x80");
    EXPECT_STREQ(text.SafeGetString(), L"\u00C9t\u00E9 \u20AC");
    text.FromNarrow(nullptr);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(TSimpleString, EncodeUtf8WorksInPlace)
{
    TSimpleString text("R\xE8gle \x80");
    text.EncodeUtf8();
    EXPECT_STREQ(text.SafeGetString(), "R\xC3\xA8gle \xE2\x82\xAC");
    TSimpleString empty;
    empty.EncodeUtf8();
    EXPECT_TRUE(empty.IsEmpty());
}

TEST(TSimpleString, LoadStringAReplacesTheTextByTheMessage)
{
    const testing_support::ScopedEnvironment french("SIGNUTILS_LANG", "fr");
    TSimpleString text("before");
    text.LoadStringA(10735);
    EXPECT_STREQ(text.SafeGetString(), "Le compte rendu de paiement n'a pu \xEAtre \xE9"
                                       "crit ou remis");
}

TEST(TSimpleStringW, LoadStringAReplacesTheTextByTheMessage)
{
    const testing_support::ScopedEnvironment english("SIGNUTILS_LANG", nullptr);
    TSimpleStringW text(L"before");
    text.LoadStringA(1819);
    EXPECT_STREQ(text.SafeGetString(), L"The contract is not active");
}

TEST(TSimpleStringW, MessagesTakeTextsOfBothKindsAndAmounts)
{
    const testing_support::ScopedEnvironment english("SIGNUTILS_LANG", "en");
    TSimpleStringW text;
    text.GenerateString(1800U, TSimpleStringW(L"Ruiz"), "Ana", TSimpleString("ANA RUIZ"), 12.5, "");
    EXPECT_STREQ(text.SafeGetString(), L"Holder in opposition: Ruiz Ana/ANA RUIZ, total 12.50");
}

} // namespace
