// Copies of rule books and what the library decides on them.

#include "database/cdatabase.h"
#include "host/refusal.h"
#include "host/rulebook/rule_book_reader.h"
#include "host/scratch/judge.h"
#include "tests/host/authority/temporary_files_in.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>

#include <csignal>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Scratch : public SampleBankTest
{
protected:
    Scratch()
    {
        m_where = {Db(), "the bank", "option --db"};
        m_source.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        m_book = rulebook::ReadRuleBook(m_source, {"C-7001", std::nullopt});
    }

    scratch::OrderKind Kind() const { return {m_book.contracts.front().terms.front().key, 1}; }

    host::Connection m_where;
    CDatabase m_source;
    rulebook::RuleBook m_book;
};

std::vector<std::string> NamesIn(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(Utf8Path(folder)))
    {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

TEST_F(Scratch, LiesInAFileThatTellsWhenItWasMadeAndGoesWithTheCopy)
{
    const TemporaryFolder copies;
    const TemporaryFilesIn folder(copies.Path());
    {
        const scratch::Copy copy(m_source, m_where, m_book);

        const auto names = NamesIn(copies.Path());
        ASSERT_EQ(names.size(), 1U);
        EXPECT_THAT(names[0], StartsWith("signcheck_scratch_20"));
        EXPECT_THAT(copy.Provenance(), HasSubstr("a SQLite file of its own"));
    }
    EXPECT_THAT(NamesIn(copies.Path()), IsEmpty());
}

TEST_F(Scratch, HoldsTheSameRuleBook)
{
    const scratch::Copy copy(m_source, m_where, m_book);

    CDatabase database;
    database.OpenEx(copy.Where().text.c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    EXPECT_EQ(rulebook::ReadRuleBook(database), m_book);
}

TEST_F(Scratch, IsJudgedAsOftenAsAskedWithoutATraceInTheBank)
{
    const scratch::Copy copy(m_source, m_where, m_book);
    scratch::Judge judge(copy, Kind());

    EXPECT_EQ(judge.Ask({{"Björn Weiß"}, 5000.0, 5000.0, false}).verdict, scratch::kAccepted);
    const scratch::Decision refused = judge.Ask({{"Björn Weiß"}, 5000.01, 1.0, false});
    EXPECT_EQ(refused.verdict, scratch::kRefused);
    EXPECT_EQ(refused.reasonCode, "AM02");
    EXPECT_THAT(refused.reasonText, HasSubstr("5000.01"));
    EXPECT_EQ(judge.Ask({{}, 1.0, 1.0, true}).verdict, scratch::kNoRule);
    EXPECT_EQ(judge.Count(), 3U);
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(Scratch, IsNotBelievedWhereAHolderCouldNotBeLookedUp)
{
    const scratch::Copy copy(m_source, m_where, m_book);
    scratch::Judge judge(copy, Kind());
    const scratch::Order order = {{"Ana Ruiz"}, 1.0, 1.0, false};
    EXPECT_EQ(judge.Ask(order).verdict, scratch::kNoRule);
    // A name that no statement carries is one that no order can be signed with, either.
    EXPECT_EQ(judge.Ask({{"O'Brien"}, 1.0, 1.0, false}).verdict, scratch::kNoRule);

    CDatabase database;
    database.OpenEx(copy.Where().text.c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    database.ExecuteSQLW(L"DROP TABLE SSR_HOLDERID");
    database.Close();

    EXPECT_THROW(judge.Ask(order), host::Refusal);
}

TEST_F(Scratch, TracesWhatTheLibraryDid)
{
    const scratch::Copy copy(m_source, m_where, m_book);
    std::string trace;

    scratch::Judge(copy, Kind()).AskTraced({{"Björn Weiß"}, 9000.0, 1.0, false}, trace);

    EXPECT_THAT(trace, AllOf(HasSubstr("#RULE2 FAILED"), HasSubstr("CHECK CONTRACTS RULE #1")));
}

TEST_F(Scratch, SaysWhereItCannotBeWritten)
{
    const TemporaryFilesIn folder(m_folder.Path("missing"));

    try
    {
        const scratch::Copy copy(m_source, m_where, m_book);
        ADD_FAILURE() << "made in a folder that is not there";
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_EQ(refusal.Status(), host::kCouldNotRun);
        EXPECT_THAT(refusal.what(), AllOf(HasSubstr("missing"), HasSubstr("cannot be written")));
    }
}

TEST_F(Scratch, IsNeverWrittenOverRulesThatAreInUse)
{
    try
    {
        scratch::RequireEmptyPlace(m_source, m_where);
        ADD_FAILURE() << "took the bank for an empty place";
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_EQ(refusal.Status(), host::kCouldNotRun);
        EXPECT_THAT(refusal.what(), AllOf(HasSubstr("'the bank'"), HasSubstr("in use")));
    }
}

TEST_F(Scratch, GoesWhenTheCommandIsInterrupted)
{
    for (const int number : {SIGINT, SIGTERM})
    {
        const TemporaryFolder copies;
        const TemporaryFilesIn folder(copies.Path());
        {
            // Shells have what they start in the background ignore an interruption.
            std::signal(number, SIG_DFL);
            const scratch::Copy copy(m_source, m_where, m_book);
            scratch::Judge judge(copy, Kind());
            judge.Ask({{}, 1.0, 1.0, true});

            ASSERT_EQ(std::raise(number), 0);

            EXPECT_THROW(judge.Ask({{}, 1.0, 1.0, true}), host::Refusal);
        }
        EXPECT_THAT(NamesIn(copies.Path()), IsEmpty());
        const scratch::Copy next(m_source, m_where, m_book);
        EXPECT_NO_THROW(scratch::Judge(next, Kind()).Ask({{}, 1.0, 1.0, true}));
    }
}

TEST_F(Scratch, RefusesAContractThatNoCheckCanName)
{
    const scratch::Copy copy(m_source, m_where, m_book);
    scratch::OrderKind kind = Kind();
    kind.contract.vcname = "FINANZEN2";

    EXPECT_THROW(scratch::Judge(copy, kind), host::Refusal);
}

} // namespace
} // namespace testing_support
