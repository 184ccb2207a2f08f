// signcheck batch: what it judges, tells and leaves behind.

#include "host/order_lock.h"
#include "tests/host/batch/batch_world.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

namespace fs = std::filesystem;

class ManyOrders : public BatchTest
{
};

TEST_F(ManyOrders, JudgesEveryOrderOfAFolderOnce)
{
    Order("A001.xml");
    Order("A002.xml");
    Order("A003.xml");

    const Answer answer = Batch({"--json", "--jobs", "2"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors, "");
    const auto lines = Lines(answer);
    ASSERT_EQ(lines.size(), 4U);
    const auto& first = lines.at("A001.xml");
    EXPECT_EQ(first["outcome"], "success");
    EXPECT_EQ(first["verdict"], 1);
    EXPECT_EQ(first["total"], 350.5);
    EXPECT_EQ(first["status"], 0);
    EXPECT_EQ(first["recovered"], false);
    EXPECT_EQ(first["file"], Named("A001.xml"));
    const auto& summary = lines.at("")["summary"];
    EXPECT_EQ(summary["accepted"], 3);
    EXPECT_EQ(summary["left"], 0);
    EXPECT_EQ(summary["status"], 0);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1), Pair("A002.xml", 1), Pair("A003.xml", 1)));
    EXPECT_THAT(NamesInFolder(), ElementsAre("A001.xml", "A002.xml", "A003.xml"));
}

TEST_F(ManyOrders, JudgesNoOrderASecondTime)
{
    Order("A001.xml");
    Batch();
    Order("A002.xml");

    const Answer answer = Batch({"--json"});

    EXPECT_THAT(Lines(answer), testing::SizeIs(2));
    EXPECT_EQ(Lines(answer).at("")["summary"]["judgedBefore"], 1);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1), Pair("A002.xml", 1)));
}

TEST_F(ManyOrders, AreToldInTheOutputFormatThatIsAskedFor)
{
    Order("A001.xml");

    for (const std::string format : {"ndjson", "json"})
    {
        const Answer answer =
            Batch({"--journal", m_folder.Path(format), "--output-format", format});
        EXPECT_EQ(answer.status, 0) << answer.errors;
        EXPECT_EQ(Lines(answer).at("A001.xml")["verdict"], 1);
        EXPECT_EQ(Lines(answer).at("")["summary"]["accepted"], 1);
    }
    EXPECT_THAT(Batch({"--journal", m_folder.Path("table"), "--output-format", "table"}).output,
                HasSubstr("1 accepted"));
}

TEST_F(ManyOrders, RefuseAnOutputFormatThatIsNone)
{
    const Answer answer = Batch({"--output-format", "xml"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("Give one of: table, json, ndjson, csv."));
}

TEST_F(ManyOrders, TakesAFileThatWasReplacedForAnotherOrder)
{
    Order("A001.xml");
    Batch();
    const std::string path = Order("A001.xml");
    fs::last_write_time(path, fs::last_write_time(path) + std::chrono::seconds(2));

    Batch();

    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 2)));
}

TEST_F(ManyOrders, LeavesWorkFilesHiddenFilesAndFoldersAlone)
{
    Order("A001.xml");
    Order(".hidden.xml");
    Order("A002.xml.part");
    m_orders.Write("A003.xml.veu.cp", "orders of somebody");
    fs::create_directory(m_orders.Path("done"));
    Order("done/A004.xml");

    const Answer answer = Batch();

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1)));
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("'A003.xml.veu.cp'"), HasSubstr("--remove-leftovers 1d removes")));
    EXPECT_EQ(ReadWholeFile(m_orders.Path("A003.xml.veu.cp")), "orders of somebody");
}

TEST_F(ManyOrders, MakesTheWorkFilesOfAnOrderAnewAndLeavesNone)
{
    Order("A001.xml");
    m_orders.Write("A001.xml.veu.cp", "left by convert --keep");

    const Answer answer = Batch({"--json"});

    EXPECT_EQ(Lines(answer).at("A001.xml")["total"], 350.5);
    EXPECT_THAT(Lines(answer).at("A001.xml")["warnings"].dump(),
                HasSubstr("the check replaces and deletes them"));
    EXPECT_THAT(NamesInFolder(), ElementsAre("A001.xml"));
}

TEST_F(ManyOrders, TellsInWordsWhatWasNotAccepted)
{
    Order("A001.xml");
    m_orders.Write("A002.xml", "no order at all");

    const Answer answer = Batch();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.output, AllOf(HasSubstr("NOT JUDGED  " + Named("A002.xml") + ": "),
                                     Not(HasSubstr("A001.xml")),
                                     HasSubstr("1 accepted, 0 refused, 1 NOT judged; ")));
}

TEST_F(ManyOrders, JudgesAnOrderThatWasNotJudgedWithTheNextRun)
{
    m_orders.Write("A001.xml", "no order at all");
    EXPECT_EQ(Batch().status, 3);
    EXPECT_EQ(Batch().status, 3);
    Order("A001.xml");

    EXPECT_EQ(Batch().status, 0);
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1)));
}

TEST_F(ManyOrders, EndsWithTheGravestOfItsOrders)
{
    Order("A001.xml");
    Order("A002.xml");
    Order("A003.xml");
    const std::string list = m_orders.Write("orders.csv", "file,signers\n"
                                                          "A001.xml,Élodie Lefèvre\n"
                                                          "A002.xml,Hélène Garçon\n"
                                                          "A003.xml,Paul Martin\n");

    const Answer answer = BatchOf(list, {"--json"});

    const auto lines = Lines(answer);
    EXPECT_EQ(lines.at("A001.xml")["outcome"], "success");
    EXPECT_EQ(lines.at("A002.xml")["outcome"], "refused");
    EXPECT_EQ(lines.at("A003.xml")["outcome"], "no-rule");
    EXPECT_EQ(answer.status, 2);
    EXPECT_THAT(NamesInFolder(), ElementsAre("A001.xml", "A002.xml", "A003.xml", "orders.csv"));
}

TEST_F(ManyOrders, TakesTheTermsOfAnOrderThatLieBesideIt)
{
    Order("A001.xml");
    Terms("A001.xml", R"({"signers": "Hélène Garçon", "order-id": "ORD-1"})");
    Order("A002.xml");
    Terms("A002.xml", "{\"order-id\": \"ORD-2\"\n}");

    const Answer answer = Batch({"--sidecar", "--json"});

    const auto lines = Lines(answer);
    EXPECT_EQ(lines.at("A001.xml")["outcome"], "refused");
    EXPECT_EQ(lines.at("A001.xml")["orderId"], "ORD-1");
    EXPECT_EQ(lines.at("A002.xml")["outcome"], "success");
    EXPECT_EQ(answer.status, 1);
}

// Whoever writes the terms says who signed what: docs/security.md.
TEST_F(ManyOrders, TakesContractAndSignersFromTheTermsBesideAnOrderBeforeThoseOfAll)
{
    Order("A001.xml");
    Terms("A001.xml", R"({"signers": "Paul Martin", "partner": "NOBODY", "veu": true})");

    const auto line = Lines(Batch({"--sidecar", "--json"})).at("A001.xml");

    EXPECT_EQ(line["outcome"], "no-rule");
    EXPECT_EQ(m_database.Query(L"SELECT VPNAME, CNS FROM HST_SIGNRULES"),
              (std::vector<Row>{{L"NOBODY", L"Paul Martin"}}));
}

TEST_F(ManyOrders, JudgesNoOrderWhoseTermsAreMissingOrWrong)
{
    Order("A001.xml");
    Order("A002.xml");
    Terms("A002.xml", "{\"order-id\": \"A\",\n\"db\": \"Driver=Elsewhere\"}");
    Order("A003.xml");
    Terms("A003.xml", "{\"order-id\": \"A\",\n oops}");

    const Answer answer = Batch({"--sidecar", "--json"});

    EXPECT_EQ(answer.status, 3);
    const auto lines = Lines(answer);
    const auto error = [&lines](const char* name)
    { return lines.at(name)["error"].get<std::string>(); };
    EXPECT_THAT(error("A001.xml"), HasSubstr("there is no file"));
    EXPECT_THAT(error("A002.xml"), HasSubstr("A002.xml.terms, field db: unknown field"));
    EXPECT_THAT(error("A003.xml"), HasSubstr("A003.xml.terms, line 2: this is no JSON"));
    EXPECT_THAT(Rows(), IsEmpty());
}

TEST_F(ManyOrders, JudgesNoOrderWhoseReportWouldHaveTheIdentifierOfAll)
{
    Order("A001.xml");
    Terms("A001.xml", R"({"order-id": "A1"})");
    Order("A002.xml");
    Terms("A002.xml", R"({"order-id": "A2", "message-id": "R2"})");

    const auto lines =
        Lines(Batch({"--sidecar", "--json", "--psr-service", "STATUS", "--party", "QZBKFRPP",
                     "--message-name", "pain.001.001.03", "--message-id", "R"}));

    EXPECT_THAT(lines.at("A001.xml")["error"].get<std::string>(),
                HasSubstr("the term message-id must be the order's own"));
    EXPECT_EQ(lines.at("A002.xml")["outcome"], "success");
}

TEST_F(ManyOrders, JudgesNoOrderThatAnotherHostJudges)
{
    const std::string held = Order("A001.xml");
    Order("A002.xml");
    const host::OrderLock lock(held, "signcheck watch");

    const Answer answer = Batch({"--json"});

    EXPECT_EQ(answer.status, 3);
    const auto lines = Lines(answer);
    EXPECT_EQ(lines.at("A001.xml")["held"], true);
    EXPECT_THAT(lines.at("A001.xml")["error"].get<std::string>(),
                HasSubstr("is in use by another host (signcheck watch"));
    EXPECT_THAT(Rows(), ElementsAre(Pair("A002.xml", 1)));
}

TEST_F(ManyOrders, JudgesNoOrderWhoseHistoryRowWouldBeLost)
{
    Order("O'Brien.xml");

    const Answer answer = Batch({"--json"});

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(Lines(answer).at("O'Brien.xml")["error"].get<std::string>(),
                HasSubstr("the path of the order file holds an apostrophe"));
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(ManyOrders, TellsANameWithoutAPlaceInTheCodePage)
{
    fs::copy_file(Order("A001.xml"), Utf8Path(m_orders.Path("Łódź.xml")));

    const Answer answer = Batch({"--json"});

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(Lines(answer).at("Łódź.xml")["error"].get<std::string>(),
                HasSubstr("holds 'Ł', which has no place in Windows-1252. Rename it."));
    EXPECT_THAT(Rows(), ElementsAre(Pair("A001.xml", 1)));
}

TEST_F(ManyOrders, OfAnEmptyFolderIsDone)
{
    const Answer answer = Batch();

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, HasSubstr("0 accepted, 0 refused; "));
}

struct UsageCase
{
    const char* name;
    std::vector<std::string> more;
    const char* told;
};

TEST_F(ManyOrders, RefusesWrongUsageBeforeAnythingIsJudged)
{
    Order("A001.xml");
    const UsageCase cases[] = {
        {"jobs", {"--jobs", "0"}, "--jobs"},
        {"age", {"--remove-leftovers", "soon"}, "'soon' is no age. Give a number and its unit"},
        {"report for all",
         {"--psr-service", "PSR", "--party", "QZBKFRPP", "--order-id", "A", "--message-name",
          "pain.001.001.03", "--message-id", "R"},
         "they would all have the same identifiers"},
        {"both amounts", {"--total", "5.00"}, "are given as well"},
        {"trace", {"--trace", "x"}, "unknown option"},
    };
    for (const UsageCase& each : cases)
    {
        const Answer answer = Batch(each.more);
        EXPECT_EQ(answer.status, 64) << each.name;
        EXPECT_THAT(answer.errors, HasSubstr(each.told)) << each.name;
    }
    EXPECT_EQ(RunSigncheck({"batch", "--db", Db()}).status, 64);
    EXPECT_EQ(BatchOf(m_orders.Path("missing")).status, 64);
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(ManyOrders, RefuseAJournalAmongThemAndOneWithoutAName)
{
    Order("A001.xml");

    const Answer among = Batch({"--journal", m_orders.Path("progress")});
    EXPECT_EQ(among.status, 64);
    EXPECT_THAT(among.errors, HasSubstr("lies in the folder whose orders are judged"));
    const Answer empty = Batch({"--journal", ""});
    EXPECT_EQ(empty.status, 64);
    EXPECT_THAT(empty.errors, HasSubstr("option --journal is empty. Name the progress journal"));
    const Answer none = BatchOf("");
    EXPECT_EQ(none.status, 64);
    EXPECT_THAT(none.errors, HasSubstr("argument ORDERS is missing"));

    EXPECT_THAT(NamesInFolder(), ElementsAre("A001.xml"));
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(ManyOrders, IsRefusedWithoutItsDatabase)
{
    Order("A001.xml");
    auto arguments = CheckOfFile(m_orders.Path(), "auto", "Élodie Lefèvre");
    arguments[0] = "batch";

    const Answer answer = RunSigncheck(
        With(arguments, "--db", "Driver=SQLite3;Database=" + m_folder.Path("missing.db")));

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("missing.db' is not there"));
    EXPECT_THAT(NamesInFolder(), ElementsAre("A001.xml"));
}

} // namespace
} // namespace testing_support
