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

class CheckOutput : public SampleBankTest
{
protected:
    std::vector<std::string> Refused(const std::vector<std::string>& more) const
    {
        auto arguments = With(CheckOf("Élodie Lefèvre"), "--total", "64200.00");
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }

    const std::vector<std::string> m_report = {
        "--psr-service", "STATUS",         "--party",         "QZBKFRPP",     "--order-id",
        "A001",          "--message-name", "pain.001.001.03", "--message-id", "RPT-1"};
};

TEST_F(CheckOutput, JsonHasEveryField)
{
    const auto json = RunSigncheck(Refused({"--order-id", "A001", "--json"})).Json();

    EXPECT_EQ(json["file"], m_order);
    EXPECT_EQ(json["signers"], nlohmann::json::array({"Élodie Lefèvre"}));
    EXPECT_EQ(json["verdict"], 2);
    EXPECT_EQ(json["outcome"], "refused");
    EXPECT_EQ(json["total"], 64200.0);
    EXPECT_EQ(json["largestOrder"], 900.0);
    EXPECT_EQ(json["currency"], "EUR");
    EXPECT_EQ(json["amounts"], "given");
    EXPECT_EQ(json["reasonCode"], "AM02");
    EXPECT_THAT(json["reasonText"].get<std::string>(), HasSubstr("Lefèvre"));
    EXPECT_EQ(json["findings"].size(), 1U);
    EXPECT_EQ(json["rulesComplete"], true);
    EXPECT_EQ(json["lookupsComplete"], true);
    EXPECT_TRUE(json["problem"].is_null());
    EXPECT_EQ(json["contract"]["partner"], "DUPONTSA");
    EXPECT_EQ(json["contract"]["side"], "server");
    EXPECT_EQ(json["contract"]["distributed"], false);
    EXPECT_EQ(json["orderId"], "A001");
    EXPECT_EQ(json["rows"]["due"], 1);
    EXPECT_EQ(json["rows"]["written"], 1);
    EXPECT_EQ(json["journal"], "written");
    EXPECT_EQ(json["event"], 1);
    EXPECT_EQ(json["extraInfo"], "");
    EXPECT_TRUE(json["report"].is_null());
    EXPECT_TRUE(json["reportFile"].is_null());
    EXPECT_TRUE(json["warnings"].empty());
}

TEST_F(CheckOutput, JsonCarriesTheReportThatWasHandedOn)
{
    auto arguments = Refused(m_report);
    arguments.emplace_back("--json");

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 1);
    const auto json = answer.Json();
    const auto report = json["report"].get<std::string>();
    EXPECT_THAT(report, AllOf(HasSubstr("<OrgnlMsgId>A001</OrgnlMsgId>"),
                              HasSubstr("<Cd>AM02</Cd>"), HasSubstr("Lefèvre")));
    const auto path = json["reportFile"]["path"].get<std::string>();
    EXPECT_EQ(ReadWholeFile(path), report);
    EXPECT_EQ(json["extraInfo"],
              "PSR Generated in STATUS=" + std::to_string(json["reportFile"]["fileId"].get<int>()));
}

TEST_F(CheckOutput, WordsSayWhatWasDecidedWhyAndWhatWasRecorded)
{
    const Answer answer = RunSigncheck(Refused(m_report));

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.errors, "");
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Decided   REFUSED: the signatures do not satisfy"),
                      HasSubstr("Why       "), HasSubstr("64200.00"),
                      HasSubstr("Reason code AM02."),
                      HasSubstr("Recorded  1 of 1 history row in HST_SIGNRULES; audit event 1 in "
                                "EVT_JOURNAL."),
                      HasSubstr("Report    handed on as"), HasSubstr(m_folder.Path("handoff"))));
}

TEST_F(CheckOutput, WordsExplainASuccessToo)
{
    const Answer answer = RunSigncheck(CheckOf("Élodie Lefèvre"));

    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Decided   ACCEPTED"), HasSubstr("Lefèvre"), HasSubstr("50000.00"),
                      HasSubstr("Report    none was asked for")));
}

TEST_F(CheckOutput, WordsExplainAContractThatIsNotActive)
{
    auto arguments = With(CheckOf("Jean-François Béranger"), "--partner", "GARONNE");
    arguments = With(arguments, "--client", "ACHATS");

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 2);
    EXPECT_THAT(answer.output, AllOf(HasSubstr("NO RULE"), HasSubstr("active")));
}

TEST_F(CheckOutput, AHandOffFolderOfItsOwnIsUsed)
{
    auto arguments = Refused(m_report);
    arguments.insert(arguments.end(), {"--hand-off", m_folder.Path("own"), "--json"});

    const auto json = RunSigncheck(arguments).Json();

    EXPECT_EQ(json["reportFile"]["path"].get<std::string>().rfind(m_folder.Path("own"), 0), 0U);
}

TEST_F(CheckOutput, AReportThatCannotBeHandedOnIsTold)
{
    auto arguments = Refused(m_report);
    arguments.insert(arguments.end(), {"--hand-off", m_order, "--json"}); // a file, no folder

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.errors,
                HasSubstr("WARNING: the status report was written but NOT handed on to service "
                          "'STATUS' of the store '" +
                          m_order + "': "));
    EXPECT_TRUE(answer.Json()["report"].is_string());
    EXPECT_TRUE(answer.Json()["reportFile"].is_null());
}

TEST_F(CheckOutput, TraceAndLogAreWritten)
{
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.insert(arguments.end(), {"--trace", m_folder.Path("trace.txt"), "--log",
                                       m_folder.Path("host.log"), "--request", "REQ-7"});

    EXPECT_EQ(RunSigncheck(arguments).status, 0);

    EXPECT_THAT(ReadWholeFile(m_folder.Path("trace.txt")), HasSubstr("CHECK SIGNATURES RULES"));
    EXPECT_THAT(ReadWholeFile(m_folder.Path("host.log")),
                HasSubstr("signcheck: check of " + m_order + ": success"));
    const auto events =
        m_database.Query(L"SELECT REFERENCE, ATTACHKIND, ATTACHPATH FROM EVT_JOURNAL");
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0][0], L"REQ-7");
    EXPECT_EQ(events[0][1], L"LOG");
    EXPECT_NE(events[0][2].value_or(L"").find(L"host.log"), std::wstring::npos);
}

TEST_F(CheckOutput, SettingsReachTheHistoryRow)
{
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.insert(arguments.end(), {"--order-id", "A001", "--file-id", "77"});

    EXPECT_EQ(RunSigncheck(arguments).status, 0);

    const auto rows = m_database.Query(L"SELECT SERVER, VPNAME, VFNAME, VCNAME, ORDERID, IDFICVFS, "
                                       L"TYPE_PTC, CNS FROM HST_SIGNRULES");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0],
              (Row{L"1", L"DUPONTSA", L"CCT", L"TRESOR", L"A001", L"77", L"9", L"Élodie Lefèvre"}));
}

TEST_F(CheckOutput, TheRequesterSideFindsItsOwnContractsOnly)
{
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.insert(arguments.end(), {"--requester", "--json"});

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 2);
    EXPECT_EQ(answer.Json()["contract"]["side"], "requester");
}

TEST_F(CheckOutput, Utf8NamesStandInPathsAndIdentifiers)
{
    const std::string path = m_folder.Write("virement été.xml", "<Document/>");
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments[1] = path;
    arguments.insert(arguments.end(), {"--request", "Réf 12 €", "--json"});

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.Json()["file"], path);
    const auto rows = m_database.Query(L"SELECT FILENAME FROM HST_SIGNRULES");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_NE(rows[0][0].value_or(L"").find(L"virement été.xml"), std::wstring::npos);
    EXPECT_EQ(m_database.Query(L"SELECT REFERENCE FROM EVT_JOURNAL")[0][0], L"Réf 12 €");
}

TEST_F(CheckOutput, LongOrderIdentifiersWarnThatTheyAreCut)
{
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.insert(arguments.end(), {"--order-id", "A1234567890"});

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, HasSubstr("keep the first 10 characters of 'A1234567890'"));
    EXPECT_THAT(answer.output, HasSubstr("audit event 1"));
}

TEST_F(CheckOutput, ALargestOrderAboveTheTotalWarns)
{
    const Answer answer = RunSigncheck(With(CheckOf("Élodie Lefèvre"), "--largest", "900.01"));

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, HasSubstr("--largest is above option --total"));
}

} // namespace
} // namespace testing_support
