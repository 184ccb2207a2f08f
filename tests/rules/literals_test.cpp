// Which texts of a statement are held within their literals, and how far the cut reaches.

#include "database/guard_database.h"
#include "rules/statements.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

/// Every text of the statements, each free of quotes.
struct Texts
{
    std::string partner = "P";
    std::string service = "S";
    std::string client = "C";
    std::string orderId = "O";
    std::string file = "f";
    std::wstring list = L"c";
    std::wstring firstName1 = L"a";
    std::wstring lastName1 = L"b";
    std::wstring firstName2 = L"c";
    std::wstring lastName2 = L"d";
    std::wstring reason = L"r";
};

/// The first text of the refusal, empty when there was none.
template <typename Body>
std::string RefusalOf(Body&& body)
{
    std::string text;
    database::GuardDatabase(
        body, [&](const CDBException& raised) { text = raised.GetText(); }, [] { FAIL(); });
    return text;
}

rules::ContractKey ContractOf(const Texts& texts)
{
    return {1,    9,    "EBICS", texts.partner.c_str(), texts.service.c_str(), texts.client.c_str(),
            true, false};
}

std::string RefusalOfQuery(const Texts& texts)
{
    return RefusalOf([&] { rules::RequireWithinLiterals(ContractOf(texts)); });
}

std::string RefusalOfRow(const Texts& texts)
{
    const rules::ContractKey contract = ContractOf(texts);
    const rules::OrderFacts order = {texts.file.c_str(), texts.orderId.c_str(), 1, 0.0, 0.0};
    ruleSign decision;
    decision.signer1 = {L"", texts.lastName1.c_str(), texts.firstName1.c_str()};
    decision.signer2 = {L"", texts.lastName2.c_str(), texts.firstName2.c_str()};
    decision.reasonText = texts.reason.c_str();
    const rules::HistoryFacts facts = {contract, order, texts.list.c_str(), 1};
    rules::HistoryFinding finding;
    rules::FindingOf(facts, decision, finding);
    return RefusalOf([&] { rules::RequireWithinLiterals(facts, finding); });
}

std::string Refused(const char* what, std::size_t cut)
{
    return std::string("[42000] The ") + what + ", cut to " + std::to_string(cut) +
           " characters, has an apostrophe without a partner, which would end its literal in the "
           "statement: write it without apostrophes.";
}

template <std::string Texts::*Text>
void SetNarrow(Texts& texts, std::size_t length, const char* end)
{
    texts.*Text = std::string(length, 'x') + end;
}

template <std::wstring Texts::*Text>
void SetWide(Texts& texts, std::size_t length, const char* end)
{
    texts.*Text = std::wstring(length, L'x') + (*end == '\0' ? L"" : L"'");
}

struct TextCase
{
    const char* name;
    const char* what;
    std::size_t cut;
    /// Sets the text to `length` letters and `end`.
    void (*set)(Texts& texts, std::size_t length, const char* end);
};

class TextOfAQuery : public testing::TestWithParam<TextCase>
{
};

TEST_P(TextOfAQuery, IsHeldWithinItsLiteralAsFarAsItIsCut)
{
    Texts texts;
    EXPECT_EQ(RefusalOfQuery(texts), "");
    GetParam().set(texts, GetParam().cut - 1, "'");
    EXPECT_EQ(RefusalOfQuery(texts), Refused(GetParam().what, GetParam().cut));
    GetParam().set(texts, GetParam().cut, "'");
    EXPECT_EQ(RefusalOfQuery(texts), "") << "a quote behind the cut";
}

class TextOfARow : public testing::TestWithParam<TextCase>
{
};

// For a doubled text the last character kept is then the first half of the pair.
TEST_P(TextOfARow, IsHeldWithinItsLiteralAsFarAsItIsCut)
{
    Texts texts;
    EXPECT_EQ(RefusalOfRow(texts), "");
    GetParam().set(texts, GetParam().cut - 1, "'");
    EXPECT_EQ(RefusalOfRow(texts), Refused(GetParam().what, GetParam().cut));
    GetParam().set(texts, GetParam().cut, "'");
    EXPECT_EQ(RefusalOfRow(texts), "") << "a quote behind the cut";
}

constexpr TextCase kParties[] = {
    {"Partner", "partner", 8, SetNarrow<&Texts::partner>},
    {"Service", "service", 8, SetNarrow<&Texts::service>},
    {"Client", "client", 8, SetNarrow<&Texts::client>},
};

constexpr TextCase kRowTexts[] = {
    {"OrderIdentifier", "order identifier", 10, SetNarrow<&Texts::orderId>},
    {"FirstNameOfTheFirst", "first name of signer 1", 255, SetWide<&Texts::firstName1>},
    {"LastNameOfTheFirst", "last name of signer 1", 255, SetWide<&Texts::lastName1>},
    {"FirstNameOfTheSecond", "first name of signer 2", 255, SetWide<&Texts::firstName2>},
    {"LastNameOfTheSecond", "last name of signer 2", 255, SetWide<&Texts::lastName2>},
    {"Motif", "finding", 1024, SetWide<&Texts::reason>},
    {"SignerList", "signer list", 2048, SetWide<&Texts::list>},
    {"FileName", "file name", 256, SetNarrow<&Texts::file>},
};

const auto kName = [](const auto& row) { return row.param.name; };
INSTANTIATE_TEST_SUITE_P(Parties, TextOfAQuery, testing::ValuesIn(kParties), kName);
INSTANTIATE_TEST_SUITE_P(Parties, TextOfARow, testing::ValuesIn(kParties), kName);
INSTANTIATE_TEST_SUITE_P(Texts, TextOfARow, testing::ValuesIn(kRowTexts), kName);

TEST(RefusedText, IsToldWithWhatWasAboutToBeDone)
{
    const auto operationOf = [](auto&& body)
    {
        std::string operation;
        database::GuardDatabase(
            body,
            [&](const CDBException& raised) { operation = raised.GetSecondText().SafeGetString(); },
            [] { FAIL(); });
        return operation;
    };
    Texts texts;
    texts.partner = "P'";
    const rules::ContractKey contract = ContractOf(texts);
    const rules::OrderFacts order = {"f", "O", 1, 0.0, 0.0};
    EXPECT_EQ(operationOf([&] { rules::RequireWithinLiterals(contract); }), "OpenW");
    EXPECT_EQ(operationOf(
                  [&] {
                      rules::RequireWithinLiterals({contract, order, L"c", 0},
                                                   rules::FindingOfNoRule(L"m"));
                  }),
              "ExecuteSQLW");
}

TEST(TextsOfTheNoRuleRow, AreHeldWithinTheirLiterals)
{
    const Texts texts;
    const rules::ContractKey contract = ContractOf(texts);
    const rules::OrderFacts order = {"o'ne", "O", 1, 0.0, 0.0};
    const rules::HistoryFacts facts = {contract, order, L"c", 0};
    EXPECT_EQ(RefusalOf([&] { rules::RequireWithinLiterals(facts, rules::FindingOfNoRule(L"m")); }),
              Refused("file name", 256));
}

TEST(TextsOfTheNoRuleRow, FindingIsRefusedOnlyWhereTheCutPartsADoubledQuote)
{
    const Texts texts;
    const rules::ContractKey contract = ContractOf(texts);
    const rules::OrderFacts order = {"f", "O", 1, 0.0, 0.0};
    const rules::HistoryFacts facts = {contract, order, L"c", 0};
    const auto refusal = [&](std::size_t length)
    {
        const std::wstring motif = std::wstring(length, L'm') + L"'";
        return RefusalOf(
            [&] { rules::RequireWithinLiterals(facts, rules::FindingOfNoRule(motif.c_str())); });
    };
    EXPECT_EQ(refusal(1022), "");
    EXPECT_EQ(refusal(1023), Refused("finding", 1024));
    EXPECT_EQ(refusal(1024), "");
}

} // namespace
