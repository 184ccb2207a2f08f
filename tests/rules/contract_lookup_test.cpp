#include "rules/contract_lookup.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "tests/signers/failing_rows.h"
#include "tests/signers/trace_file.h"
#include "tests/testing/bank.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing_support::Contract;

class ContractLookup : public testing::Test
{
protected:
    void SetUp() override
    {
        session.OpenEx(tables.ConnexionString().c_str(),
                       CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }

    void Load() { rules::LoadRules(session, trace.Handle(), contract, found); }

    const cuidRule& Only()
    {
        Load();
        EXPECT_EQ(found.GetCount(), 1);
        static const cuidRule none{};
        return found.GetCount() == 0 ? none : *found.GetAt(0);
    }

    std::vector<std::string> FirstHolders() const
    {
        std::vector<std::string> holders;
        for (int i = 0; i < found.GetCount(); ++i)
        {
            holders.emplace_back(found.GetAt(i)->holder1.huid);
        }
        return holders;
    }

    testing_support::TestDatabase tables;
    testing_support::Bank bank{tables};
    testing_support::TraceFile trace;
    CDatabase session;
    rules::ContractKey contract = {1, 9, "EBICS", "PARTNER1", "SERVICE1", "CLIENT1", true, false};
    TArray<cuidRule> found{128};
};

TEST_F(ContractLookup, EachRuleLineGivesARuleInTheOrderOfInsertion)
{
    bank.With(Contract(L"C1").AloneBy(L"H3").By(L"H1", L"H2").AloneBy(L"H2"));

    Load();
    EXPECT_THAT(FirstHolders(), ElementsAre("H3", "H1", "H2"));
    EXPECT_STREQ(found.GetAt(1)->holder2.huid, "H2");
    EXPECT_STREQ(found.GetAt(0)->holder2.huid, "");
    EXPECT_EQ(found.GetAt(0)->alone, 1);
    EXPECT_EQ(found.GetAt(1)->alone, 0);
}

TEST_F(ContractLookup, RuleLineFillsTheRecord)
{
    bank.With(Contract(L"C1").DoubleSignature().By(L"H1", L"H2").OrdersUpTo(L"1234.56"));

    const cuidRule& rule = Only();
    EXPECT_STREQ(rule.cuid, "C1");
    EXPECT_EQ(rule.active, 1);
    EXPECT_EQ(rule.allHolders, 0);
    EXPECT_EQ(rule.alone, 0);
    EXPECT_DOUBLE_EQ(rule.amount, 1234.56);
    EXPECT_EQ(rule.tlevel, 1);
    EXPECT_EQ(rule.profile, 1);
    EXPECT_STREQ(rule.holder1.huid, "H1");
    EXPECT_EQ(rule.holder1.notOpposition, 0);
    EXPECT_EQ(std::wstring(rule.holder1.certificateName), L"");
    EXPECT_STREQ(rule.holder2.huid, "H2");
}

TEST_F(ContractLookup, ContractIsNotReadWhenItHasRuleLines)
{
    bank.With(Contract(L"C1").AloneBy(L"H1")).With(Contract(L"C2").AllHolders().WithoutRules());

    EXPECT_STREQ(Only().cuid, "C1");
    EXPECT_THAT(trace.Lines(), Not(HasSubstr("|C2")));
}

TEST_F(ContractLookup, ContractWithoutRuleLinesIsReadItself)
{
    bank.With(Contract(L"C1").AllHolders().WithoutRules());

    const cuidRule& rule = Only();
    EXPECT_STREQ(rule.cuid, "C1");
    EXPECT_EQ(rule.active, 1);
    EXPECT_EQ(rule.allHolders, 1);
    EXPECT_EQ(rule.alone, 0);
    EXPECT_EQ(rule.amount, 0.0);
    EXPECT_EQ(rule.tlevel, 0);
    EXPECT_EQ(rule.profile, 0);
    EXPECT_STREQ(rule.holder1.huid, "");
    EXPECT_STREQ(rule.holder2.huid, "");
}

TEST_F(ContractLookup, BlockedContractWithoutRuleLinesIsInactive)
{
    bank.With(Contract(L"C1").Opposition(L"1").WithoutRules());

    EXPECT_EQ(Only().active, 0);
}

TEST_F(ContractLookup, ContractWithoutRuleLinesIsReadWhateverTheOrderType)
{
    Contract other(L"C1");
    other.type = 5;
    bank.With(other.AllHolders().WithoutRules());
    contract.contractType = 77;

    EXPECT_EQ(Only().allHolders, 1);
}

TEST_F(ContractLookup, UnknownContractGivesNoRule)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    contract.client = "NOBODY";

    Load();
    EXPECT_EQ(found.GetCount(), 0);
    EXPECT_EQ(trace.Lines(), "");
}

TEST_F(ContractLookup, OnlyTheContractsOwnKeyCounts)
{
    const auto other = [](const wchar_t* cuid, auto change)
    {
        Contract row(cuid);
        row.AloneBy(cuid);
        change(row);
        return row;
    };
    bank.With(other(L"OWN", [](Contract&) {}))
        .With(other(L"TYPE", [](Contract& row) { row.type = 2; }))
        .With(other(L"PROTOCOL", [](Contract& row) { row.protocol = 10; }))
        .With(other(L"SERVER", [](Contract& row) { row.server = 0; }))
        .With(other(L"PARTNER", [](Contract& row) { row.vpname = L"PARTNER2"; }))
        .With(other(L"SERVICE", [](Contract& row) { row.vfname = L"service1"; }))
        .With(other(L"CLIENT", [](Contract& row) { row.vcname = L"CLIENT"; }));

    Load();
    EXPECT_THAT(FirstHolders(), ElementsAre("OWN"));
}

TEST_F(ContractLookup, RequesterSideReadsItsOwnRules)
{
    Contract requester(L"DEM");
    requester.server = 0;
    bank.With(Contract(L"SRV").AloneBy(L"H1")).With(requester.AloneBy(L"H2"));
    contract.serverMode = false;

    EXPECT_STREQ(Only().cuid, "DEM");
}

TEST_F(ContractLookup, NamesLongerThan8CharactersFindTheContractOfTheirFirst8)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    contract.partner = "PARTNER1 and more";
    contract.service = "SERVICE1X";

    EXPECT_STREQ(Only().cuid, "C1");
}

TEST_F(ContractLookup, ContractAwaitingItsIdentifierGivesNoRule)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    tables.Execute(L"UPDATE SSR_CONTRACTCUR SET CUID = NULL");
    tables.Execute(L"DELETE FROM SSR_CONTRACT");

    Load();
    EXPECT_EQ(found.GetCount(), 0);
}

struct AmountCase
{
    const char* name;
    const wchar_t* column; ///< null: NULL
    double amount;
};

class AmountOfARule : public ContractLookup, public testing::WithParamInterface<AmountCase>
{
};

TEST_P(AmountOfARule, IsReadAsDecimalText)
{
    bank.With(Contract(L"C1").AloneBy(L"H1"));
    const wchar_t* const column = GetParam().column;
    tables.Execute(L"UPDATE SSR_CONTRACTRULE SET AMOUNT = " +
                   (column == nullptr ? std::wstring(L"NULL") : tables.Literal(column)));

    EXPECT_DOUBLE_EQ(Only().amount, GetParam().amount);
}

constexpr AmountCase kAmounts[] = {
    {"Point", L"1000.50", 1000.50},
    {"Comma", L"1000,50", 1000.50},
    {"GroupsAndComma", L"1.234,56", 1234.56},
    {"WholeNumber", L"1000", 1000.0},
    {"CurrencyAndBlanks", L" 1 000.50 EUR", 1000.50},
    {"Empty", L"", 0.0},
    {"Null", nullptr, 0.0},
    {"NoNumber", L"unlimited", 0.0},
    {"Negative", L"-7.5", -7.5},
    {"SmallNegativeIsMalformedOnItsWay", L"-0.05", 0.0},
    {"NegativeOfEightDigits", L"-12345678.5", -12345678.5},
    {"SeventhDecimalIsDropped", L"0.1234567", 0.123456},
};

INSTANTIATE_TEST_SUITE_P(Values, AmountOfARule, testing::ValuesIn(kAmounts),
                         [](const auto& row) { return row.param.name; });

struct NumberCase
{
    const char* name;
    const wchar_t* column;
    int active;
};

class ActiveContract : public ContractLookup, public testing::WithParamInterface<NumberCase>
{
};

TEST_P(ActiveContract, IsOneWhoseOppositionReadsAsZero)
{
    bank.With(Contract(L"C1").Opposition(GetParam().column).AloneBy(L"H1"));

    EXPECT_EQ(Only().active, GetParam().active);
}

constexpr NumberCase kOppositions[] = {
    {"Zero", L"0", 1},      {"One", L"1", 0},
    {"Empty", L"", 1},      {"Text", L"none", 1},
    {"Negative", L"-1", 0}, {"LeadingDigits", L"2x", 0},
    {"Blank0", L" 0 ", 1},  {"BeyondTheRange", L"4294967296", 0},
};

INSTANTIATE_TEST_SUITE_P(Values, ActiveContract, testing::ValuesIn(kOppositions),
                         [](const auto& row) { return row.param.name; });

TEST_F(ContractLookup, NullColumnsReadAsEmpty)
{
    bank.With(Contract(L"C1").AloneBy(L"H1").Level(1));
    tables.Execute(L"UPDATE SSR_CONTRACTRULE SET HUID1 = NULL, HUID2 = NULL, ALONE = NULL, "
                   L"TLEVEL = NULL");
    tables.Execute(L"UPDATE SSR_CONTRACTCUR SET OPPOSITION = NULL, ALLHOLDERS = NULL, "
                   L"PROFILE = NULL");

    const cuidRule& rule = Only();
    EXPECT_STREQ(rule.holder1.huid, "");
    EXPECT_EQ(rule.active, 1);
    EXPECT_EQ(rule.alone, 0);
    EXPECT_EQ(rule.tlevel, 0);
    EXPECT_EQ(rule.profile, 0);
}

TEST_F(ContractLookup, IdentifiersLongerThan255CharactersAreCut)
{
    if (!testing_support::RunsOnSqlite())
    {
        GTEST_SKIP() << "needs a product that stores texts beyond their column's length";
    }
    const std::wstring longer(300, L'x');
    bank.With(Contract(longer).By(longer + L"1", longer + L"2"));

    const cuidRule& rule = Only();
    EXPECT_EQ(std::string(rule.cuid), std::string(255, 'x'));
    EXPECT_EQ(std::string(rule.holder1.huid), std::string(255, 'x'));
    EXPECT_EQ(std::string(rule.holder2.huid), std::string(255, 'x'));
}

TEST_F(ContractLookup, TraceShowsEveryColumnOfARuleLine)
{
    bank.With(Contract(L"C1").DoubleSignature().By(L"H1", L"H2").OrdersUpTo(L"1000.50"));

    Load();
    EXPECT_EQ(trace.Lines(), "[CONTRACTS RULE #0]\n"
                             "CUID Rules     |C1\n"
                             "CUID Partner   |PARTNER1\n"
                             "CUID Protocol  |9\n"
                             "CUID Service   |SERVICE1\n"
                             "CUID Client    |CLIENT1\n"
                             "CUID SERVER    |1\n"
                             "CUID OPPOSITION|0\n"
                             "CUID ALLHOLDERS|0\n"
                             "CUID PROFILE   |1\n"
                             "CUID ALONE     |0\n"
                             "CUID AMOUNT    |1000.50\n"
                             "CUID TLEVEL    |1\n"
                             "HUID Signer 1  |H1\n"
                             "HUID Signer 2  |H2\n");
}

TEST_F(ContractLookup, TraceShowsEveryColumnOfAContract)
{
    bank.With(Contract(L"C1").AllHolders().Opposition(L"3").WithoutRules());

    Load();
    EXPECT_EQ(trace.Lines(), "[CONTRACTS RULE #0]\n"
                             "CUID Rules     |C1\n"
                             "CUID Partner   |PARTNER1\n"
                             "CUID Protocol  |9\n"
                             "CUID Service   |SERVICE1\n"
                             "CUID Client    |CLIENT1\n"
                             "CUID SERVER    |1\n"
                             "CUID OPPOSITION|3\n"
                             "CUID ALLHOLDERS|1\n");
}

TEST_F(ContractLookup, RowsAreNumberedFromZeroInBothQueries)
{
    bank.With(Contract(L"C1").AloneBy(L"H1").AloneBy(L"H2"));
    Load();
    EXPECT_TRUE(trace.Has("[CONTRACTS RULE #0]"));
    EXPECT_TRUE(trace.Has("[CONTRACTS RULE #1]"));
    EXPECT_FALSE(trace.Has("[CONTRACTS RULE #2]"));
}

TEST_F(ContractLookup, ContractsOfTheFallbackAreNumberedOn)
{
    bank.With(Contract(L"C1").WithoutRules()).With(Contract(L"C2").WithoutRules());
    Load();
    EXPECT_EQ(found.GetCount(), 2);
    EXPECT_TRUE(trace.Has("[CONTRACTS RULE #0]"));
    EXPECT_TRUE(trace.Has("[CONTRACTS RULE #1]"));
}

TEST_F(ContractLookup, QuoteInANameRaises)
{
    contract.client = "O'BRIEN";
    bool raised = false;

    database::GuardDatabase([&] { Load(); }, [&](const CDBException&) { raised = true; },
                            [] { FAIL() << "no database exception"; });
    EXPECT_TRUE(raised);
}

} // namespace
