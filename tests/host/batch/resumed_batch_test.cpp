// Runs that were cut off between the judgement of an order and its last line in the journal.

#include "host/batch/order_path.h"
#include "host/batch/progress_journal.h"
#include "tests/host/batch/batch_world.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>

namespace testing_support
{
namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

class ResumedBatch : public BatchTest
{
protected:
    /// Leaves the journal as a run does that is killed while it judges the order.
    void Begin(const std::string& name, long long after)
    {
        batch::ProgressJournal journal(m_orders.Path(".signcheck-progress"), "test");
        journal.Begin(name, *batch::VersionOf(m_orders.Path(name)), after);
    }

    void AddRow(const std::string& path, const std::wstring& statut, const std::wstring& total)
    {
        const std::wstring file(path.begin(), path.end());
        m_database.Execute(
            L"INSERT INTO HST_SIGNRULES (DATETIME, SERVER, STATUT, VPNAME, TYPE_PTC, "
            L"VFNAME, VCNAME, MOTIF, TOTAL, MAXORDER, FILENAME) VALUES "
            L"('2026-03-01 10:00:00', 1, '" +
            statut + L"', 'DUPONTSA', 9, 'CCT', 'TRESOR', 'AM02 : too much', " + total +
            L", 20.00, '" + file + L"')");
    }

    long long Newest()
    {
        const auto rows = m_database.Query(L"SELECT MAX(ROWNO) FROM HST_SIGNRULES");
        return rows.at(0).at(0) ? std::stoll(*rows.at(0).at(0)) : 0;
    }
};

TEST_F(ResumedBatch, TakesTheVerdictFromTheHistoryWhereItIsThere)
{
    Order("A001.xml");
    Begin("A001.xml", Newest());
    AddRow(Named("A001.xml"), L"2", L"350.50");

    const Answer answer = Batch({"--json"});

    EXPECT_EQ(answer.status, 1);
    const auto line = Lines(answer).at("A001.xml");
    EXPECT_EQ(line["recovered"], true);
    EXPECT_EQ(line["outcome"], "refused");
    EXPECT_EQ(line["reasonText"], "AM02 : too much");
    EXPECT_EQ(line["total"], 350.5);
    EXPECT_THAT(line["warnings"].at(0).get<std::string>(),
                HasSubstr("judged by a run that was cut off"));
    EXPECT_EQ(Lines(answer).at("")["summary"]["recovered"], 1);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1)));
    EXPECT_EQ(Lines(Batch({"--json"})).at("")["summary"]["judgedBefore"], 1);
}

TEST_F(ResumedBatch, JudgesWhatTheHistoryDoesNotHold)
{
    Order("A001.xml");
    Begin("A001.xml", Newest());

    const auto lines = Lines(Batch({"--json"}));

    EXPECT_EQ(lines.at("A001.xml")["recovered"], false);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1)));
}

TEST_F(ResumedBatch, TakesNoEarlierDecisionOnAFileOfThatNameForItsOwn)
{
    Order("A001.xml");
    AddRow(Named("A001.xml"), L"2", L"350.50");
    Begin("A001.xml", Newest());

    const auto lines = Lines(Batch({"--json"}));

    EXPECT_EQ(lines.at("A001.xml")["recovered"], false);
    EXPECT_EQ(lines.at("A001.xml")["outcome"], "success");
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 2)));
}

TEST_F(ResumedBatch, TakesNoDecisionOnAnotherFileForItsOwn)
{
    Order("A001.xml");
    Begin("A001.xml", Newest());
    AddRow(Named("a001.xml"), L"2", L"350.50");
    AddRow("A001.xml", L"2", L"350.50");

    EXPECT_EQ(Lines(Batch({"--json"})).at("A001.xml")["recovered"], false);
}

TEST_F(ResumedBatch, CallsAmountsThatTheHistoryDoesNotTellUnknown)
{
    Order("A001.xml");
    Begin("A001.xml", Newest());
    AddRow(Named("A001.xml"), L"1", L"0.00");

    const Answer answer = Batch({"--json"});

    EXPECT_EQ(answer.status, 4);
    EXPECT_EQ(Lines(answer).at("A001.xml")["amounts"], "unknown");
}

TEST_F(ResumedBatch, JudgesAFileThatWasReplacedMeanwhile)
{
    const std::string path = Order("A001.xml");
    Begin("A001.xml", Newest());
    AddRow(Named("A001.xml"), L"2", L"350.50");
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) +
                                               std::chrono::seconds(2));

    EXPECT_EQ(Lines(Batch({"--json"})).at("A001.xml")["recovered"], false);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 2)));
}

TEST_F(ResumedBatch, WaitsForNoOtherRunOfTheSameFolder)
{
    Order("A001.xml");
    const batch::ProgressJournal other(m_orders.Path(".signcheck-progress"), "signcheck watch");

    const Answer answer = Batch();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("is in use by another run (signcheck watch, process "));
    EXPECT_EQ(RecordsWritten(), 0U);
}

} // namespace
} // namespace testing_support
