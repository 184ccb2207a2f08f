#include "rules/statements.h"

#include "tests/testing/row_layouts.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using database::ColumnKind;
using rules::ContractKey;
using rules::HistoryFacts;
using rules::OrderFacts;

constexpr ContractKey kContract = {3, 9, "EBICS", "PARTNER1", "SERVICE1", "CLIENT1", true, false};
constexpr OrderFacts kOrder = {"C:\\in\\order.xml", "ORDER1", 42, 1500.5, 1000.0};

std::wstring Insert(const std::wstring& values)
{
    return L"INSERT INTO HST_SIGNRULES (DATETIME,SERVER,STATUT,VPNAME,TYPE_PTC,VFNAME,VCNAME,"
           L"IDFICVFS,ORDERID,TYPE_CTRL,SIGNER1,SIGNER2,MOTIF,CNS,TOTAL,MAXORDER,FILENAME) VALUES "
           L"({fn NOW()}," +
           values + L")";
}

std::wstring HistoryInsertOf(const HistoryFacts& facts, const rules::HistoryFinding& finding)
{
    std::wstring statement;
    rules::AppendHistoryRow(statement, facts, finding);
    return statement;
}

std::wstring Decision(const HistoryFacts& facts, const ruleSign& decision)
{
    rules::HistoryFinding finding;
    rules::FindingOf(facts, decision, finding);
    return HistoryInsertOf(facts, finding);
}

ruleSign SampleDecision()
{
    ruleSign decision;
    decision.reasonText = L"reason";
    decision.message = L"message";
    decision.signer1 = {L"cert one", L"Ruiz", L"Ana"};
    decision.signer2 = {L"cert two", L"Dahl", L"Bo"};
    decision.controlType = 1;
    decision.status = 1;
    return decision;
}

TEST(Statements, RuleQueryNamesTheContract)
{
    EXPECT_STREQ(rules::RuleQuery(kContract).SafeGetString(),
                 L"SELECT C.CUID, VPNAME, PROTOCOL, SERVER, VFNAME, VCNAME, TYPE, C.PROFILE, "
                 L"C.ALLHOLDERS, C.OPPOSITION, R.HUID1, R.HUID2, R.ALONE, R.AMOUNT, R.TLEVEL FROM "
                 L"SSR_CONTRACTCUR C, SSR_CONTRACTRULE R WHERE TYPE=3 AND C.CUID IS NOT NULL AND "
                 L"C.CUID = R.CUID AND C.VPNAME='PARTNER1' AND C.VFNAME='SERVICE1' AND "
                 L"C.VCNAME='CLIENT1' AND C.PROTOCOL=9 AND SERVER=1");
}

TEST(Statements, ContractQueryHasNoOrderType)
{
    EXPECT_STREQ(rules::ContractQuery(kContract).SafeGetString(),
                 L"SELECT CUID, VPNAME, PTC, VFNAME, VCNAME, ALLHOLDERS, OPPOSITION, SERVER FROM "
                 L"SSR_CONTRACT WHERE VPNAME='PARTNER1' AND VFNAME='SERVICE1' AND "
                 L"VCNAME='CLIENT1' AND PTC=9 AND SERVER=1");
}

TEST(Statements, NamesLongerThan8CharactersAreCutInBothQueries)
{
    const ContractKey longer = {3,           9,     "EBICS", "PARTNER1x", "SERVICE1yy",
                                "CLIENT123", false, false};
    const std::wstring rule = rules::RuleQuery(longer).SafeGetString();
    const std::wstring contract = rules::ContractQuery(longer).SafeGetString();

    EXPECT_NE(rule.find(L"C.VPNAME='PARTNER1' AND C.VFNAME='SERVICE1' AND C.VCNAME='CLIENT12'"),
              std::wstring::npos);
    EXPECT_NE(contract.find(L"VPNAME='PARTNER1' AND VFNAME='SERVICE1' AND VCNAME='CLIENT12'"),
              std::wstring::npos);
}

TEST(Statements, RequesterSideAsksForServerZero)
{
    ContractKey requester = kContract;
    requester.serverMode = false;

    EXPECT_TRUE(std::wstring(rules::RuleQuery(requester).SafeGetString()).ends_with(L"SERVER=0"));
    EXPECT_TRUE(
        std::wstring(rules::ContractQuery(requester).SafeGetString()).ends_with(L"SERVER=0"));
}

TEST(Statements, NumbersOf32BitsAreAskedForWithTheirSign)
{
    ContractKey highest = kContract;
    highest.contractType = 0xFFFFFFFFU;
    highest.protocol = 0x80000000U;
    const std::wstring query = rules::RuleQuery(highest).SafeGetString();

    EXPECT_NE(query.find(L"WHERE TYPE=-1 AND"), std::wstring::npos);
    EXPECT_NE(query.find(L"C.PROTOCOL=-2147483648 AND"), std::wstring::npos);
}

// Numbers take eleven characters, sign included.
TEST(Statements, RuleRowIsBoundByTheLengthsOfTheSchema)
{
    constexpr database::ColumnLayout columns[] = {
        {"CUID", ColumnKind::Narrow, 64},       {"VPNAME", ColumnKind::Narrow, 8},
        {"PROTOCOL", ColumnKind::Narrow, 11},   {"SERVER", ColumnKind::Narrow, 11},
        {"VFNAME", ColumnKind::Narrow, 8},      {"VCNAME", ColumnKind::Narrow, 8},
        {"TYPE", ColumnKind::Narrow, 11},       {"PROFILE", ColumnKind::Narrow, 11},
        {"ALLHOLDERS", ColumnKind::Narrow, 11}, {"OPPOSITION", ColumnKind::Narrow, 20},
        {"HUID1", ColumnKind::Narrow, 64},      {"HUID2", ColumnKind::Narrow, 64},
        {"ALONE", ColumnKind::Narrow, 11},      {"AMOUNT", ColumnKind::Narrow, 32},
        {"TLEVEL", ColumnKind::Narrow, 11},
    };
    testing_support::ExpectLayout(rules::kRuleRow, columns);
}

TEST(Statements, ContractRowIsBoundByTheLengthsOfTheSchema)
{
    constexpr database::ColumnLayout columns[] = {
        {"CUID", ColumnKind::Narrow, 64},       {"VPNAME", ColumnKind::Narrow, 8},
        {"PTC", ColumnKind::Narrow, 11},        {"VFNAME", ColumnKind::Narrow, 8},
        {"VCNAME", ColumnKind::Narrow, 8},      {"ALLHOLDERS", ColumnKind::Narrow, 11},
        {"OPPOSITION", ColumnKind::Narrow, 20}, {"SERVER", ColumnKind::Narrow, 11},
    };
    testing_support::ExpectLayout(rules::kContractRow, columns);
}

TEST(Statements, DecisionRowHoldsEveryColumn)
{
    const HistoryFacts facts = {kContract, kOrder, L"cert one;cert two", 2};

    EXPECT_EQ(Decision(facts, SampleDecision()),
              Insert(L"1,'2','PARTNER1',9,'SERVICE1','CLIENT1',42,'ORDER1',1,N'Ana Ruiz',"
                     L"N'Bo Dahl',N'reason : message',N'cert one;cert two',1500.500000,"
                     L"1000.000000,'C:\\in\\order.xml'"));
}

TEST(Statements, NamesLongerThan8CharactersAreCutInTheRow)
{
    const ContractKey longer = {3, 9, "EBICS", "PARTNER1x", "SERVICE1yy", "CLIENT123", true, false};
    const HistoryFacts facts = {longer, kOrder, L"cert one", 2};

    EXPECT_NE(Decision(facts, SampleDecision()).find(L"'PARTNER1',9,'SERVICE1','CLIENT12',42,"),
              std::wstring::npos);
}

TEST(Statements, NoRuleRowHasBlankSignersAndTheFindingAlone)
{
    const HistoryFacts facts = {kContract, kOrder, L"cert one", 2};

    EXPECT_EQ(HistoryInsertOf(facts, rules::FindingOfNoRule(L"nobody's rule")),
              Insert(L"1,'0','PARTNER1',9,'SERVICE1','CLIENT1',42,'ORDER1',0,N' ',N' ',"
                     L"N'nobody''s rule',N'cert one',1500.500000,1000.000000,"
                     L"'C:\\in\\order.xml'"));
}

TEST(Statements, MotifKeepsItsColonWhenATextIsEmpty)
{
    const HistoryFacts facts = {kContract, kOrder, L"c", 1};
    ruleSign decision = SampleDecision();
    decision.reasonText = L"";

    EXPECT_NE(Decision(facts, decision).find(L",N' : message',"), std::wstring::npos);
    decision.message = L"";
    EXPECT_NE(Decision(facts, decision).find(L",N' : ',"), std::wstring::npos);
}

TEST(Statements, QuotesInNamesReasonAndMessageAreDoubled)
{
    const HistoryFacts facts = {kContract, kOrder, L"c", 1};
    ruleSign decision = SampleDecision();
    decision.reasonText = L"it's";
    decision.message = L"'quoted'";
    decision.signer1 = {L"", L"O'Brien", L"Pat'"};
    decision.signer2 = {L"", L"D'Arc", L"J''"};

    EXPECT_NE(Decision(facts, decision)
                  .find(L",N'Pat'' O''Brien',N'J'''' D''Arc',N'it''s : ''quoted''',N'c',"),
              std::wstring::npos);
}

// The record keeps its own text: the verdict's reason is not the statement's.
TEST(Statements, DecisionKeepsItsTextsAsTheyWere)
{
    const HistoryFacts facts = {kContract, kOrder, L"c", 1};
    ruleSign decision = SampleDecision();
    decision.reasonText = L"it's";

    Decision(facts, decision);
    EXPECT_STREQ(decision.reasonText.SafeGetString(), L"it's");
}

TEST(Statements, SignerListAndNarrowTextsAreInsertedAsTheyStand)
{
    const OrderFacts order = {"o'ne.xml", "O'1", 1, 0.0, 0.0};
    const HistoryFacts facts = {kContract, order, L"Pat O'Brien", 1};
    const std::wstring row = Decision(facts, SampleDecision());

    EXPECT_NE(row.find(L",'O'1',"), std::wstring::npos);
    EXPECT_NE(row.find(L",N'Pat O'Brien',"), std::wstring::npos);
    EXPECT_NE(row.find(L",'o'ne.xml')"), std::wstring::npos);
}

TEST(Statements, HistoryTextsAreCutToTheirColumns)
{
    const std::string file(300, 'f');
    const OrderFacts order = {file.c_str(), "ORDER123456", 1, 0.0, 0.0};
    const std::wstring list(3000, L'c');
    const HistoryFacts facts = {kContract, order, list.c_str(), 1};
    ruleSign decision = SampleDecision();
    decision.signer1 = {L"", std::wstring(300, L'l').c_str(), std::wstring(300, L'f').c_str()};
    decision.reasonText = std::wstring(2000, L'r').c_str();

    EXPECT_EQ(Decision(facts, decision),
              Insert(L"1,'1','PARTNER1',9,'SERVICE1','CLIENT1',1,'ORDER12345',1,N'" +
                     std::wstring(255, L'f') + L" " + std::wstring(255, L'l') + L"',N'Bo Dahl',N'" +
                     std::wstring(1024, L'r') + L"',N'" + std::wstring(2048, L'c') +
                     L"',0.000000,0.000000,'" + std::wstring(256, L'f') + L"'"));
}

// Doubling comes first and the cut counts the doubled text, so that the literal stays open.
TEST(Statements, CutThroughADoubledQuoteLeavesASingleOne)
{
    const HistoryFacts facts = {kContract, kOrder, L"c", 1};
    ruleSign decision = SampleDecision();
    decision.signer1.firstName = (std::wstring(254, L'f') + L"'").c_str();
    EXPECT_NE(Decision(facts, decision).find(std::wstring(254, L'f') + L"' Ruiz'"),
              std::wstring::npos);

    decision = SampleDecision();
    decision.reasonText = (std::wstring(1023, L'r') + L"'").c_str();
    EXPECT_NE(Decision(facts, decision).find(std::wstring(1023, L'r') + L"'',N'c',"),
              std::wstring::npos);
}

TEST(Statements, NumbersOf32BitsAreRecordedWithoutSign)
{
    const ContractKey contract = {1, 0xFFFFFFFFU, "", "P", "S", "C", false, false};
    const OrderFacts order = {"f", "o", 0xFFFFFFFFU, 0.0, 0.0};
    const HistoryFacts facts = {contract, order, L"c", 2};
    ruleSign decision = SampleDecision();
    decision.controlType = -1;

    EXPECT_TRUE(Decision(facts, decision)
                    .find(L"0,'2','P',4294967295,'S','C',4294967295,'o',-1,N'Ana Ruiz',") !=
                std::wstring::npos);
}

TEST(Statements, NarrowTextsAreWindows1252)
{
    const ContractKey contract = {1, 9, "", "P\xE9", "S\x80", "C", true, false};
    const OrderFacts order = {"\xE9t\xE9.xml", "o\xE8", 1, 0.0, 0.0};
    const HistoryFacts facts = {contract, order, L"c", 1};
    const std::wstring row = Decision(facts, SampleDecision());

    EXPECT_NE(row.find(L"'P\u00E9',9,'S\u20AC','C',1,'o\u00E8',"), std::wstring::npos);
    EXPECT_TRUE(row.ends_with(L",'\u00E9t\u00E9.xml')"));
}

} // namespace
