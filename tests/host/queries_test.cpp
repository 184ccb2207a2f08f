// history, events and reports on what a few checks left.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Queries : public SampleBankTest
{
protected:
    Queries()
    {
        Check("Élodie Lefèvre", "DUPONTSA", "TRESOR", "A001", "REQ-1"); // success
        Check("Hélène Garçon", "DUPONTSA", "TRESOR", "A002", "REQ-2");  // refused
        Check("Paul Martin", "DUPONTSA", "TRESOR", "A003", "REQ-3");    // no rule
        Check("Björn Weiß", "BODENSEE", "FINANZ", "B001", "REQ-4");     // success, 2 rows
        Check("Hélène Garçon", "DUPONTSA", "TRESOR", "A004", "REQ-5");  // refused
    }

    void Check(const std::string& signers, const std::string& partner, const std::string& client,
               const std::string& orderId, const std::string& request)
    {
        auto arguments = With(CheckOf(signers), "--partner", partner);
        arguments = With(arguments, "--client", client);
        arguments.insert(arguments.end(),
                         {"--order-id", orderId, "--request", request, "--psr-service", "STATUS",
                          "--party", "QZBKFRPP", "--message-name", "pain.001.001.03",
                          "--message-id", "RPT-" + orderId});
        EXPECT_LE(RunSigncheck(arguments).status, 2);
    }

    nlohmann::json Ask(std::vector<std::string> arguments)
    {
        if (arguments.front() != "reports")
        {
            arguments.insert(arguments.end(), {"--db", Db()});
        }
        arguments.emplace_back("--json");
        const Answer answer = RunSigncheck(arguments);
        EXPECT_EQ(answer.status, 0) << answer.errors;
        EXPECT_EQ(answer.errors, "");
        return answer.Json();
    }

    std::vector<std::string> OrdersOf(const nlohmann::json& list)
    {
        std::vector<std::string> orders;
        for (const auto& entry : list)
        {
            orders.push_back(entry["orderId"]);
        }
        return orders;
    }

    using Orders = std::vector<std::string>;
};

TEST_F(Queries, HistoryShowsEveryRowTheNewestFirst)
{
    const auto json = Ask({"history"});

    EXPECT_EQ(OrdersOf(json["rows"]), (Orders{"A004", "B001", "B001", "A003", "A002", "A001"}));
    EXPECT_EQ(json["more"], false);
    const auto& row = json["rows"][5];
    EXPECT_EQ(row["outcome"], "success");
    EXPECT_EQ(row["verdict"], 1);
    EXPECT_EQ(row["partner"], "DUPONTSA");
    EXPECT_EQ(row["signer1"], "Élodie Lefèvre");
    EXPECT_EQ(row["signer2"], "");
    EXPECT_EQ(row["total"], 900.0);
    EXPECT_EQ(row["file"], m_order);
}

TEST_F(Queries, HistoryFilters)
{
    EXPECT_EQ(OrdersOf(Ask({"history", "--partner", "BODENSEE"})["rows"]),
              (Orders{"B001", "B001"}));
    EXPECT_EQ(OrdersOf(Ask({"history", "--client", "FINANZ"})["rows"]), (Orders{"B001", "B001"}));
    EXPECT_EQ(OrdersOf(Ask({"history", "--service", "XXX"})["rows"]), Orders{});
    EXPECT_EQ(OrdersOf(Ask({"history", "--order-id", "A002"})["rows"]), (Orders{"A002"}));
    EXPECT_EQ(OrdersOf(Ask({"history", "--verdict", "refused"})["rows"]), (Orders{"A004", "A002"}));
    EXPECT_EQ(OrdersOf(Ask({"history", "--verdict", "0"})["rows"]), (Orders{"A003"}));
    EXPECT_EQ(OrdersOf(Ask({"history", "--verdict", "refused", "--order-id", "A002"})["rows"]),
              (Orders{"A002"}));
    EXPECT_EQ(Ask({"history", "--file", m_order})["rows"].size(), 6U);
    EXPECT_EQ(Ask({"history", "--file", "other.xml"})["rows"].size(), 0U);
}

TEST_F(Queries, HistoryFiltersByTime)
{
    m_database.Execute(L"UPDATE HST_SIGNRULES SET DATETIME = '2026-03-29 14:05:09' "
                       L"WHERE ORDERID = 'A001'");
    m_database.Execute(L"UPDATE HST_SIGNRULES SET DATETIME = '2026-03-30 00:00:00' "
                       L"WHERE ORDERID <> 'A001'");

    EXPECT_EQ(OrdersOf(Ask({"history", "--until", "2026-03-29"})["rows"]), (Orders{"A001"}));
    EXPECT_EQ(Ask({"history", "--since", "2026-03-30"})["rows"].size(), 5U);
    EXPECT_EQ(Ask({"history", "--until", "2026-03-29 14:04"})["rows"].size(), 0U);
    EXPECT_EQ(Ask({"history", "--until", "2026-03-29T14:05:09"})["rows"].size(), 1U);
    EXPECT_EQ(
        Ask({"history", "--since", "2026-03-29 14:06", "--until", "2026-03-29"})["rows"].size(),
        0U);
}

TEST_F(Queries, LimitsTellThatThereIsMore)
{
    const auto json = Ask({"history", "--limit", "2"});
    EXPECT_EQ(OrdersOf(json["rows"]), (Orders{"A004", "B001"}));
    EXPECT_EQ(json["more"], true);
    EXPECT_EQ(Ask({"history", "--limit", "6"})["more"], false);
    EXPECT_EQ(Ask({"events", "--limit", "1"})["more"], true);
    EXPECT_EQ(Ask({"reports", "--limit", "1"})["more"], true);
}

TEST_F(Queries, HistoryIsATableWithoutJson)
{
    const Answer answer = RunSigncheck({"history", "--db", Db(), "--order-id", "A002"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("VERDICT"), HasSubstr("refused"), HasSubstr("DUPONTSA/CCT/TRESOR"),
                      HasSubstr("Hélène Garçon"), HasSubstr("900.00"), Not(HasSubstr("A001"))));
}

TEST_F(Queries, NoRowIsNoFailure)
{
    const Answer answer = RunSigncheck({"history", "--db", Db(), "--order-id", "none"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output, "No history row fits.\n");
}

TEST_F(Queries, AnUnknownVerdictListsTheChoices)
{
    const Answer answer = RunSigncheck({"history", "--db", Db(), "--verdict", "good"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("success (1), refused (2), no-rule (0)"));
}

TEST_F(Queries, QuotesInFiltersAreValues)
{
    EXPECT_EQ(Ask({"history", "--order-id", "' OR '1'='1"})["rows"].size(), 0U);
    EXPECT_EQ(Ask({"events", "--request", "x'; DROP TABLE EVT_JOURNAL; --"})["events"].size(), 0U);
}

TEST_F(Queries, EventsShowChecksAndReports)
{
    const auto json = Ask({"events"});

    EXPECT_EQ(OrdersOf(json["events"]),
              (Orders{"A004", "A004", "B001", "A003", "A002", "A002", "A001"}));
    const auto& report = json["events"][0];
    EXPECT_EQ(report["levelName"], "information");
    EXPECT_THAT(report["message"].get<std::string>(), HasSubstr("PSR Generated in STATUS="));
    const auto& refusal = json["events"][1];
    EXPECT_EQ(refusal["level"], 2);
    EXPECT_EQ(refusal["levelName"], "refusal");
    EXPECT_EQ(refusal["partner"], "DUPONTSA");
    EXPECT_EQ(refusal["reference"], "REQ-5");
    EXPECT_EQ(refusal["source"], "RULSGN");
    EXPECT_THAT(refusal["message"].get<std::string>(),
                HasSubstr("CHECK SIGNATURES RULES FAILED\r\n"));
    EXPECT_TRUE(refusal["attachment"].is_null());
}

TEST_F(Queries, EventFilters)
{
    EXPECT_EQ(OrdersOf(Ask({"events", "--partner", "BODENSEE"})["events"]), (Orders{"B001"}));
    EXPECT_EQ(OrdersOf(Ask({"events", "--level", "refusal"})["events"]), (Orders{"A004", "A002"}));
    EXPECT_EQ(OrdersOf(Ask({"events", "--request", "REQ-1"})["events"]), (Orders{"A001"}));
    EXPECT_EQ(OrdersOf(Ask({"events", "--order-id", "A003"})["events"]), (Orders{"A003"}));
    EXPECT_EQ(Ask({"events", "--until", "2001-01-01"})["events"].size(), 0U);
    EXPECT_EQ(Ask({"events", "--service", "CCT", "--client", "TRESOR"})["events"].size(), 6U);
}

TEST_F(Queries, EventsAreATableWithoutJson)
{
    const Answer answer = RunSigncheck({"events", "--db", Db(), "--order-id", "A002"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, AllOf(HasSubstr("LEVEL"), HasSubstr("refusal"),
                                     HasSubstr("    CHECK SIGNATURES RULES FAILED\n    Holder")));
}

TEST_F(Queries, ReportsShowWhatWasHandedOn)
{
    const auto json = Ask({"reports"});

    EXPECT_EQ(OrdersOf(json["reports"]), (Orders{"A004", "A002"}));
    const auto& report = json["reports"][1];
    EXPECT_EQ(report["service"], "STATUS");
    EXPECT_EQ(report["partner"], "DUPONTSA");
    EXPECT_EQ(report["messageId"], "RPT-A002");
    EXPECT_EQ(report["status"], "RJCT");
    EXPECT_EQ(report["reasonCode"], "AM02");
    EXPECT_THAT(report["reasonText"].get<std::string>(), HasSubstr("Garçon"));
    EXPECT_EQ(ReadWholeFile(report["path"]), report["document"].get<std::string>());
}

TEST_F(Queries, ReportsLeaveOutOneThatAKilledHostNeverFinished)
{
    const std::filesystem::path whole = Ask({"reports"})["reports"][0]["path"].get<std::string>();
    const std::filesystem::path unfinished = whole.parent_path() / "99.psr.part";
    std::filesystem::copy_file(whole, unfinished);

    EXPECT_EQ(OrdersOf(Ask({"reports"})["reports"]), (Orders{"A004", "A002"}));
    EXPECT_TRUE(std::filesystem::exists(unfinished));
}

TEST_F(Queries, ReportFilters)
{
    EXPECT_EQ(OrdersOf(Ask({"reports", "--order-id", "A002"})["reports"]), (Orders{"A002"}));
    EXPECT_EQ(Ask({"reports", "--partner", "BODENSEE"})["reports"].size(), 0U);
    EXPECT_EQ(Ask({"reports", "--service", "STATUS"})["reports"].size(), 2U);
    EXPECT_EQ(Ask({"reports", "--until", "2001-01-01"})["reports"].size(), 0U);
    EXPECT_EQ(Ask({"reports", "--since", "2001-01-01"})["reports"].size(), 2U);
}

TEST_F(Queries, ReportsOfAFolderThatIsNoneAreRefused)
{
    const std::string path = m_folder.Path("none");

    const Answer missing = RunSigncheck({"reports", "--hand-off", path});
    const Answer noFolder = RunSigncheck({"reports", "--hand-off", m_order});
    const Answer empty = RunSigncheck({"reports", "--hand-off", ""});

    EXPECT_EQ(missing.status, 3);
    EXPECT_THAT(missing.errors, HasSubstr("option --hand-off: there is no folder '" + path + "'"));
    EXPECT_EQ(noFolder.status, 3);
    EXPECT_THAT(noFolder.errors, HasSubstr("there is no folder '" + m_order + "'"));
    EXPECT_EQ(empty.status, 64);
    EXPECT_THAT(empty.errors, HasSubstr("option --hand-off: the value is empty"));
}

TEST_F(Queries, ReportsPrintTheirDocumentsWhenAsked)
{
    const Answer answer = RunSigncheck({"reports", "--order-id", "A002", "--text"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, AllOf(HasSubstr("\n  <GrpHdr>\n"), HasSubstr(".psr\n<?xml")));
}

} // namespace
} // namespace testing_support
