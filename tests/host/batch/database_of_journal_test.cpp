// A journal is about one database: what was judged for it was judged for no other.

#include "host/batch/database_identity.h"
#include "host/batch/progress_journal.h"
#include "tests/host/batch/batch_world.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;

class DatabaseOfJournal : public BatchTest
{
protected:
    /// The batch of these tests, on another database.
    Answer BatchOn(const std::string& db, const std::vector<std::string>& more = {}) const
    {
        auto arguments = With(CheckOfFile(m_orders.Path(), "auto", "Élodie Lefèvre"), "--db", db);
        arguments[0] = "batch";
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }
};

TEST_F(DatabaseOfJournal, JudgesNothingForAnotherOneAndNamesTheRemedy)
{
    Order("A001.xml");
    EXPECT_EQ(Batch().status, 0);
    TestDatabase production;
    ASSERT_EQ(RunSigncheck({"init", "--db", production.ConnexionString(), "--sample"}).status, 0);

    const Answer refused = BatchOn(production.ConnexionString());

    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.errors, AllOf(HasSubstr("is that of the database '"),
                                      HasSubstr("a journal of its own with --journal")));
    EXPECT_THAT(production.Query(L"SELECT ROWNO FROM HST_SIGNRULES"), IsEmpty());

    const Answer own =
        BatchOn(production.ConnexionString(), {"--journal", m_folder.Path("production")});
    EXPECT_EQ(own.status, 0) << own.errors;
    EXPECT_EQ(production.Query(L"SELECT ROWNO FROM HST_SIGNRULES").size(), 1U);
    EXPECT_EQ(Lines(Batch({"--json"})).at("")["summary"]["judgedBefore"], 1);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1)));
}

TEST_F(DatabaseOfJournal, MayChangeWhileNoOrderWasJudged)
{
    EXPECT_EQ(Batch().status, 0);
    TestDatabase production;
    ASSERT_EQ(RunSigncheck({"init", "--db", production.ConnexionString(), "--sample"}).status, 0);
    Order("A001.xml");

    EXPECT_EQ(BatchOn(production.ConnexionString()).status, 0);
    EXPECT_EQ(Batch().status, 3);
}

TEST_F(DatabaseOfJournal, IsKeptWhereTheJournalIsWrittenAnew)
{
    const std::string path = m_folder.Path("long");
    {
        batch::ProgressJournal journal(path, "test");
        journal.RequireDatabase("Database=trial");
        for (int turn = 0; turn < 800; ++turn)
        {
            journal.Begin("A.xml", std::to_string(turn), turn, "asked");
            journal.Done("A.xml", std::to_string(turn), "success");
        }
        const auto before = std::filesystem::file_size(path);
        journal.Tidy([](const std::string&) { return true; });
        EXPECT_LT(std::filesystem::file_size(path), before);
    }
    batch::ProgressJournal journal(path, "test");

    EXPECT_NO_THROW(journal.RequireDatabase("Database=trial"));
    EXPECT_ANY_THROW(journal.RequireDatabase("Database=production"));
}

host::Connection Shown(const std::string& text)
{
    return {text, text, "option --db"};
}

TEST(IdentityOfADatabase, IsTheFileOfAnEmbeddedOneFromWhateverFolder)
{
    const TemporaryFolder folder;
    const std::string file = folder.Write("bank.db", "");
    std::filesystem::create_directory(folder.Path("in"));
    const auto of = [](const std::string& path)
    { return batch::DatabaseIdentity(Shown("Driver=SQLite3;Database=" + path)); };

    EXPECT_EQ(of(folder.Path("in/../bank.db")), of(file));
    EXPECT_NE(of(folder.Write("other.db", "")), of(file));
}

TEST(IdentityOfADatabase, IsTheTextOfAnotherProductWithItsPasswordMasked)
{
    EXPECT_EQ(batch::DatabaseIdentity(Shown("Driver=PG;Server=a;Database=bank;PWD=***")),
              "Driver=PG;Server=a;Database=bank;PWD=***");
}

} // namespace
} // namespace testing_support
