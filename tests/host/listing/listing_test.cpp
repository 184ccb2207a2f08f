// Filters, pages and output formats of history, events and reports, on what a few checks left.

#include "host/rulebook/csv.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <sstream>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::vector<std::string> LinesIn(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
    {
        lines.push_back(line);
    }
    return lines;
}

class Listing : public SampleBankTest
{
protected:
    Listing()
    {
        Check("Élodie Lefèvre", "A001", "900.00");
        Check("Hélène Garçon", "A002", "1500.00");
        Check("Hélène Garçon", "A003", "20000.00");
        Check("Paul Martin", "A004", "900.00");
    }

    void Check(const std::string& signers, const std::string& orderId, const std::string& total)
    {
        auto arguments = With(With(CheckOf(signers), "--total", total), "--largest", total);
        arguments.insert(arguments.end(),
                         {"--order-id", orderId, "--psr-service", "STATUS", "--party", "QZBKFRPP",
                          "--message-name", "pain.001.001.03", "--message-id", "RPT-" + orderId});
        EXPECT_LE(RunSigncheck(arguments).status, 2);
    }

    // Rows beside those of the checks, as numerous hosts would have left them.
    void AddRows(int count, const std::wstring& order, const std::wstring& reason = L"")
    {
        const std::wstring row = L"('2026-01-01 00:00:00',1,'1','P',9,'S','C',0,'" + order +
                                 L"',0,' ',' '," + m_database.Literal(reason) + L",'x',1,1,'f')";
        while (count > 0)
        {
            std::wstring rows = row;
            for (--count; count > 0 && rows.size() < 50000; --count)
            {
                rows += L"," + row;
            }
            m_database.Execute(
                L"INSERT INTO HST_SIGNRULES (DATETIME,SERVER,STATUT,VPNAME,TYPE_PTC,"
                L"VFNAME,VCNAME,IDFICVFS,ORDERID,TYPE_CTRL,SIGNER1,SIGNER2,MOTIF,CNS,"
                L"TOTAL,MAXORDER,FILENAME) VALUES " +
                rows);
        }
    }

    Answer Ask(std::vector<std::string> arguments)
    {
        if (arguments.front() != "reports")
        {
            arguments.insert(arguments.end(), {"--db", Db()});
        }
        return RunSigncheck(arguments);
    }

    std::vector<std::string> Orders(std::vector<std::string> arguments)
    {
        const std::string list = arguments.front() == "history" ? "rows" : arguments.front();
        arguments.emplace_back("--json");
        const Answer answer = Ask(std::move(arguments));
        EXPECT_EQ(answer.status, 0) << answer.errors;
        std::vector<std::string> orders;
        const auto json = answer.Json();
        for (const auto& entry : json[list])
        {
            orders.push_back(entry["orderId"]);
        }
        return orders;
    }
};

TEST_F(Listing, HistoryOfASignerIsFoundByAnyPartOfTheNameInWhateverCase)
{
    EXPECT_THAT(Orders({"history", "--signer", "GARÇON"}), ElementsAre("A003", "A002"));
    EXPECT_THAT(Orders({"history", "--signer", "élodie"}), ElementsAre("A001"));
    EXPECT_THAT(Orders({"history", "--signer", "nobody"}), ElementsAre());
}

TEST_F(Listing, HistoryFindsTheSignerWhoHasNoRule)
{
    EXPECT_THAT(Orders({"history", "--signer", "paul"}), ElementsAre("A004"));
}

TEST_F(Listing, PercentAndUnderscoreOfASearchAreLetters)
{
    EXPECT_THAT(Orders({"history", "--signer", "%"}), ElementsAre());
    EXPECT_THAT(Orders({"history", "--reason", "_"}), ElementsAre());
}

TEST_F(Listing, AmountsOfHistoryAreARangeWithBothEnds)
{
    EXPECT_THAT(Orders({"history", "--amount-from", "1500.00"}), ElementsAre("A003", "A002"));
    EXPECT_THAT(Orders({"history", "--amount-from", "1500.01"}), ElementsAre("A003"));
    EXPECT_THAT(Orders({"history", "--amount-to", "1500"}), ElementsAre("A004", "A002", "A001"));
    EXPECT_THAT(Orders({"history", "--amount-from", "1000", "--amount-to", "2000"}),
                ElementsAre("A002"));
}

TEST_F(Listing, AmountsOfHistoryKeepEveryDigitInJsonAsInWords)
{
    m_database.Execute(L"UPDATE HST_SIGNRULES SET TOTAL = 123456789012.8125, MAXORDER = 1e0 "
                       L"WHERE ORDERID = 'A001'");
    m_database.Execute(L"UPDATE HST_SIGNRULES SET TOTAL = 0.1e0 + 0.2e0, MAXORDER = NULL "
                       L"WHERE ORDERID = 'A002'");

    const Answer exact = Ask({"history", "--order-id", "A001", "--json"});
    EXPECT_THAT(exact.output, HasSubstr("\"total\": 123456789012.8125,"));
    EXPECT_THAT(exact.output, HasSubstr("\"largestOrder\": 1.0,"));
    EXPECT_THAT(Ask({"history", "--order-id", "A001"}).output, HasSubstr("123456789012.8125"));
    const Answer sum = Ask({"history", "--order-id", "A002", "--json"});
    EXPECT_THAT(sum.output, HasSubstr("\"total\": 0.3,"));
    EXPECT_THAT(sum.output, HasSubstr("\"largestOrder\": 0.0,"));
}

TEST_F(Listing, AnAmountThatIsNoneIsRefused)
{
    for (const std::string text :
         {"-1", "1,5", "1e3", "0x1", "1 OR 1=1", "1234567890123456789012345678901"})
    {
        const Answer answer = Ask({"history", "--amount-from=" + text});
        EXPECT_EQ(answer.status, 64) << text;
        EXPECT_THAT(answer.errors, HasSubstr("option --amount-from: '" + text + "' is no amount"));
    }
}

TEST_F(Listing, ReasonsOfHistoryAreFoundByAPartOfTheText)
{
    const auto orders = Orders({"history", "--reason", "LIMIT"});

    EXPECT_THAT(orders, Not(ElementsAre()));
    EXPECT_EQ(orders, Orders({"history", "--reason", "limit"}));
    EXPECT_THAT(Orders({"history", "--reason", "no rule is known"}), ElementsAre("A004"));
}

TEST_F(Listing, AReasonCodeIsSentToTheReportsThatKeepIt)
{
    const Answer answer = Ask({"history", "--reason", "AM02"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("option --reason: 'AM02' is a code"),
                                     HasSubstr("signcheck reports --reason AM02")));
}

TEST_F(Listing, AReasonCodeIsNotLookedForInEventsEither)
{
    const Answer answer = Ask({"events", "--reason", "AM02"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("'AM02' is a code, and EVT_JOURNAL keeps"),
                                     HasSubstr("signcheck reports --reason AM02")));
}

TEST_F(Listing, RangesThatHoldNothingAreRefused)
{
    for (const std::string command : {"history", "events", "reports"})
    {
        const Answer answer = Ask({command, "--since", "2026-03-30", "--until", "2026-03-29"});
        EXPECT_EQ(answer.status, 64) << command;
        EXPECT_THAT(answer.errors, HasSubstr("option --since: '2026-03-30' is after"));
    }
    for (const std::string command : {"history", "reports"})
    {
        const Answer answer = Ask({command, "--amount-from", "2", "--amount-to", "1"});
        EXPECT_EQ(answer.status, 64) << command;
        EXPECT_THAT(answer.errors, HasSubstr("option --amount-from: '2' is above"));
    }
}

TEST_F(Listing, AStatusThatNoReportHasIsRefused)
{
    const Answer answer = Ask({"reports", "--status", "FOO"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("option --status: 'FOO' is no status"), HasSubstr("RJCT")));
}

TEST_F(Listing, AnEmptySearchIsRefused)
{
    const Answer answer = Ask({"history", "--signer", ""});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("option --signer: the value is empty"));
}

TEST_F(Listing, EventsAreFoundByVerdictSignerAndReason)
{
    EXPECT_THAT(Orders({"events", "--verdict", "success"}), ElementsAre("A001"));
    EXPECT_THAT(Orders({"events", "--verdict", "refused"}), ElementsAre("A003", "A002"));
    EXPECT_THAT(Orders({"events", "--verdict", "no-rule"}), ElementsAre("A004"));
    EXPECT_THAT(Orders({"events", "--verdict", "refused", "--signer", "garçon"}),
                ElementsAre("A003", "A002"));
    EXPECT_THAT(Orders({"events", "--reason", "psr generated"}), ElementsAre("A003", "A002"));
}

TEST_F(Listing, ReportsAreFoundByReasonStatusAndSigner)
{
    EXPECT_THAT(Orders({"reports", "--reason", "AM02"}), ElementsAre("A003", "A002"));
    EXPECT_THAT(Orders({"reports", "--reason", "NARR"}), ElementsAre());
    EXPECT_THAT(Orders({"reports", "--status", "RJCT"}), ElementsAre("A003", "A002"));
    EXPECT_THAT(Orders({"reports", "--status", "RCVD"}), ElementsAre());
    EXPECT_THAT(Orders({"reports", "--signer", "GARÇON"}), ElementsAre("A003", "A002"));
}

TEST_F(Listing, ReportsWithoutAnAmountAreInNoRange)
{
    EXPECT_THAT(Orders({"reports", "--amount-from", "0"}), ElementsAre());
}

TEST_F(Listing, ReportsAreFoundByTheAmountThatTheyTell)
{
    const std::string folder = m_folder.Path("handoff") + "/STATUS/DUPONTSA";
    const auto path = Ask({"reports", "--order-id", "A002", "--json"}).Json()["reports"][0]["path"];
    std::string document = ReadWholeFile(path);
    const std::string place = "   <GrpSts>";
    document.insert(document.find(place), "    <OrgnlNbOfTxs>3</OrgnlNbOfTxs>\n"
                                          "    <OrgnlCtrlSum>1500.00</OrgnlCtrlSum>\n");
    m_folder.Write("handoff/STATUS/DUPONTSA/900.psr", document);

    EXPECT_THAT(Orders({"reports", "--amount-from", "1500", "--amount-to", "1500.00"}),
                ElementsAre("A002"));
    EXPECT_THAT(Orders({"reports", "--amount-from", "1500.01"}), ElementsAre());
    EXPECT_THAT(Orders({"reports", "--amount-to", "1499.99"}), ElementsAre());
}

TEST_F(Listing, PagesFollowOneAnotherWhileRowsAreAdded)
{
    AddRows(3, L"OLD");
    const Answer first = Ask({"history", "--limit", "2", "--json"});
    AddRows(5, L"NEW");
    const Answer second =
        Ask({"history", "--limit", "2", "--below",
             std::to_string(first.Json()["rows"][1]["row"].get<long long>()), "--json"});

    EXPECT_EQ(first.Json()["rows"][0]["row"], 7);
    EXPECT_EQ(first.Json()["rows"][1]["row"], 6);
    EXPECT_EQ(second.Json()["rows"][0]["row"], 5);
    EXPECT_EQ(second.Json()["rows"][1]["row"], 4);
}

TEST_F(Listing, TheNextPageIsToldAsACommand)
{
    const Answer json = Ask({"history", "--limit", "1", "--signer", "Hélène Garçon", "--json"});
    const Answer table = Ask({"history", "--limit", "1", "--signer", "O'", "--below", "900"});
    AddRows(2, L"ODD", L"the holder's limit");
    const Answer quoted = Ask({"history", "--limit", "1", "--reason", "holder's"});

    EXPECT_EQ(json.Json()["next"].get<std::string>(),
              "signcheck history --db '" + Db() +
                  "' --signer 'Hélène Garçon' --limit 1 --json --below 3");
    EXPECT_EQ(table.output, "No history row fits.\n");
    EXPECT_THAT(quoted.output, HasSubstr("There are more. The next page: signcheck history --db '" +
                                         Db() + "' --reason 'holder'\\''s' --limit 1 --below 6\n"));
}

TEST_F(Listing, ThePasswordIsNotInTheCommandOfTheNextPage)
{
    const Answer answer =
        RunSigncheck({"history", "--limit", "1", "--json", "--db", Db() + ";PWD=secret"});

    EXPECT_THAT(
        answer.Json()["next"].get<std::string>(),
        AllOf(StartsWith("signcheck history --db \"$SIGNCHECK_DB\" "), Not(HasSubstr("secret"))));
}

TEST_F(Listing, TheLastPageHasNoNext)
{
    const Answer answer = Ask({"history", "--below", "3", "--json"});

    EXPECT_EQ(answer.Json()["more"], false);
    EXPECT_TRUE(answer.Json()["next"].is_null());
    EXPECT_EQ(answer.Json()["rows"].size(), 2U);
}

TEST_F(Listing, EventsAndReportsHavePagesToo)
{
    EXPECT_THAT(Orders({"events", "--below", "3", "--limit", "1"}), ElementsAre("A002"));
    const auto reports = Ask({"reports", "--limit", "1", "--json"}).Json();
    const auto before = std::to_string(reports["reports"][0]["fileId"].get<long long>());
    EXPECT_EQ(reports["next"].get<std::string>(),
              "signcheck reports --limit 1 --json --below " + before);
    EXPECT_THAT(Orders({"reports", "--below", before}), ElementsAre("A002"));
}

// Each service counts its reports for itself.
TEST_F(Listing, ReportsOfOneNumberStandOnOnePage)
{
    const auto newest = Ask({"reports", "--limit", "1", "--json"}).Json()["reports"][0];
    const std::string number = std::to_string(newest["fileId"].get<long long>());
    std::filesystem::create_directories(m_folder.Path("handoff") + "/OTHER/DUPONTSA");
    m_folder.Write("handoff/OTHER/DUPONTSA/" + number + ".psr", ReadWholeFile(newest["path"]));

    const auto page = Ask({"reports", "--limit", "1", "--json"}).Json();

    ASSERT_EQ(page["reports"].size(), 2U);
    EXPECT_EQ(page["reports"][0]["service"], "OTHER");
    EXPECT_EQ(page["reports"][1]["service"], "STATUS");
    EXPECT_THAT(Orders({"reports", "--below", number}), ElementsAre("A002"));
}

// A folder lies there under the name of a report, so that it cannot be read anywhere.
TEST_F(Listing, ReportsThatCannotBeReadAreToldWithTheirCause)
{
    std::filesystem::create_directories(m_folder.Path("handoff") + "/STATUS/DUPONTSA/901.psr");
    m_folder.Write("handoff/STATUS/DUPONTSA/902.psr", std::string(1024 * 1024 + 1, 'x'));

    const Answer answer = Ask({"reports", "--json"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.Json()["reports"].size(), 2U);
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("901.psr' is left out: it is a link, a folder, a pipe or a device"),
                      HasSubstr("902.psr' is left out: it is larger than 1 MiB")));
}

TEST_F(Listing, EveryRowIsShownWhereAllAreAskedFor)
{
    AddRows(5000, L"MANY");

    const Answer answer = Ask({"history", "--all", "--format", "ndjson"});

    EXPECT_EQ(answer.status, 0);
    const auto lines = LinesIn(answer.output);
    ASSERT_EQ(lines.size(), 5004U);
    long long last = 5005;
    for (const std::string& line : lines)
    {
        const long long number = nlohmann::json::parse(line)["row"];
        ASSERT_EQ(number, last - 1);
        last = number;
    }
    EXPECT_EQ(answer.errors, "");
}

TEST_F(Listing, GapsInTheNumbersHideNoRow)
{
    m_database.Execute(L"UPDATE HST_SIGNRULES SET ROWNO = 4000000000000 WHERE ORDERID = 'A004'");
    m_database.Execute(L"UPDATE HST_SIGNRULES SET ROWNO = 100000 WHERE ORDERID = 'A003'");

    EXPECT_THAT(Orders({"history"}), ElementsAre("A004", "A003", "A002", "A001"));
}

TEST_F(Listing, AllAndALimitContradict)
{
    const Answer answer = Ask({"history", "--all", "--limit", "3"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("option --all: every row is no page of 3"));
}

TEST_F(Listing, BelowWhatIsNoNumberIsRefused)
{
    for (const std::string text : {"x", "-1", "1.5", "1234567890123456789"})
    {
        const Answer answer = Ask({"history", "--below=" + text});
        EXPECT_EQ(answer.status, 64) << text;
        EXPECT_THAT(answer.errors, HasSubstr("option --below: '" + text + "' is no number"));
    }
}

TEST_F(Listing, CsvIsALineOfNamesAndARecordARow)
{
    const Answer answer = Ask({"history", "--format", "csv"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    const auto records = rulebook::ReadCsv(answer.output, ',', "#");
    ASSERT_EQ(records.size(), 5U);
    EXPECT_EQ(records[0].text,
              "row,time,verdict,outcome,partner,service,client,protocol,side,orderId,fileId,"
              "control,signer1,signer2,reason,signers,total,largestOrder,file");
    EXPECT_EQ(records[1].fields[0], "4");
    EXPECT_EQ(records[4].fields[12], "Élodie Lefèvre");
    EXPECT_EQ(records[4].fields[16], "900.00");
    EXPECT_EQ(std::count(answer.output.begin(), answer.output.end(), '\r'), 5);
}

TEST_F(Listing, CsvKeepsQuotesLinesAndFormulasOfTextsWhole)
{
    AddRows(1, L"ODD", L"=HYPERLINK(\"x\"),\r\nsecond line");

    const Answer answer = Ask({"history", "--limit", "1", "--format", "csv"});

    const auto records = rulebook::ReadCsv(answer.output, ',', "#");
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[1].fields[14], "'=HYPERLINK(\"x\"),\r\nsecond line");
    EXPECT_THAT(answer.errors, HasSubstr("signcheck: there are more. The next page: signcheck "));
}

TEST_F(Listing, CsvOfNothingIsItsLineOfNames)
{
    const Answer answer = Ask({"events", "--order-id", "none", "--format", "csv"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(LinesIn(answer.output).size(), 1U);
    EXPECT_THAT(answer.output, StartsWith("event,time,source,level,"));
}

TEST_F(Listing, NdjsonIsAnObjectALineAsInJson)
{
    for (const std::string command : {"history", "events", "reports"})
    {
        const auto whole = Ask({command, "--format", "json"}).Json();
        const auto lines = LinesIn(Ask({command, "--format", "ndjson"}).output);

        const auto& list = whole[command == "history" ? "rows" : command];
        ASSERT_EQ(lines.size(), list.size()) << command;
        for (std::size_t index = 0; index < lines.size(); ++index)
        {
            EXPECT_EQ(nlohmann::json::parse(lines[index]), list[index]);
        }
    }
}

TEST_F(Listing, JsonIsTheShortFormOfAFormat)
{
    const std::string byFlag = Ask({"events", "--json"}).output;

    EXPECT_EQ(Ask({"events", "--format", "json"}).output, byFlag);
    EXPECT_EQ(Ask({"events", "--output-format", "json"}).output, byFlag);
}

TEST_F(Listing, TablesStandInEightyColumns)
{
    for (const std::string command : {"history", "events"})
    {
        const Answer answer = Ask({command});
        for (const std::string& line : LinesIn(answer.output))
        {
            const auto letters = std::count_if(line.begin(), line.end(),
                                               [](char byte) { return (byte & 0xC0) != 0x80; });
            EXPECT_LE(letters, 80) << line;
        }
    }
}

TEST_F(Listing, AFailureWithinTheRowsIsToldInTheirFormat)
{
    AddRows(300, L"ROW");
    // The second band of rows cannot be read: the smallest number has no absolute value.
    m_database.Execute(L"ALTER TABLE HST_SIGNRULES RENAME TO HST_ROWS");
    m_database.Execute(
        L"CREATE VIEW HST_SIGNRULES AS SELECT ROWNO, DATETIME, SERVER, STATUT, VPNAME, "
        L"abs(-9223372036854775807 - (ROWNO < 100)) AS TYPE_PTC, VFNAME, VCNAME, IDFICVFS, "
        L"ORDERID, TYPE_CTRL, SIGNER1, SIGNER2, MOTIF, CNS, TOTAL, MAXORDER, FILENAME "
        L"FROM HST_ROWS");

    const Answer json = Ask({"history", "--all", "--format", "json"});
    const Answer lines = Ask({"history", "--all", "--format", "ndjson"});
    const Answer csv = Ask({"history", "--all", "--format", "csv"});

    EXPECT_EQ(json.status, 3);
    EXPECT_EQ(json.Json()["status"], 3);
    EXPECT_THAT(json.Json()["error"].get<std::string>(), HasSubstr("refused to be read"));
    EXPECT_GT(json.Json()["rows"].size(), 0U);
    EXPECT_EQ(lines.status, 3);
    EXPECT_EQ(nlohmann::json::parse(LinesIn(lines.output).back())["status"], 3);
    EXPECT_EQ(csv.status, 3);
    EXPECT_THAT(csv.errors, HasSubstr("refused to be read"));
}

} // namespace
} // namespace testing_support
