// Runs that were cut off between the judgement of an order and its last line in the journal.

#include "host/batch/asked.h"
#include "host/batch/history_reader.h"
#include "host/batch/order_path.h"
#include "host/batch/progress_journal.h"
#include "host/check_request.h"
#include "tests/host/batch/batch_world.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <utility>

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
    /// What batch asks of the order under the terms of these tests.
    host::CheckRequest Request(const std::string& name, const std::string& type = "1") const
    {
        host::OptionValues values;
        const std::pair<const char*, std::string> all[] = {
            {"file", Named(name)}, {"db", Db()},         {"partner", "DUPONTSA"},
            {"service", "CCT"},    {"client", "TRESOR"}, {"protocol", "9"},
            {"type", type},        {"format", "auto"},   {"signers", "Élodie Lefèvre"},
        };
        for (const auto& [option, text] : all)
        {
            values.AddUnlessThere(option, {text, option});
        }
        host::CheckRequest request = host::ReadCheckRequest(values);
        request.format = host::ReadOrderFormat(values, request.file);
        return request;
    }

    /// Leaves the journal as a run does that is killed while it judges the order.
    void Begin(const std::string& name, long long after, const std::string& type = "1")
    {
        batch::ProgressJournal journal(Journal(), "test");
        journal.Begin(name, *batch::VersionOf(m_orders.Path(name)), after,
                      batch::DigestOfAsked(Request(name, type)));
    }

    /// Writes a row of the order as the library does; `changed` has other values for some columns.
    void AddRow(const std::string& path, const std::wstring& statut, const std::wstring& total,
                const std::map<std::wstring, std::wstring>& changed = {})
    {
        std::map<std::wstring, std::wstring> row = {
            {L"DATETIME", L"'2026-03-01 10:00:00'"},
            {L"SERVER", L"1"},
            {L"STATUT", L"'" + statut + L"'"},
            {L"VPNAME", L"'DUPONTSA'"},
            {L"TYPE_PTC", L"9"},
            {L"VFNAME", L"'CCT'"},
            {L"VCNAME", L"'TRESOR'"},
            {L"ORDERID", L"''"},
            {L"MOTIF", L"'AM02 : too much'"},
            {L"CNS", L"'\u00C9lodie Lef\u00E8vre'"},
            {L"TOTAL", total},
            {L"MAXORDER", L"20.00"},
            {L"FILENAME", L"'" + std::wstring(path.begin(), path.end()) + L"'"},
        };
        std::wstring columns;
        std::wstring values;
        for (auto& [column, value] : row)
        {
            const auto other = changed.find(column);
            columns += (columns.empty() ? L"" : L", ") + column;
            values +=
                (values.empty() ? L"" : L", ") + (other == changed.end() ? value : other->second);
        }
        m_database.Execute(L"INSERT INTO HST_SIGNRULES (" + columns + L") VALUES (" + values +
                           L")");
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

TEST_F(ResumedBatch, JudgesAFileThatWasReplacedByOneOfTheSameSizeAndTime)
{
    const std::string path = Order("A001.xml");
    const auto changed = std::filesystem::last_write_time(path);
    Begin("A001.xml", Newest());
    AddRow(Named("A001.xml"), L"1", L"350.50");
    std::string larger = ReadWholeFile(path);
    const std::size_t amount = larger.find(">100.00<");
    ASSERT_NE(amount, std::string::npos);
    larger.replace(amount, 8, ">900.00<");
    m_orders.Write("A001.xml", larger);
    std::filesystem::last_write_time(path, changed);

    const auto line = Lines(Batch({"--json"})).at("A001.xml");

    EXPECT_EQ(line["recovered"], false);
    EXPECT_EQ(line["total"], 1150.5);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 2)));
}

TEST_F(ResumedBatch, TakesNoDecisionOnOtherTermsForItsOwn)
{
    const std::pair<const wchar_t*, const wchar_t*> others[] = {
        {L"VPNAME", L"'MARTINSA'"}, {L"VFNAME", L"'XCT'"},
        {L"VCNAME", L"'OTHER'"},    {L"TYPE_PTC", L"8"},
        {L"SERVER", L"0"},          {L"ORDERID", L"'A001'"},
        {L"CNS", L"'Paul Martin'"}, {L"CNS", L"'\u00C9lodie Lef\u00E8vre;Paul Martin'"}};
    int number = 0;
    for (const auto& [column, value] : others)
    {
        const std::string name = "A" + std::to_string(++number) + ".xml";
        Order(name);
        Begin(name, Newest());
        AddRow(Named(name), L"2", L"350.50", {{column, value}});

        const auto line = Lines(Batch({"--json"})).at(name);

        EXPECT_EQ(line["recovered"], false) << number;
        EXPECT_EQ(line["outcome"], "success") << number;
    }
}

TEST_F(ResumedBatch, TakesTheRowOfItsOwnTermsBehindThoseOfOthers)
{
    Order("A001.xml");
    Begin("A001.xml", Newest());
    AddRow(Named("A001.xml"), L"1", L"350.50", {{L"CNS", L"'Paul Martin'"}});
    AddRow(Named("A001.xml"), L"2", L"350.50");

    const auto line = Lines(Batch({"--json"})).at("A001.xml");

    EXPECT_EQ(line["recovered"], true);
    EXPECT_EQ(line["outcome"], "refused");
}

// The history does not tell the type of a contract; the journal does.
TEST_F(ResumedBatch, TakesNoDecisionThatWasAskedForUnderAnotherType)
{
    Order("A001.xml");
    Begin("A001.xml", Newest(), "2");
    AddRow(Named("A001.xml"), L"2", L"350.50");

    EXPECT_EQ(Lines(Batch({"--json"})).at("A001.xml")["recovered"], false);
}

TEST_F(ResumedBatch, TakesNoDecisionOnOtherAmountsThanThoseThatAreGiven)
{
    Order("A001.xml");
    host::CheckRequest request = Request("A001.xml");
    request.amountsFromFile = false;
    request.total = 350.5;
    request.largest = 20.0;
    const long long before = Newest();
    AddRow(Named("A001.xml"), L"2", L"350.51");
    batch::HistoryReader history(request.connection);
    history.Newest();

    EXPECT_FALSE(history.DecisionOn(request, before));
    AddRow(Named("A001.xml"), L"2", L"350.50");
    EXPECT_TRUE(history.DecisionOn(request, before));
    request.largest = 20.01;
    EXPECT_FALSE(history.DecisionOn(request, before));
}

TEST_F(ResumedBatch, TellsEveryDigitOfTheAmountsThatTheHistoryHas)
{
    Order("A001.xml");
    Begin("A001.xml", Newest());
    AddRow(Named("A001.xml"), L"2", L"123456789012.98754", {{L"MAXORDER", L"98765432109.876543"}});

    const auto line = Lines(Batch({"--json"})).at("A001.xml");

    EXPECT_EQ(line["recovered"], true);
    EXPECT_EQ(line["total"], 123456789012.98754);
    EXPECT_EQ(line["largestOrder"], 98765432109.876543);
}

TEST_F(ResumedBatch, TellsGivenAmountsOfManyDigitsApartByTheLastOne)
{
    Order("A001.xml");
    host::CheckRequest request = Request("A001.xml");
    request.amountsFromFile = false;
    request.total = 9876543210987.6543;
    request.largest = 20.0;
    const long long before = Newest();
    AddRow(Named("A001.xml"), L"2", L"9876543210987.6643");
    batch::HistoryReader history(request.connection);
    history.Newest();

    EXPECT_FALSE(history.DecisionOn(request, before));
    AddRow(Named("A001.xml"), L"2", L"9876543210987.6543");
    const auto decision = history.DecisionOn(request, before);
    ASSERT_TRUE(decision.has_value());
    EXPECT_EQ(decision->total, request.total);
}

TEST_F(ResumedBatch, WaitsForNoOtherRunOfTheSameFolder)
{
    Order("A001.xml");
    const batch::ProgressJournal other(Journal(), "signcheck watch");

    const Answer answer = Batch();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("is in use by another run (signcheck watch, process "));
    EXPECT_EQ(RecordsWritten(), 0U);
}

} // namespace
} // namespace testing_support
