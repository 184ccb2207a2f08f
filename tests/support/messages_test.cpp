#include "support/messages.h"

#include "support/codepage.h"
#include "support/tsimplestring.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace
{

using support::AmountText;
using support::Language;
using support::MessageIn;
using testing_support::ScopedEnvironment;

constexpr Language kLanguages[] = {Language::English, Language::French};

constexpr unsigned kNumbers[] = {287,  355,  356,  1800, 1801, 1802, 1803, 1805, 1807, 1808, 1809,
                                 1812, 1815, 1816, 1817, 1818, 1819, 1820, 1821, 1822, 1823, 10735};
constexpr unsigned kReserved[] = {1804, 1806, 1810, 1811, 1813, 1814};

/// The arguments that callers hand over, as they stand in the table of the numbers.
std::vector<FormatArgument> UsualArguments(unsigned number)
{
    constexpr double amount = 1234567.0;
    switch (number)
    {
    case 1800:
        return {L"Lastname", L"Firstnam", L"CERTIFICATE 123", amount, L""};
    case 1801:
    case 1802:
    case 1803:
    case 1823:
        return {L"Lastname", L"Firstnam", L"CERTIFICATE 123", amount, L"", amount, L""};
    case 1805:
    case 1808:
    case 1809:
    case 1815:
        return {L"CERTIFICATE 123;CERTIFICATE 456"};
    case 1818:
        return {L"Firstnam", L"Lastname", L"CERTIFICATE 123", L"Firstna2", L"Lastnam2"};
    case 1820:
    case 1821:
    case 1822:
        return {L"Lastname", L"Firstnam", L"CERTIFICATE 123",
                L"Lastnam2", L"Firstna2", L"CERTIFICATE 456",
                amount,      L"",         amount,
                L""};
    default:
        return {};
    }
}

std::wstring Text(Language language, unsigned number, const std::vector<FormatArgument>& arguments)
{
    return MessageIn(language, number, arguments.data(), arguments.size());
}

std::wstring TextOf(const FormatArgument& argument)
{
    switch (argument.kind)
    {
    case FormatArgument::Kind::Real:
        return AmountText(argument.realValue);
    case FormatArgument::Kind::Narrow:
        return support::WideFromNarrow(argument.narrow);
    default:
        return argument.wide;
    }
}

TEST(Messages, ShowAllArgumentsThatAreNotEmptyInTheirOrder)
{
    for (const Language language : kLanguages)
    {
        for (const unsigned number : kNumbers)
        {
            const auto arguments = UsualArguments(number);
            const std::wstring text = Text(language, number, arguments);
            std::size_t position = 0;
            for (const FormatArgument& argument : arguments)
            {
                const std::wstring part = TextOf(argument);
                position = text.find(part, position);
                ASSERT_NE(position, std::wstring::npos)
                    << number << " lacks " << support::Utf8FromWide(part);
                position += part.size();
            }
        }
    }
}

TEST(Messages, ReasonTextsStayWithin105CharactersWithUsualNames)
{
    for (const Language language : kLanguages)
    {
        for (const unsigned number :
             {1800U, 1801U, 1802U, 1803U, 1816U, 1820U, 1821U, 1822U, 1823U})
        {
            const std::wstring text = Text(language, number, UsualArguments(number));
            EXPECT_LE(text.size(), 105U) << support::Utf8FromWide(text);
        }
    }
}

TEST(Messages, EachHasAWordingOfItsOwn)
{
    for (const Language language : kLanguages)
    {
        std::set<std::wstring> texts;
        for (const unsigned number : kNumbers)
        {
            const std::wstring text = Text(language, number, {});
            EXPECT_FALSE(text.empty()) << number;
            texts.insert(text);
        }
        // 1803 and 1823 differ in the amount that they show.
        EXPECT_EQ(texts.size(), std::size(kNumbers) - 1);
        EXPECT_NE(Text(language, 1803, UsualArguments(1803)),
                  Text(language, 1823, UsualArguments(1823)));
    }
}

TEST(Messages, AreOneLineOfWindows1252)
{
    for (const Language language : kLanguages)
    {
        for (const unsigned number : kNumbers)
        {
            const std::wstring text = Text(language, number, UsualArguments(number));
            EXPECT_EQ(text.find_first_of(L"\r\n\t%[]"), std::wstring::npos);
            std::string narrow;
            EXPECT_TRUE(support::TryNarrowFromWide(text, narrow)) << number;
            EXPECT_NE(text.front(), L' ');
            EXPECT_NE(text.back(), L' ');
        }
    }
}

TEST(Messages, DifferBetweenTheLanguages)
{
    for (const unsigned number : kNumbers)
    {
        EXPECT_NE(Text(Language::English, number, {}), Text(Language::French, number, {}));
    }
}

TEST(Messages, LackingArgumentsLeaveAReadableLine)
{
    for (const Language language : kLanguages)
    {
        for (const unsigned number : kNumbers)
        {
            const auto arguments = UsualArguments(number);
            for (std::size_t count = 0; count < arguments.size(); ++count)
            {
                const std::wstring text = MessageIn(language, number, arguments.data(), count);
                ASSERT_FALSE(text.empty()) << number;
                EXPECT_EQ(text.find_first_of(L"%[]"), std::wstring::npos) << number;
                EXPECT_EQ(std::wstring(L" :,/").find(text.front()), std::wstring::npos) << number;
            }
        }
    }
}

struct MessageCase
{
    const char* name;
    Language language;
    unsigned number;
    std::vector<FormatArgument> arguments;
    const wchar_t* expected;
};

std::ostream& operator<<(std::ostream& stream, const MessageCase& message)
{
    return stream << message.number;
}

class MessageTexts : public testing::TestWithParam<MessageCase>
{
};

const MessageCase kMessageCases[] = {
    {"FormatMissing", Language::English, 287, {}, L"The format or the file name is missing"},
    {"ServerSide", Language::English, 355, {}, L"Server"},
    {"RequesterSide", Language::English, 356, {}, L"Requester"},
    {"ServerSideInFrench", Language::French, 355, {}, L"Serveur"},
    {"RequesterSideInFrench", Language::French, 356, {}, L"Demandeur"},
    {"Opposition",
     Language::English,
     1800,
     {L"Ruiz", L"Ana", L"ANA RUIZ", 1000.0, ""},
     L"Holder in opposition: Ruiz Ana/ANA RUIZ, total 1000.00"},
    {"AmountWithItsCurrency",
     Language::English,
     1800,
     {L"Ruiz", L"Ana", L"ANA RUIZ", 1000.0, "EUR"},
     L"Holder in opposition: Ruiz Ana/ANA RUIZ, total 1000.00 EUR"},
    {"HolderWithoutNames",
     Language::English,
     1800,
     {L"", L"", L"ANA RUIZ", 1000.0, ""},
     L"Holder in opposition: ANA RUIZ, total 1000.00"},
    {"HolderWithoutFirstName",
     Language::English,
     1800,
     {L"Ruiz", L"", L"ANA RUIZ", 1000.0, ""},
     L"Holder in opposition: Ruiz/ANA RUIZ, total 1000.00"},
    {"TotalAboveTheLimit",
     Language::French,
     1801,
     {L"Ruiz", L"Ana", L"ANA RUIZ", 1000.01, "", 1000.0, ""},
     L"Total au-dessus de la limite : Ruiz Ana/ANA RUIZ, total 1000.01, limite 1000.00"},
    {"SignerList", Language::English, 1805, {L"A;B"}, L"No rule is known for these signers: A;B"},
    {"SameCertificate",
     Language::English,
     1818,
     {L"Ana", L"Ruiz", L"SAME", L"Bo", L"Weber"},
     L"Both holders have the same certificate: Ana Ruiz/SAME, Bo Weber"},
    {"TwoHoldersAboveTheLimit",
     Language::English,
     1820,
     {L"Ruiz", L"Ana", L"A", L"Weber", L"Bo", L"B", 5.5, "", 5.0, ""},
     L"Ruiz Ana/A, Weber Bo/B: total 5.50 over 5.00"},
    {"TwoHoldersOrderAboveTheLimit",
     Language::English,
     1821,
     {L"Ruiz", L"Ana", L"A", L"Weber", L"Bo", L"B", 5.5, "", 5.0, ""},
     L"Ruiz Ana/A, Weber Bo/B: in 5.50 order over 5.00"},
    {"TwoHoldersSucceed",
     Language::French,
     1822,
     {L"Ruiz", L"Ana", L"A", L"Weber", L"Bo", L"B", 5.0, "", 5.5, ""},
     L"Ruiz Ana/A, Weber Bo/B, total 5.00 admis (5.50)"},
    {"NarrowTextsAreWindows1252",
     Language::English,
     1808,
     {"REN\xC9"
      "E \x80"},
     L"Two signatures are required: REN\u00C9E \u20AC"},
    {"TextsOfTheTextClasses",
     Language::English,
     1809,
     {TSimpleString()},
     L"A holder of the rule has not signed"},
    {"LineEndsBecomeBlanks",
     Language::English,
     1815,
     {L"A\r\nB\tC\u0085D\u2028E"},
     L"The contract's profile asks for a single signature: A  B C D E"},
    {"NullTextsAreLeftOut",
     Language::English,
     1805,
     {static_cast<const wchar_t*>(nullptr)},
     L"No rule is known for these signers"},
    {"NullNarrowTextsAreLeftOut",
     Language::English,
     1805,
     {static_cast<const char*>(nullptr)},
     L"No rule is known for these signers"},
    {"TooManyArgumentsAreShownBehind",
     Language::English,
     1819,
     {L"C1", 7, 4294967295U, ""},
     L"The contract is not active, C1, 7, 4294967295"},
    {"SignsOfTheTemplatesPassInArguments",
     Language::English,
     1805,
     {L"[%H]"},
     L"No rule is known for these signers: [%H]"},
    {"UnknownNumber", Language::English, 4711, {}, L"Unknown message 4711"},
    {"UnknownNumberInFrench", Language::French, 4711, {}, L"Message inconnu 4711"},
    {"UnknownNumberWithArguments",
     Language::English,
     4711,
     {L"a", 1.5},
     L"Unknown message 4711, a, 1.50"},
};

TEST_P(MessageTexts, AreExact)
{
    const MessageCase& message = GetParam();
    EXPECT_EQ(Text(message.language, message.number, message.arguments), message.expected);
}

INSTANTIATE_TEST_SUITE_P(Table, MessageTexts, testing::ValuesIn(kMessageCases),
                         [](const auto& tested) { return tested.param.name; });

TEST(Messages, ReservedNumbersSayThatTheyAreReservedAndWhich)
{
    for (const unsigned number : kReserved)
    {
        EXPECT_EQ(Text(Language::English, number, {}),
                  L"Reserved message " + std::to_wstring(number));
        EXPECT_EQ(Text(Language::French, number, {}),
                  L"Message r\u00E9serv\u00E9 " + std::to_wstring(number));
    }
}

TEST(Messages, EveryNumberOfTheRangeHasAText)
{
    for (unsigned number = 1800; number <= 1823; ++number)
    {
        EXPECT_EQ(Text(Language::English, number, {}).find(L"Unknown"), std::wstring::npos);
    }
}

TEST(Messages, TheLanguageIsChosenByTheEnvironmentAtEachCall)
{
    const struct
    {
        const char* value;
        Language language;
    } kChoices[] = {{nullptr, Language::English}, {"", Language::English},
                    {"en", Language::English},    {"fr", Language::French},
                    {"FR", Language::French},     {"de", Language::English}};
    for (const auto& chosen : kChoices)
    {
        const ScopedEnvironment environment("SIGNUTILS_LANG", chosen.value);
        EXPECT_EQ(support::MessageLanguage(), chosen.language);
        EXPECT_EQ(support::Message(1819, nullptr, 0), MessageIn(chosen.language, 1819, nullptr, 0));
    }
}

TEST(Messages, AmountsHaveTwoToSixPlaces)
{
    const struct
    {
        double amount;
        const wchar_t* expected;
    } kAmounts[] = {
        {0.0, L"0.00"},
        {1000.0, L"1000.00"},
        {0.5, L"0.50"},
        {12.345, L"12.345"},
        {12.3456, L"12.3456"},
        {0.000001, L"0.000001"},
        {0.0000001, L"0.00"},
        {-0.0, L"0.00"},
        {-0.0000001, L"0.00"},
        {-12.5, L"-12.50"},
        {1234567.89, L"1234567.89"},
        {1e15, L"1000000000000000.00"},
        {std::numeric_limits<double>::infinity(), L"inf"},
    };
    for (const auto& amount : kAmounts)
    {
        EXPECT_EQ(AmountText(amount.amount), amount.expected);
    }
}

} // namespace
