#include "schema/installer.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "tests/testing/bank.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using schema::InstallReport;
using schema::Script;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::Bank;
using testing_support::Holder;
using testing_support::Row;
using testing_support::TestDatabase;

namespace
{

/// A database to install into; it has the tables until they are taken away.
class Installer : public testing::Test
{
protected:
    Installer() { m_library.OpenEx(m_database.ConnexionString().c_str(), kOptions); }

    void TakeAllTablesAway()
    {
        for (const std::string& table : schema::TableNames())
        {
            m_database.Execute(L"DROP TABLE " + std::wstring(table.begin(), table.end()));
        }
    }

    std::string RefusalOfInstall()
    {
        try
        {
            schema::Install(m_library);
        }
        catch (const schema::SchemaError& refusal)
        {
            return refusal.what();
        }
        return "installed";
    }

    std::vector<Row> Tables()
    {
        return m_database.Query(L"SELECT name FROM sqlite_master WHERE type = 'table' AND name "
                                L"NOT LIKE 'sqlite%' ORDER BY name");
    }

    std::vector<Row> Versions()
    {
        return m_database.Query(L"SELECT VERSION, NAME FROM SSR_VERSION ORDER BY VERSION");
    }

    /// The project's scripts and one more, which can be run only once.
    static std::vector<Script> WithNextStep(const std::wstring& statements)
    {
        std::vector<Script> scripts = schema::UpgradeScripts(schema::Product::SQLite);
        const int next = static_cast<int>(scripts.size()) + 1;
        scripts.push_back(Script{next, L"next_step", statements});
        return scripts;
    }

    static constexpr std::uint32_t kOptions = CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog;
    static constexpr const wchar_t* kAddRemark =
        L"ALTER TABLE SSR_HOLDER ADD COLUMN REMARK VARCHAR(10);\n"
        L"UPDATE SSR_HOLDER SET REMARK = 'old';\n"
        L"CREATE INDEX IF NOT EXISTS SSR_HOLDER_REMARK ON SSR_HOLDER (REMARK);\n";

    TestDatabase m_database;
    CDatabase m_library;
};

} // namespace

TEST_F(Installer, CreatesEveryTableInAnEmptyDatabase)
{
    const auto tables = Tables();
    TakeAllTablesAway();
    ASSERT_THAT(Tables(), IsEmpty());
    EXPECT_EQ(schema::InstalledVersion(m_library), 0);

    const InstallReport report = schema::Install(m_library);

    EXPECT_EQ(report.foundVersion, 0);
    EXPECT_EQ(report.version, schema::CurrentVersion());
    EXPECT_EQ(report.createdTables.size(), schema::TableNames().size());
    EXPECT_EQ(report.Text(),
              "no schema was found; version 1 was installed, tables created: EVT_JOURNAL, "
              "HST_SIGNRULES, SSR_CONTRACT, SSR_CONTRACTCUR, SSR_CONTRACTRULE, SSR_HOLDER, "
              "SSR_HOLDERID, SSR_VERSION");
    EXPECT_EQ(Tables(), tables);
}

TEST_F(Installer, RecordsTheVersionInARow)
{
    TakeAllTablesAway();
    schema::Install(m_library);

    EXPECT_THAT(Versions(), ElementsAre(Row{L"1", L"0001_initial"}));
    EXPECT_EQ(schema::InstalledVersion(m_library), 1);
    EXPECT_EQ(schema::CurrentVersion(), 1);
}

TEST_F(Installer, CanBeRepeatedAndKeepsWhatIsThere)
{
    TakeAllTablesAway();
    schema::Install(m_library);
    Bank(m_database).With(Holder(L"H1").Certificate(L"Ana Ruiz"));

    const InstallReport again = schema::Install(m_library);

    EXPECT_EQ(again.foundVersion, 1);
    EXPECT_EQ(again.version, 1);
    EXPECT_THAT(again.createdTables, IsEmpty());
    EXPECT_EQ(again.Text(), "the schema is up to date, version 1");
    EXPECT_EQ(Versions().size(), 1U);
    EXPECT_EQ(m_database.Query(L"SELECT HUID FROM SSR_HOLDERID").size(), 1U);
}

TEST_F(Installer, CreatesWhatIsMissingFromAnInstalledSchema)
{
    const auto indexes = L"SELECT name FROM sqlite_master WHERE type = 'index' ORDER BY name";
    const auto before = m_database.Query(indexes);
    m_database.Execute(L"DROP TABLE HST_SIGNRULES");
    m_database.Execute(L"DROP INDEX SSR_CONTRACTRULE_CUID");

    const InstallReport report = schema::Install(m_library);

    EXPECT_THAT(report.createdTables, ElementsAre("HST_SIGNRULES"));
    EXPECT_EQ(report.Text(), "the schema is version 1; missing tables were created: HST_SIGNRULES");
    EXPECT_EQ(m_database.Query(indexes), before);
}

TEST_F(Installer, FinishesAnInstallationThatRecordedNoVersion)
{
    m_database.Execute(L"DELETE FROM SSR_VERSION");
    m_database.Execute(L"DROP TABLE EVT_JOURNAL");
    Bank(m_database).With(Holder(L"H1"));

    const InstallReport report = schema::Install(m_library);

    EXPECT_EQ(report.foundVersion, 0);
    EXPECT_THAT(report.createdTables, ElementsAre("EVT_JOURNAL"));
    EXPECT_THAT(report.Text(),
                HasSubstr("tables created: EVT_JOURNAL; tables that were there already: "
                          "HST_SIGNRULES, SSR_CONTRACT, SSR_CONTRACTCUR, SSR_CONTRACTRULE, "
                          "SSR_HOLDER, SSR_HOLDERID, SSR_VERSION"));
    EXPECT_EQ(Versions().size(), 1U);
    EXPECT_EQ(m_database.Query(L"SELECT HUID FROM SSR_HOLDER").size(), 1U);
}

TEST_F(Installer, UpgradesAnOlderSchemaAndKeepsItsRows)
{
    Bank(m_database).With(Holder(L"H1"));

    const InstallReport report = schema::Install(m_library, WithNextStep(kAddRemark));

    EXPECT_EQ(report.foundVersion, 1);
    EXPECT_EQ(report.version, 2);
    EXPECT_EQ(report.Text(), "the schema was upgraded from version 1 to 2");
    EXPECT_THAT(Versions(), ElementsAre(Row{L"1", L"0001_initial"}, Row{L"2", L"next_step"}));
    EXPECT_THAT(m_database.Query(L"SELECT HUID, REMARK FROM SSR_HOLDER"),
                ElementsAre(Row{L"H1", L"old"}));
}

TEST_F(Installer, RunsAnUpgradeOnlyOnce)
{
    Bank(m_database).With(Holder(L"H1"));
    schema::Install(m_library, WithNextStep(kAddRemark));
    m_database.Execute(L"UPDATE SSR_HOLDER SET REMARK = 'new'");
    m_database.Execute(L"DROP INDEX SSR_HOLDER_REMARK");

    const InstallReport again = schema::Install(m_library, WithNextStep(kAddRemark));

    EXPECT_EQ(again.Text(), "the schema is up to date, version 2");
    EXPECT_THAT(m_database.Query(L"SELECT REMARK FROM SSR_HOLDER"), ElementsAre(Row{L"new"}));
    EXPECT_EQ(
        m_database.Query(L"SELECT name FROM sqlite_master WHERE name = 'SSR_HOLDER_REMARK'").size(),
        1U);
}

TEST_F(Installer, InstallsEveryStepInAnEmptyDatabaseInOrder)
{
    TakeAllTablesAway();

    const InstallReport report = schema::Install(m_library, WithNextStep(kAddRemark));

    EXPECT_EQ(report.foundVersion, 0);
    EXPECT_EQ(report.version, 2);
    EXPECT_EQ(Versions().size(), 2U);
    EXPECT_THAT(m_database.Query(L"SELECT REMARK FROM SSR_HOLDER"), IsEmpty());
}

TEST_F(Installer, LeavesNothingOfAnUpgradeThatFails)
{
    bool raised = false;
    database::GuardDatabase(
        [this]
        {
            schema::Install(m_library, WithNextStep(L"CREATE TABLE SSR_NEW (A INTEGER);\n"
                                                    L"INSERT INTO SSR_NOWHERE VALUES (1);\n"));
        },
        [&raised](const CDBException&) { raised = true; }, [] {});

    EXPECT_TRUE(raised);
    EXPECT_EQ(Versions().size(), 1U);
    EXPECT_EQ(Tables().size(), schema::TableNames().size());
}

TEST_F(Installer, RefusesANewerSchemaAndChangesNothing)
{
    m_database.Execute(L"INSERT INTO SSR_VERSION (VERSION, NAME) VALUES (7, '0007_later')");
    m_database.Execute(L"DROP TABLE HST_SIGNRULES");

    try
    {
        schema::Install(m_library);
        FAIL() << "a newer schema was taken";
    }
    catch (const schema::SchemaError& refusal)
    {
        EXPECT_STREQ(refusal.what(), "the database has schema version 7, newer than version 1 of "
                                     "this program; use a newer program");
    }
    EXPECT_EQ(Tables().size(), schema::TableNames().size() - 1);
    EXPECT_EQ(Versions().size(), 2U);
}

TEST_F(Installer, RefusesATableOfOurNameWithoutOurColumnsAndChangesNothing)
{
    for (const std::string& table : schema::TableNames())
    {
        TakeAllTablesAway();
        m_database.Execute(L"CREATE TABLE " + std::wstring(table.begin(), table.end()) +
                           L" (x INTEGER)");

        EXPECT_THAT(RefusalOfInstall(), HasSubstr("the table " + table +
                                                  " was there already, and these of its "
                                                  "columns are missing or cannot be read: "));

        EXPECT_EQ(Tables().size(), 1U);
        m_database.Execute(L"DROP TABLE " + std::wstring(table.begin(), table.end()));
        schema::Install(m_library);
    }
}

TEST_F(Installer, NamesTheColumnsThatAForeignTableLacks)
{
    TakeAllTablesAway();
    m_database.Execute(L"CREATE TABLE SSR_HOLDER (HUID VARCHAR(64), LNAME VARCHAR(255), "
                       L"VPNAME VARCHAR(8))");

    EXPECT_EQ(RefusalOfInstall(),
              "the table SSR_HOLDER was there already, and these of its columns are missing or "
              "cannot be read: FNAME, OPPOSITION; rename that table, or use another database");
    EXPECT_EQ(Tables().size(), 1U);
}

TEST_F(Installer, WritesTheTablesThatTheTestsUse)
{
    const auto definitions = L"SELECT sql FROM sqlite_master WHERE sql IS NOT NULL AND name NOT "
                             L"LIKE 'sqlite%' ORDER BY name";
    const auto before = m_database.Query(definitions);
    TakeAllTablesAway();

    schema::Install(m_library);

    EXPECT_EQ(m_database.Query(definitions), before);
}
