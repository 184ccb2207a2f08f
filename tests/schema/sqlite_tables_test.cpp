#include "tests/testing/bank.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing_support::Bank;
using testing_support::Contract;
using testing_support::Holder;
using testing_support::Row;
using testing_support::TestDatabase;

namespace
{

constexpr const wchar_t* kRuleQuery =
    L"SELECT C.CUID, VPNAME, PROTOCOL, SERVER, VFNAME, VCNAME, TYPE, C.PROFILE, C.ALLHOLDERS, "
    L"C.OPPOSITION, R.HUID1, R.HUID2, R.ALONE, R.AMOUNT, R.TLEVEL FROM SSR_CONTRACTCUR C, "
    L"SSR_CONTRACTRULE R WHERE TYPE=1 AND C.CUID IS NOT NULL AND C.CUID = R.CUID AND "
    L"C.VPNAME='PARTNER1' AND C.VFNAME='SERVICE1' AND C.VCNAME='CLIENT1' AND C.PROTOCOL=9 AND "
    L"SERVER=1";

constexpr const wchar_t* kHolderColumns =
    L"SELECT H.HUID, VPNAME, FNAME, LNAME, OPPOSITION, CN, SERIAL, EXPIRDATE FROM SSR_HOLDER H, "
    L"SSR_HOLDERID I WHERE H.HUID=I.HUID AND H.HUID='H1' AND (";

struct StatementInUse
{
    const char* name;
    std::wstring text;
};

std::vector<StatementInUse> Queries()
{
    return {
        {"Rules", kRuleQuery},
        {"ContractWithoutRules",
         L"SELECT CUID, VPNAME, PTC, VFNAME, VCNAME, ALLHOLDERS, OPPOSITION, SERVER FROM "
         L"SSR_CONTRACT WHERE VPNAME='P' AND VFNAME='F' AND VCNAME='C' AND PTC=9 AND SERVER=1"},
        {"HoldersOfACertificate",
         L"SELECT H.HUID, H.VPNAME, H.FNAME, H.LNAME, H.OPPOSITION, I.CN, I.SERIAL, I.EXPIRDATE "
         L"FROM SSR_HOLDER H, SSR_HOLDERID I WHERE H.HUID=I.HUID AND LOWER(I.CN) = LOWER('Ana')"},
        {"OneCertificateOfAHolder", std::wstring(kHolderColumns) + L"LOWER(CN) = LOWER('Ana'))"},
        {"CertificatesOfAHolder", std::wstring(kHolderColumns) +
                                      L"LOWER(CN) = LOWER('Ana') OR LOWER(CN) = LOWER('Eva') OR "
                                      L"LOWER(CN) = LOWER('Lea'))"},
        {"EventDeliveredBefore", L"SELECT EVENTKEY FROM EVT_JOURNAL WHERE EVENTKEY='K'"},
        {"Version", L"SELECT MAX(VERSION) AS NEWEST FROM SSR_VERSION"},
        {"SampleHolder", L"SELECT HUID FROM SSR_HOLDER WHERE HUID='H1'"},
        {"SampleContract", L"SELECT CUID FROM SSR_CONTRACT WHERE CUID='C1'"},
    };
}

constexpr const wchar_t* kHistoryInsert =
    L"INSERT INTO HST_SIGNRULES (DATETIME,SERVER,STATUT,VPNAME,TYPE_PTC,VFNAME,VCNAME,IDFICVFS,"
    L"ORDERID,TYPE_CTRL,SIGNER1,SIGNER2,MOTIF,CNS,TOTAL,MAXORDER,FILENAME) VALUES "
    L"('2024-05-06 07:08:09',1,'1','PARTNER1',4294967295,'SERVICE1','CLIENT1',4294967295,"
    L"'ORDER00001',0,'Ana Ruiz',' ','m','Ana Ruiz',1000.500000,10.000000,'pain.xml')";

std::wstring EventInsert(const std::wstring& key)
{
    return L"INSERT INTO EVT_JOURNAL (EVENTKEY,DATETIME,SOURCE,LEVEL,REFERENCE,AUX1,AUX2,TEXT,"
           L"ATTACHKIND,ATTACHPATH) VALUES ('" +
           key + L"','2024-05-06 07:08:09','RULSGN',65535,NULL,NULL,NULL,'t','','')";
}

/// What the planner says of each step.
std::vector<std::string> PlanOf(TestDatabase& database, const std::wstring& statement)
{
    std::vector<std::string> steps;
    for (const Row& row : database.Query(L"EXPLAIN QUERY PLAN " + statement))
    {
        const std::wstring detail = row.back().value_or(L"");
        steps.emplace_back(detail.begin(), detail.end());
    }
    return steps;
}

void ExpectNoScan(TestDatabase& database)
{
    for (const StatementInUse& query : Queries())
    {
        SCOPED_TRACE(query.name);
        const auto steps = PlanOf(database, query.text);
        EXPECT_THAT(steps, Not(IsEmpty()));
        EXPECT_THAT(steps, testing::Each(Not(StartsWith("SCAN"))));
    }
    EXPECT_THAT(PlanOf(database, kHistoryInsert), testing::Each(Not(StartsWith("SCAN"))));
    EXPECT_THAT(PlanOf(database, EventInsert(L"K")), testing::Each(Not(StartsWith("SCAN"))));
}

/// Contracts and holders enough for the statistics to matter.
void FillBank(TestDatabase& database)
{
    Bank bank(database);
    database.Execute(L"BEGIN");
    for (int number = 0; number < 200; ++number)
    {
        const std::wstring key = std::to_wstring(number);
        bank.With(Holder(L"H" + key).Certificate(L"Name " + key).Certificate(L"Other " + key));
        Contract contract(L"C" + key);
        contract.vpname = L"P" + std::to_wstring(number % 20);
        contract.AloneBy(L"H" + key).By(L"H" + key, L"H1");
        bank.With(contract);
    }
    database.Execute(L"COMMIT");
}

void AddRule(TestDatabase& database, const std::wstring& contract, const std::wstring& amount)
{
    database.Execute(L"INSERT INTO SSR_CONTRACTRULE (CUID, HUID1, HUID2, ALONE, AMOUNT, TLEVEL) "
                     L"VALUES ('" +
                     contract + L"', 'H1', '', 1, '" + amount + L"', 0)");
}

} // namespace

TEST(SqlitePlans, NoStatementInUseScansATable)
{
    TestDatabase database;
    ExpectNoScan(database);
}

TEST(SqlitePlans, NoStatementInUseScansATableWhenStatisticsWereGathered)
{
    TestDatabase database;
    FillBank(database);
    database.Execute(L"ANALYZE");
    ExpectNoScan(database);
}

TEST(SqlitePlans, EveryIndexServesAStatementInUse)
{
    TestDatabase database;
    std::string plans;
    for (const StatementInUse& query : Queries())
    {
        for (const std::string& step : PlanOf(database, query.text))
        {
            plans += step + "\n";
        }
    }
    const auto indexes = database.Query(L"SELECT name FROM sqlite_master WHERE type = 'index'");
    EXPECT_EQ(indexes.size(), 8U);
    for (const Row& row : indexes)
    {
        const std::string name(row[0]->begin(), row[0]->end());
        EXPECT_THAT(plans, testing::HasSubstr("INDEX " + name + " "));
    }
}

TEST(SqliteTables, RulesComeInTheOrderOfTheirInsertion)
{
    TestDatabase database;
    Bank bank(database);
    bank.With(Contract(L"Z1").AloneBy(L"H1").UpTo(L"50"));
    for (const wchar_t* other : {L"A1", L"ZZ", L"M1"})
    {
        Contract contract(other);
        contract.vcname = L"OTHER";
        bank.With(contract.AloneBy(L"H2"));
    }
    AddRule(database, L"A1", L"1");
    AddRule(database, L"Z1", L"9");
    AddRule(database, L"ZZ", L"2");
    AddRule(database, L"Z1", L"10");
    AddRule(database, L"M1", L"3");
    AddRule(database, L"Z1", L"1");

    std::vector<std::wstring> amounts;
    for (const Row& row : database.Query(kRuleQuery))
    {
        amounts.push_back(row[13].value_or(L""));
    }

    EXPECT_THAT(amounts, ElementsAre(L"50", L"9", L"10", L"1"));
}

TEST(SqliteTables, HoldersOfOneCertificateComeInTheOrderOfTheirInsertion)
{
    TestDatabase database;
    Bank(database)
        .With(Holder(L"Z").Certificate(L"Shared Name"))
        .With(Holder(L"B").Certificate(L"Another Name"))
        .With(Holder(L"A").Certificate(L"SHARED NAME"));

    EXPECT_THAT(database.Query(L"SELECT H.HUID FROM SSR_HOLDER H, SSR_HOLDERID I WHERE "
                               L"H.HUID=I.HUID AND LOWER(I.CN) = LOWER('shared name')"),
                ElementsAre(Row{L"Z"}, Row{L"A"}));
}

TEST(SqliteTables, IdentifiersCompareByteForByteAndWithoutPadding)
{
    TestDatabase database;
    Bank bank(database);
    for (const wchar_t* key : {L"h1", L"H1", L"H1 "})
    {
        bank.With(Holder(key));
    }

    EXPECT_THAT(database.Query(L"SELECT HUID FROM SSR_HOLDER WHERE HUID='H1'"),
                ElementsAre(Row{L"H1"}));
    for (const wchar_t* name : {L"PARTNER1", L"partner1", L"PARTNER1 "})
    {
        Contract contract(name);
        contract.vpname = name;
        bank.With(contract.AloneBy(L"H1"));
    }
    EXPECT_EQ(database.Query(kRuleQuery).size(), 1U);
}

TEST(SqliteTables, DeclareTheLengthsOfTheirTexts)
{
    TestDatabase database;

    EXPECT_THAT(database.Query(L"SELECT name, type FROM pragma_table_info('SSR_HOLDERID')"),
                ElementsAre(Row{L"HUID", L"VARCHAR(64)"}, Row{L"CN", L"VARCHAR(255)"},
                            Row{L"SERIAL", L"VARCHAR(64)"}, Row{L"EXPIRDATE", L"DATE"}));
    EXPECT_THAT(database.Query(L"SELECT name, type FROM pragma_table_info('HST_SIGNRULES') WHERE "
                               L"name IN ('SIGNER1', 'MOTIF', 'CNS', 'FILENAME', 'ORDERID')"),
                ElementsAre(Row{L"ORDERID", L"VARCHAR(10)"}, Row{L"SIGNER1", L"VARCHAR(511)"},
                            Row{L"MOTIF", L"VARCHAR(1024)"}, Row{L"CNS", L"VARCHAR(2048)"},
                            Row{L"FILENAME", L"VARCHAR(256)"}));
}

TEST(SqliteTables, EveryIndexComparesBytes)
{
    TestDatabase database;
    EXPECT_THAT(database.Query(L"SELECT DISTINCT x.coll FROM sqlite_master m, "
                               L"pragma_index_xinfo(m.name) x WHERE m.type = 'index'"),
                ElementsAre(Row{L"BINARY"}));
}

TEST(SqliteTables, HistoryRowsAreNumberedInTheOrderOfTheirInsertionAndNeverAgain)
{
    TestDatabase database;
    for (int row = 0; row < 3; ++row)
    {
        database.Execute(kHistoryInsert);
    }
    database.Execute(L"DELETE FROM HST_SIGNRULES WHERE ROWNO > 1");
    database.Execute(kHistoryInsert);

    EXPECT_THAT(database.Query(L"SELECT ROWNO, STATUT, TYPE_PTC, IDFICVFS FROM HST_SIGNRULES "
                               L"ORDER BY ROWNO"),
                ElementsAre(Row{L"1", L"1", L"4294967295", L"4294967295"},
                            Row{L"4", L"1", L"4294967295", L"4294967295"}));
}

TEST(SqliteTables, AnEventIsNumberedByTheDatabaseAndStoredOnce)
{
    TestDatabase database;
    database.Execute(EventInsert(L"K1"));
    EXPECT_NONFATAL_FAILURE(database.Execute(EventInsert(L"K1")), "UNIQUE constraint failed");
    database.Execute(EventInsert(L"K2"));

    EXPECT_THAT(
        database.Query(L"SELECT EVENTKEY, LEVEL, REFERENCE FROM EVT_JOURNAL"),
        ElementsAre(Row{L"K1", L"65535", std::nullopt}, Row{L"K2", L"65535", std::nullopt}));
}
