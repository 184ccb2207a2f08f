// Faults of driver, database, tables, indexes and rights, planted and found with their remedies.

#include "database/connection_string.h"
#include "tests/host/doctor/doctor_bank.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using database::ConnectionString;
using database::Product;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class DoctorDatabase : public DoctorBank
{
};

TEST_F(DoctorDatabase, ThatIsSoundPassesEveryCheck)
{
    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 0) << answer.output;
    EXPECT_EQ(answer.errors, "");
    const nlohmann::json json = answer.Json();
    for (const auto& check : json["checks"])
    {
        EXPECT_EQ(check["result"], "ok") << check.dump();
        EXPECT_TRUE(check["remedy"].is_null()) << check.dump();
    }
    EXPECT_THAT(Told(answer, "database"), ElementsAre(HasSubstr("answered in")));
    EXPECT_THAT(Told(answer, "schema"), ElementsAre(HasSubstr("version 1, as this program")));
    EXPECT_THAT(Told(answer, "tables"), ElementsAre(HasSubstr("8 tables with all")));
    EXPECT_THAT(Told(answer, "clock"), ElementsAre(StartsWith("ok: ")));
}

TEST_F(DoctorDatabase, IsOnlyLookedAt)
{
    const auto before = AllTables();

    Doctor();

    EXPECT_EQ(AllTables(), before);
    EXPECT_TRUE(std::filesystem::is_empty(Utf8Path(m_folder.Path("spool"))));
    EXPECT_TRUE(std::filesystem::is_empty(Utf8Path(m_folder.Path("handoff"))));
    EXPECT_THAT(m_temporary.Left(), IsEmpty());
}

TEST_F(DoctorDatabase, OfADriverThatIsNotInstalledIsNotLookedAt)
{
    const Answer answer = DoctorOf("Driver=SQLite33;Database=bank.db");

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "driver"),
                ElementsAre(AllOf(StartsWith("failed: 'SQLite33' is not installed; installed are:"),
                                  HasSubstr("apt install libsqliteodbc"))));
    EXPECT_THAT(Told(answer, "database"), ElementsAre(StartsWith("not-looked-at: ")));
    EXPECT_THAT(Told(answer, "tables"), ElementsAre("not-looked-at: the database is not open | "));
    // What needs no database is looked at all the same.
    EXPECT_THAT(Told(answer, "engine"), ElementsAre(StartsWith("ok: ")));
}

TEST_F(DoctorDatabase, WhoseFileIsNotThereIsNotMade)
{
    const std::string missing = m_folder.Path("missing.db");

    const Answer answer = DoctorOf("Driver=SQLite3;Database=" + missing);

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "database"),
                ElementsAre(AllOf(StartsWith("failed: the database file "),
                                  HasSubstr("missing.db' is not there"),
                                  HasSubstr("signcheck init --db CONN"))));
    EXPECT_FALSE(std::filesystem::exists(Utf8Path(missing)));
}

TEST_F(DoctorDatabase, WhoseFileIsSomethingElseFails)
{
    const std::string file = m_folder.Write("letter.db", std::string(5000, 'x'));

    const Answer answer = DoctorOf("Driver=SQLite3;Database=" + file);

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, HasSubstr("\"failed\""));
    EXPECT_THAT(Told(answer, "engine"), ElementsAre(StartsWith("ok: ")));
}

TEST_F(DoctorDatabase, WithoutAConnectionStringFailsAndTheRestIsLookedAt)
{
    const Answer answer = RunSigncheck({"doctor", "--json"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "database"),
                ElementsAre(AllOf(StartsWith("failed: there is no connection string"),
                                  HasSubstr("SIGNCHECK_DB"))));
    EXPECT_THAT(Told(answer, "store"), ElementsAre(StartsWith("ok: ")));
}

TEST_F(DoctorDatabase, InMemoryFails)
{
    const Answer answer = DoctorOf("Driver=SQLite3;Database=:memory:");

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "database"), ElementsAre(HasSubstr("ends with this command")));
}

TEST_F(DoctorDatabase, WithoutATableIsToldWithTheCommandThatMakesIt)
{
    m_database.Execute(L"DROP TABLE SSR_HOLDERID");

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "tables"),
                ElementsAre(AllOf(StartsWith("failed: table SSR_HOLDERID is not there"),
                                  HasSubstr("signcheck init --db CONN"), HasSubstr("backup"))));
    EXPECT_THAT(Told(answer, "indexes"), ElementsAre(StartsWith("ok: ")));
    EXPECT_EQ(RunSigncheck({"init", "--db", Db()}).status, 0);
    EXPECT_EQ(Doctor().status, 0);
}

TEST_F(DoctorDatabase, WithoutAColumnIsToldWithItsDeclaration)
{
    m_database.Execute(L"ALTER TABLE SSR_HOLDER DROP COLUMN FNAME");

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "tables"),
                ElementsAre(AllOf(StartsWith("failed: table SSR_HOLDER lacks column FNAME"),
                                  HasSubstr("as declared: FNAME VARCHAR(255)"))));
    m_database.Execute(L"ALTER TABLE SSR_HOLDER ADD COLUMN FNAME VARCHAR(255)");
    EXPECT_EQ(Doctor().status, 0);
}

TEST_F(DoctorDatabase, WithoutAnIndexIsToldWithTheStatementThatMakesIt)
{
    m_database.Execute(ConnectedProduct() == Product::MariaDb
                           ? L"DROP INDEX SSR_CONTRACT_KEY ON SSR_CONTRACT"
                           : L"DROP INDEX SSR_CONTRACT_KEY");

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(
        Told(answer, "indexes"),
        ElementsAre(AllOf(StartsWith("warning: index SSR_CONTRACT_KEY is not there"),
                          HasSubstr("CREATE INDEX IF NOT EXISTS SSR_CONTRACT_KEY ON SSR_CONTRACT "
                                    "(VPNAME, VFNAME, VCNAME, PTC, SERVER)."))));
    EXPECT_EQ(RunSigncheck({"init", "--db", Db()}).status, 0);
    EXPECT_THAT(Told(Doctor(), "indexes"), ElementsAre(StartsWith("ok: ")));
}

TEST_F(DoctorDatabase, OfAnOlderOrNewerSchemaIsTold)
{
    m_database.Execute(L"DELETE FROM SSR_VERSION");
    Answer answer = Doctor();
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(Told(answer, "schema"),
                ElementsAre(AllOf(StartsWith("warning: no version is recorded"),
                                  HasSubstr("signcheck init --db CONN"))));

    m_database.Execute(L"INSERT INTO SSR_VERSION (VERSION, NAME) VALUES (999, '0999_future')");
    answer = Doctor();
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "schema"),
                ElementsAre(AllOf(StartsWith("failed: version 999, newer than version 1"),
                                  HasSubstr("Install a signcheck"))));
}

TEST_F(DoctorDatabase, ShowsNoPassword)
{
    const std::string connection = ConnectionString(Db()).With("PWD", "geheim123");

    const Answer answer = DoctorOf(connection);

    EXPECT_THAT(answer.output + answer.errors, Not(HasSubstr("geheim123")));
    EXPECT_THAT(Told(answer, "settings"),
                ElementsAre(AllOf(HasSubstr("on the command line holds a password"),
                                  HasSubstr("SIGNCHECK_DB"))));
}

TEST_F(DoctorDatabase, IsToldAsATableToo)
{
    const Answer answer = RunSigncheck({"doctor", "--db", Db()});

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, AllOf(StartsWith("RESULT  CHECK"), HasSubstr("\nOK      driver"),
                                     HasSubstr("\n0 failed, 0 warnings, ")));
    const Answer line = RunSigncheck({"doctor", "--db", Db(), "--format", "ndjson"});
    EXPECT_EQ(std::count(line.output.begin(), line.output.end(), '\n'), 1);
}

} // namespace
} // namespace testing_support
