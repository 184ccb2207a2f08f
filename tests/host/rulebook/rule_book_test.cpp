// The rule tables as a rule book: what is written is read back to the last letter, and rules stand
// in the order in which a check judges them.

#include "database/cdatabase.h"
#include "host/rulebook/rule_book_reader.h"
#include "host/rulebook/rule_book_writer.h"
#include "schema/installer.h"
#include "tests/testing/bank.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>

namespace testing_support
{
namespace
{

using testing::ElementsAre;

class RuleBookTest : public testing::Test
{
protected:
    RuleBookTest()
    {
        m_opened.OpenEx(m_database.ConnexionString().c_str(),
                        CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }

    rulebook::RuleBook Rewritten(const rulebook::RuleBook& book)
    {
        rulebook::WriteRuleBook(m_opened, book);
        return rulebook::ReadRuleBook(m_opened);
    }

    TestDatabase m_database;
    CDatabase m_opened;
};

rulebook::Holder HolderNamed(const std::string& huid, const std::string& name)
{
    return {huid, "PARTNER1", "First " + huid, name, "0", {{"CN " + huid, "01", "2027-06-30"}}};
}

rulebook::Rule AloneBy(const std::string& huid, const std::string& amount)
{
    return {huid, std::nullopt, 1, amount, 0};
}

rulebook::ContractTerms TermsOfType(std::int64_t type)
{
    return {{"PARTNER1", "SERVICE1", "CLIENT1", 9, 1}, type, 0, 0, "0"};
}

std::vector<std::string> NamesOf(const rulebook::RuleBook& book)
{
    std::vector<std::string> names;
    for (const rulebook::Holder& holder : book.holders)
    {
        names.push_back(holder.huid);
    }
    return names;
}

std::vector<std::string> AmountsOf(const rulebook::Contract& contract)
{
    std::vector<std::string> amounts;
    for (const rulebook::Rule& rule : contract.rules)
    {
        amounts.push_back(rule.amount.value_or("NULL"));
    }
    return amounts;
}

TEST_F(RuleBookTest, EmptyTablesAreAnEmptyBook)
{
    EXPECT_EQ(rulebook::ReadRuleBook(m_opened), rulebook::RuleBook());
}

TEST_F(RuleBookTest, WhatIsWrittenIsReadBack)
{
    rulebook::RuleBook book;
    book.holders = {HolderNamed("H1", "Ana"), HolderNamed("H2", "Björn")};
    book.holders[0].certificates.push_back({"CN 2", std::nullopt, std::nullopt});
    book.contracts = {{"C1",
                       rulebook::ContractEntry{TermsOfType(1).key, 0, "0"},
                       {TermsOfType(1), TermsOfType(2)},
                       {AloneBy("H1", "1000.00"), {"H1", "H2", 0, "5000", 1}}},
                      {"C2", std::nullopt, {TermsOfType(3)}, {}}};

    EXPECT_EQ(Rewritten(book), book);
}

TEST_F(RuleBookTest, LettersThatStatementsGiveAMeaningStayAsTheyAre)
{
    const std::string texts[] = {"O'Brien",
                                 "''",
                                 "'; DELETE FROM SSR_HOLDER; --",
                                 "back\\slash\\",
                                 "\\' OR 1=1",
                                 "N'x'",
                                 "{fn}",
                                 "trailing blanks  ",
                                 "  leading",
                                 "a\tb",
                                 "%_?$1",
                                 "",
                                 "--",
                                 "/* x */",
                                 "\"quoted\""};
    rulebook::RuleBook book;
    for (const std::string& text : texts)
    {
        const std::string huid = "H" + std::to_string(100 + book.holders.size());
        book.holders.push_back({huid, "P", text, text, "0", {{text, "01", "2027-06-30"}}});
    }

    EXPECT_EQ(Rewritten(book), book);
}

TEST_F(RuleBookTest, AccentsAndLettersBeyondSixteenBitsAreKept)
{
    rulebook::RuleBook book;
    book.holders = {HolderNamed("H1", "Lefèvre"), HolderNamed("H2", "Дмитрий 渡辺"),
                    HolderNamed("H3", "𠮷野 😀")};
    book.holders[2].certificates = {{"𠮷野 😀", "01", "2027-06-30"}};

    EXPECT_EQ(Rewritten(book), book);
}

TEST_F(RuleBookTest, NullIsNotEmptyAndNotZero)
{
    rulebook::RuleBook book;
    book.holders = {
        {"H1", {}, {}, {}, {}, {{"A", std::nullopt, std::nullopt}}},
        {"H2", "", "", "", "", {{"B", "", std::nullopt}}},
    };
    rulebook::ContractTerms bare = TermsOfType(1);
    bare.profile = bare.allHolders = std::nullopt;
    bare.opposition = std::nullopt;
    rulebook::ContractTerms zero = TermsOfType(2);
    zero.opposition = "";
    book.contracts = {{"C1",
                       rulebook::ContractEntry{bare.key, std::nullopt, std::nullopt},
                       {bare, zero},
                       {{std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt},
                        {"", "", 0, "", 0}}}};

    EXPECT_EQ(Rewritten(book), book);
}

TEST_F(RuleBookTest, AHolderWithoutCertificatesComesLast)
{
    rulebook::RuleBook book;
    book.holders = {{"H1", "P", "A", "B", "0", {}}, HolderNamed("H2", "Ana")};

    EXPECT_THAT(NamesOf(Rewritten(book)), ElementsAre("H2", "H1"));
}

// Where two holders share a certificate, its look-up takes the names of the last row.
TEST_F(RuleBookTest, HoldersStandInTheOrderOfTheirCertificates)
{
    for (const wchar_t* const statement :
         {L"INSERT INTO SSR_HOLDER (HUID) VALUES ('H1')",
          L"INSERT INTO SSR_HOLDER (HUID) VALUES ('H2')",
          L"INSERT INTO SSR_HOLDERID (HUID, CN) VALUES ('H2', 'shared')",
          L"INSERT INTO SSR_HOLDERID (HUID, CN) VALUES ('H1', 'shared')"})
    {
        m_database.Execute(statement);
    }

    EXPECT_THAT(NamesOf(rulebook::ReadRuleBook(m_opened)), ElementsAre("H2", "H1"));
}

TEST_F(RuleBookTest, RulesStandInTheOrderInWhichACheckReadsThem)
{
    Bank(m_database)
        .With(Contract(L"C2").AloneBy(L"H1").UpTo(L"3").AloneBy(L"H1").UpTo(L"1"))
        .With(Contract(L"C1").AloneBy(L"H1").UpTo(L"2"));
    m_database.Execute(L"INSERT INTO SSR_CONTRACTRULE (CUID, AMOUNT) VALUES ('C2', '2')");
    m_database.Execute(L"INSERT INTO SSR_CONTRACTRULE (CUID, AMOUNT) VALUES ('C1', '1')");
    const auto readByACheck = m_database.Query(
        L"SELECT R.AMOUNT FROM SSR_CONTRACTCUR C, SSR_CONTRACTRULE R WHERE TYPE=1 AND "
        L"C.CUID IS NOT NULL AND C.CUID = R.CUID AND C.CUID='C2' AND SERVER=1");

    const rulebook::RuleBook book = rulebook::ReadRuleBook(m_opened);

    ASSERT_EQ(book.contracts.size(), 2U);
    EXPECT_EQ(book.contracts[0].cuid, "C2");
    EXPECT_THAT(AmountsOf(book.contracts[0]), ElementsAre("3", "1", "2"));
    EXPECT_THAT(readByACheck, ElementsAre(Row{L"3"}, Row{L"1"}, Row{L"2"}));
    EXPECT_THAT(AmountsOf(book.contracts[1]), ElementsAre("2", "1"));
}

TEST_F(RuleBookTest, TermsThatAwaitTheirIdentifierAreContractsOfTheirOwn)
{
    rulebook::RuleBook book;
    book.contracts = {{std::nullopt, std::nullopt, {TermsOfType(1)}, {}},
                      {std::nullopt, std::nullopt, {TermsOfType(2)}, {}}};

    EXPECT_EQ(Rewritten(book), book);
}

TEST_F(RuleBookTest, RulesWithoutAContractAreKept)
{
    rulebook::RuleBook book;
    book.contracts = {{"C1", std::nullopt, {}, {AloneBy("H1", "1")}}};

    EXPECT_EQ(Rewritten(book), book);
}

TEST_F(RuleBookTest, OneContractBringsTheHoldersOfItsRules)
{
    schema::InstallSample(m_opened);

    const rulebook::RuleBook book = rulebook::ReadRuleBook(m_opened, {.cuid = "C-7001", .key = {}});

    ASSERT_EQ(book.contracts.size(), 1U);
    EXPECT_EQ(book.contracts[0].cuid, "C-7001");
    EXPECT_TRUE(book.contracts[0].entry);
    EXPECT_THAT(AmountsOf(book.contracts[0]), ElementsAre("5000.00", "50000.00"));
    EXPECT_THAT(NamesOf(book), ElementsAre("DE-0003", "IE-0001"));
}

TEST_F(RuleBookTest, AContractThatIsNotThereIsAnEmptyBook)
{
    schema::InstallSample(m_opened);

    EXPECT_EQ(rulebook::ReadRuleBook(m_opened, {.cuid = "c-7001' OR 'a'='a", .key = {}}),
              rulebook::RuleBook());
}

TEST_F(RuleBookTest, AKeyBringsEveryContractThatACheckForItMayMeet)
{
    rulebook::RuleBook book;
    rulebook::ContractTerms other = TermsOfType(1);
    other.key.server = 0;
    book.contracts = {
        {"C1", std::nullopt, {TermsOfType(1)}, {AloneBy("H1", "1")}},
        {"C2", std::nullopt, {TermsOfType(2)}, {AloneBy("H2", "2")}},
        {"C3", std::nullopt, {other}, {AloneBy("H3", "3")}},
        {"C4", rulebook::ContractEntry{TermsOfType(1).key, 1, "0"}, {}, {}},
    };
    book.holders = {HolderNamed("H1", "A"), HolderNamed("H2", "B"), HolderNamed("H3", "C")};
    rulebook::WriteRuleBook(m_opened, book);

    const rulebook::RuleBook read =
        rulebook::ReadRuleBook(m_opened, {.cuid = {}, .key = TermsOfType(1).key});

    ASSERT_EQ(read.contracts.size(), 3U);
    EXPECT_EQ(read.contracts[0], book.contracts[0]);
    EXPECT_EQ(read.contracts[1], book.contracts[1]);
    EXPECT_EQ(read.contracts[2], book.contracts[3]);
    EXPECT_THAT(NamesOf(read), ElementsAre("H1", "H2"));
}

TEST_F(RuleBookTest, TheSampleBankIsTheSameInAnotherDatabase)
{
    schema::InstallSample(m_opened);
    const rulebook::RuleBook sample = rulebook::ReadRuleBook(m_opened);
    for (const std::wstring table :
         {L"SSR_HOLDER", L"SSR_HOLDERID", L"SSR_CONTRACT", L"SSR_CONTRACTCUR", L"SSR_CONTRACTRULE"})
    {
        m_database.Execute(L"DELETE FROM " + table);
    }

    EXPECT_EQ(Rewritten(sample), sample);
    EXPECT_EQ(sample.holders.size(), 12U);
    EXPECT_EQ(sample.contracts.size(), 10U);
}

TEST_F(RuleBookTest, CertificatesOfNobodyAreCounted)
{
    schema::InstallSample(m_opened);
    EXPECT_EQ(rulebook::CountStrayCertificates(m_opened), 0U);

    m_database.Execute(L"INSERT INTO SSR_HOLDERID (HUID, CN) VALUES ('nobody', 'x')");

    EXPECT_EQ(rulebook::CountStrayCertificates(m_opened), 1U);
    EXPECT_EQ(rulebook::ReadRuleBook(m_opened).holders.size(), 12U);
}

} // namespace
} // namespace testing_support
