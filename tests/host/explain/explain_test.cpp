// Decisions told rule by rule, as a user reads them.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <ostream>
#include <regex>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// With one blank for every line end and indentation: where lines are wrapped does not matter.
std::string Squeezed(const std::string& text)
{
    return std::regex_replace(text, std::regex("[ \n]+"), " ");
}

class Explain : public SampleBankTest
{
protected:
    Answer Run(std::vector<std::string> arguments, const std::vector<std::string>& more) const
    {
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    /// A check of a distributed order under C-2002, which asks for two.
    std::vector<std::string> Distributed(const std::string& signers) const
    {
        auto check = CheckOf(signers);
        for (const auto& [option, value] :
             {std::pair("--partner", "MUELLER"), std::pair("--service", "CCU"),
              std::pair("--client", "KASSE")})
        {
            check = With(std::move(check), option, value);
        }
        check.emplace_back("--veu");
        return check;
    }

    std::vector<std::string> Simulated(const std::string& contract, const std::string& signers,
                                       const std::string& total, const std::string& largest) const
    {
        return {"simulate", contract,    "--db",  Db(),         "--signers", signers,    "--total",
                total,      "--largest", largest, "--currency", "EUR",       "--explain"};
    }
};

TEST_F(Explain, TellsWhichTestOfWhichRuleStoppedTheOrder)
{
    const Answer answer =
        Run(With(CheckOf("Élodie Lefèvre"), "--total", "64200.00"), {"--explain"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Rule 1 of C-1001\n"
                                "  Asks    FR-0001 alone, total of the file up to 50000.00; one "
                                "signature\n          (profile 0)\n"),
                      HasSubstr("  Found   Élodie Lefèvre [FR-0001] (certificate Élodie Lefèvre)"),
                      HasSubstr("  Result  REFUSES: the total of the file is above its limit."),
                      HasSubstr("total 64200.00, limit\n          50000.00\n"),
                      HasSubstr("  Result  Not concerned: none of its holders has signed."),
                      HasSubstr("Decided   REFUSED: one refusal decides"),
                      HasSubstr("Accepted  if the total is at most 50000.00.\n")));
}

TEST_F(Explain, SpeaksFrench)
{
    const ScopedEnvironment language("SIGNUTILS_LANG", "fr");

    const Answer answer =
        Run(With(CheckOf("Élodie Lefèvre"), "--total", "64200.00"), {"--explain"});

    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Règle 1 du contrat C-1001\n"
                                "  Demande FR-0001 seul, total du fichier jusqu'à 50000.00"),
                      HasSubstr("  Trouvé  Élodie Lefèvre"),
                      HasSubstr("  Effet   REFUSE : le total du fichier dépasse sa limite."),
                      HasSubstr("Décision  REFUSÉ"),
                      HasSubstr("Accepté   si le total est au plus 50000.00.\n")));
}

TEST_F(Explain, TellsTheLimitThatACheckReadsBesideWhatIsWritten)
{
    m_database.Execute(L"UPDATE SSR_CONTRACTRULE SET AMOUNT = '1e3' WHERE CUID = 'C-7001'");
    const auto order = Simulated("C-7001", "Björn Weiß", "900.00", "900.00");

    EXPECT_THAT(Run(order, {}).output,
                AllOf(HasSubstr("total of the file up to 13.00 (written '1e3');"),
                      HasSubstr("if the total is at most 13.00.\n")));
    const ScopedEnvironment language("SIGNUTILS_LANG", "fr");
    EXPECT_THAT(Run(order, {}).output,
                AllOf(HasSubstr("total du fichier jusqu'à 13.00 (écrit '1e3')"),
                      HasSubstr("le total est au plus 13.00.\n")));
}

TEST_F(Explain, ProposesTheOppositionToLift)
{
    const auto json =
        Run(Simulated("C-1001", "Hélène Garçon", "900.00", "900.00"), {"--json"}).Json();

    const auto& explanation = json["decisions"][0]["explanation"];
    EXPECT_EQ(explanation["rules"][2]["ending"], "opposition");
    ASSERT_EQ(explanation["acceptedIf"].size(), 1U);
    EXPECT_EQ(explanation["acceptedIf"][0]["holdersFreed"][0], "FR-0003");
}

TEST_F(Explain, ProposesEveryChangeThatIsNeededTogether)
{
    const Answer answer = Run(Simulated("C-2001", "Jürgen Großmann", "100000.01", "1.00"), {});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(
        answer.output,
        HasSubstr("Accepted  if Käthe Schröder also signs and the total is at most 100000.00.\n"));
}

TEST_F(Explain, ProposesNothingForAnAcceptedOrder)
{
    const Answer answer = Run(CheckOf("Élodie Lefèvre"), {"--explain"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("  Result  ACCEPTS."), Not(HasSubstr("Accepted  "))));
}

TEST_F(Explain, OfADistributedOrderWarnsAtTheFirstSignatureThatNobodyCanCompleteIt)
{
    m_database.Execute(L"UPDATE SSR_HOLDER SET OPPOSITION = '1' WHERE HUID = 'DE-0003'");
    const std::string page = m_folder.Path("page.html");

    const Answer answer = Run(Distributed("Käthe Schröder"), {"--explain", "--html", page});

    EXPECT_EQ(answer.status, 0) << answer.errors; // nothing speaks against her signature
    EXPECT_THAT(answer.output,
                HasSubstr("Decided   ACCEPTED: a rule accepts, and none refuses (verdict 1).\n"
                          "WARNING   nobody can complete this order, whoever signs next. Stop it "
                          "now, or\n          correct the contract: signcheck map and"));
    EXPECT_THAT(ReadWholeFile(page), HasSubstr("<dt>WARNING</dt>\n<dd>nobody can complete"));
    const auto json = Run(Distributed("Käthe Schröder"), {"--explain", "--json"}).Json();
    EXPECT_EQ(json["explanation"]["canBeCompleted"], false);
    EXPECT_EQ(json["verdict"], 1);
    const ScopedEnvironment language("SIGNUTILS_LANG", "fr");
    EXPECT_THAT(Run(Distributed("Käthe Schröder"), {"--explain"}).output,
                HasSubstr("ATTENTION personne ne peut compléter cet ordre"));
}

TEST_F(Explain, OfADistributedOrderThatCanBeCompletedWarnsOfNothing)
{
    const auto before = RecordsWritten();
    for (const char* const signers : {"Käthe Schröder", "Käthe Schröder;Björn Weiß"})
    {
        const Answer answer = Run(Distributed(signers), {"--explain", "--json"});

        EXPECT_EQ(answer.Json()["explanation"]["canBeCompleted"], true) << signers;
        EXPECT_THAT(answer.output, Not(HasSubstr("Obstacle")));
    }
    EXPECT_EQ(RecordsWritten(), before + 4);
    EXPECT_THAT(Run(Distributed("Käthe Schröder"), {"--explain"}).output,
                Not(HasSubstr("WARNING")));
}

TEST_F(Explain, OfARefusedDistributedOrderTellsBoth)
{
    const Answer answer =
        Run(With(Distributed("Käthe Schröder"), "--total", "250000.01"), {"--explain"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, AllOf(HasSubstr("Accepted  if the total is at most 250000.00.\n"),
                                     HasSubstr("WARNING   nobody can complete this order")));
}

TEST_F(Explain, AnOrderThatCameWithAllItsSignaturesHasNoOutlook)
{
    const Answer answer = Run(CheckOf("Élodie Lefèvre"), {"--explain", "--json"});

    EXPECT_TRUE(answer.Json()["explanation"]["canBeCompleted"].is_null());
}

TEST_F(Explain, LeavesTheCheckAsItIs)
{
    const Answer plain = Run(CheckOf("Hélène Garçon"), {"--json"});
    const Answer explained = Run(CheckOf("Hélène Garçon"), {"--json", "--explain"});

    auto json = explained.Json();
    EXPECT_FALSE(json["explanation"]["rules"].empty());
    EXPECT_EQ(explained.status, plain.status);
    EXPECT_EQ(json["rows"], plain.Json()["rows"]);
    // One row and one event each: what was tried for the explanation left none.
    EXPECT_EQ(RecordsWritten(), 4U);
}

TEST_F(Explain, ReadsTheTraceThatACheckHasWritten)
{
    const std::string trace = m_folder.Path("trace.txt");
    Run(CheckOf("Élodie Lefèvre"), {"--trace", trace});
    const Answer explained =
        Run(CheckOf("Hélène Garçon"), {"--trace", trace, "--explain", "--json"});

    // Only the check that was just run, though the trace holds another before it.
    EXPECT_EQ(explained.Json()["explanation"]["signers"][0], "Hélène Garçon");
    const Answer both = RunSigncheck({"explain", trace, "--json"});
    EXPECT_EQ(both.status, 0) << both.errors;
    const auto checks = both.Json()["checks"];
    ASSERT_EQ(checks.size(), 2U);
    EXPECT_EQ(checks[0]["verdict"], 1);
    EXPECT_EQ(checks[1]["verdict"], 2);
    EXPECT_EQ(checks[0]["rules"][0]["ending"], "accepted");
}

TEST_F(Explain, TellsWhichFileMomentAndContractEachCheckOfATraceBelongsTo)
{
    const std::string trace = m_folder.Path("trace.txt");
    const std::string page = m_folder.Path("page.html");
    Run(CheckOf("Élodie Lefèvre"), {"--trace", trace});
    Run(With(CheckOf("Somebody"), "--service", "CCU"), {"--trace", trace, "--requester"});

    const Answer answer = RunSigncheck({"explain", trace, "--html", page});

    const std::string moment = R"([0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8}\.[0-9]{3})";
    EXPECT_THAT(answer.output, StartsWith("Check 1 of 2\n  File    "));
    EXPECT_THAT(Squeezed(answer.output),
                AllOf(HasSubstr(" Under C-1001: partner DUPONTSA, service CCT, client TRESOR, "
                                "protocol EBICS"),
                      HasSubstr(", bank's side Signed Élodie Lefèvre "),
                      HasSubstr(" Check 2 of 2 "),
                      HasSubstr(" Under partner DUPONTSA, service CCU, client TRESOR, protocol "),
                      HasSubstr(", requester's side Signed Somebody ")));
    EXPECT_TRUE(std::regex_search(answer.output, std::regex("\n  Begun   " + moment + "\n")))
        << answer.output;
    EXPECT_THAT(ReadWholeFile(page), AllOf(HasSubstr("<h2>Check 1 of 2</h2>"),
                                           HasSubstr("<dd>C-1001: partner DUPONTSA, service CCT"),
                                           HasSubstr("<h2>Check 2 of 2</h2>")));

    const auto checks = RunSigncheck({"explain", trace, "--json"}).Json()["checks"];
    EXPECT_THAT(checks[0]["file"].get<std::string>(),
                EndsWith(std::filesystem::path(m_order).filename().string()));
    EXPECT_TRUE(std::regex_match(checks[0]["begun"].get<std::string>(), std::regex(moment)));
    EXPECT_EQ(checks[0]["contracts"], nlohmann::json::array({"C-1001"}));
    EXPECT_EQ(checks[0]["partner"], "DUPONTSA");
    EXPECT_EQ(checks[0]["service"], "CCT");
    EXPECT_EQ(checks[0]["client"], "TRESOR");
    EXPECT_EQ(checks[0]["side"], "server");
    EXPECT_EQ(checks[0]["signers"][0], "Élodie Lefèvre");
    EXPECT_TRUE(checks[1]["contracts"].empty());
    EXPECT_EQ(checks[1]["side"], "requester");
}

TEST_F(Explain, TellsInFrenchWhichCheckItWas)
{
    const ScopedEnvironment language("SIGNUTILS_LANG", "fr");
    const std::string trace = m_folder.Path("trace.txt");
    Run(CheckOf("Élodie Lefèvre"), {"--trace", trace});

    const Answer answer = RunSigncheck({"explain", trace});

    EXPECT_THAT(answer.output,
                AllOf(StartsWith("Contrôle 1 sur 1\n  Fichier "), HasSubstr("\n  Début   2"),
                      HasSubstr("\n  Contrat C-1001 : partenaire DUPONTSA, ")));
    EXPECT_THAT(Squeezed(answer.output), HasSubstr(", côté banque Signé Élodie Lefèvre "));
}

TEST_F(Explain, OfATraceThatEndsEarlyTellsWhatItHolds)
{
    const std::string trace =
        m_folder.Write("trace.txt", "[2026-11-22 17:27:19.994 +0 ms] CHECK SIGNATURES RULES\n"
                                    "FileName: order.xml\n");

    const Answer answer = RunSigncheck({"explain", trace, "--json"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    const auto check = answer.Json()["checks"][0];
    EXPECT_EQ(check["file"], "order.xml");
    EXPECT_EQ(check["begun"], "2026-11-22 17:27:19.994");
    EXPECT_TRUE(check["side"].is_null());
    EXPECT_THAT(RunSigncheck({"explain", trace}).output,
                StartsWith("Check 1 of 1\n  File    order.xml\n  Begun   2026-11-22 "
                           "17:27:19.994\n\nSigned    nobody\n"));
}

TEST_F(Explain, WritesAPageThatNeedsNothingElse)
{
    const std::string path = m_folder.Path("page.html");
    const ScopedEnvironment language("SIGNUTILS_LANG", "fr");

    Run(Simulated("C-1001", "Élodie Lefèvre", "64200.00", "900.00"), {"--html", path});

    const std::string page = ReadWholeFile(path);
    EXPECT_THAT(page, AllOf(HasSubstr("<html lang=\"fr\">"), HasSubstr("Règle 1 du contrat C-1001"),
                            HasSubstr("<dd>si le total est au plus 50000.00.</dd>"),
                            Not(HasSubstr("http")), Not(HasSubstr("<script"))));
}

TEST_F(Explain, WritesThePageOfATraceAndOfACheck)
{
    const std::string trace = m_folder.Path("trace.txt");
    const std::string page = m_folder.Path("page.html");
    Run(CheckOf("Hélène Garçon"), {"--trace", trace, "--explain", "--html", page});
    const std::string ofCheck = ReadWholeFile(page);
    RunSigncheck({"explain", trace, "--html", page});

    EXPECT_THAT(ofCheck, HasSubstr("REFUSES: a holder who signed is in opposition."));
    EXPECT_THAT(ReadWholeFile(page), HasSubstr("REFUSES: a holder who signed is in opposition."));
}

TEST_F(Explain, RefusesAPageWithoutAnExplanation)
{
    const Answer answer = Run(CheckOf("Hélène Garçon"), {"--html", m_folder.Path("page.html")});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("option --html"), HasSubstr("--explain")));
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(Explain, ACheckWhosePageHasNoPlaceIsNotBegun)
{
    const Answer answer =
        Run(CheckOf("Hélène Garçon"), {"--explain", "--html", m_folder.Path("missing/page.html")});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("option --html"), HasSubstr("cannot be written")));
    EXPECT_THAT(answer.output, IsEmpty());
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(Explain, PutsAPageInThePlaceOfAPageOnly)
{
    const std::string words = "limits of the year\n";
    const std::string kept = m_folder.Write("limits.toml", words);
    const Answer checked = Run(CheckOf("Hélène Garçon"), {"--explain", "--html", kept});
    const Answer simulated =
        Run(Simulated("C-1001", "Élodie Lefèvre", "64200.00", "900.00"), {"--html", kept});

    for (const Answer& answer : {checked, simulated})
    {
        EXPECT_EQ(answer.status, 64);
        EXPECT_THAT(answer.errors, HasSubstr("no page that signcheck wrote"));
    }
    EXPECT_EQ(ReadWholeFile(kept), words);
    EXPECT_EQ(RecordsWritten(), 0U);

    const std::string empty = m_folder.Write("empty.html", "");
    Run(CheckOf("Hélène Garçon"), {"--explain", "--html", empty});
    EXPECT_THAT(ReadWholeFile(empty), StartsWith("<!DOCTYPE html>"));
}

TEST_F(Explain, RefusesAFileWithoutATrace)
{
    const Answer empty = RunSigncheck({"explain", m_order});
    EXPECT_EQ(empty.status, 1);
    EXPECT_THAT(empty.errors, HasSubstr("holds no check"));

    const Answer missing = RunSigncheck({"explain", m_folder.Path("missing")});
    EXPECT_EQ(missing.status, 64);
    EXPECT_THAT(missing.errors, HasSubstr("there is no file"));
}

struct EndingCase
{
    const char* name;
    const char* contract;
    const char* signers;
    const char* total;
    const char* largest;
    bool isDistributed;
    std::size_t rule;
    const char* ending;
};

void PrintTo(const EndingCase& each, std::ostream* stream)
{
    *stream << each.name;
}

// clang-format off
const EndingCase kEndings[] = {
    {"Accepted", "C-1001", "Élodie Lefèvre", "900.00", "900.00", false, 0, "accepted"},
    {"AllAllowed", "C-1002", "Somebody", "900.00", "900.00", false, 0, "all-allowed"},
    {"NotConcerned", "C-1001", "Somebody", "900.00", "900.00", false, 0, "not-concerned"},
    {"SameCertificate", "C-4001", "Cabinet Lacroix", "900.00", "900.00", false, 0, "same-certificate"},
    {"Opposition", "C-1001", "Hélène Garçon", "900.00", "900.00", false, 2, "opposition"},
    {"TotalAboveLimit", "C-1001", "Élodie Lefèvre", "50000.01", "900.00", false, 0, "total-above-limit"},
    {"LargestAboveLimit", "C-3001", "José Núñez Ibáñez", "4000.00", "3000.01", false, 0, "largest-above-limit"},
    {"SingleSignature", "C-1001", "Élodie Lefèvre;Somebody", "900.00", "900.00", true, 0, "single-signature"},
    {"DoubleSignature", "C-2001", "Käthe Schröder", "900.00", "900.00", false, 0, "double-signature"},
    {"HolderMissing", "C-2001", "Käthe Schröder;Somebody", "900.00", "900.00", false, 0, "holder-missing"},
    {"MustSignAlone", "C-1001", "Élodie Lefèvre;Somebody", "900.00", "900.00", false, 0, "must-sign-alone"},
    {"NotActive", "C-5001", "Somebody", "900.00", "900.00", false, 0, "not-active"},
};
// clang-format on

class ExplainEnding : public Explain, public testing::WithParamInterface<EndingCase>
{
};

TEST_P(ExplainEnding, IsReadFromTheTrace)
{
    const EndingCase& each = GetParam();
    auto arguments = Simulated(each.contract, each.signers, each.total, each.largest);
    if (each.isDistributed)
    {
        arguments.emplace_back("--veu");
    }

    const auto explanation = Run(arguments, {"--json"}).Json()["decisions"][0]["explanation"];

    EXPECT_EQ(explanation["rules"][each.rule]["ending"], each.ending);
}

INSTANTIATE_TEST_SUITE_P(SampleBank, ExplainEnding, testing::ValuesIn(kEndings),
                         [](const auto& each) { return std::string(each.param.name); });

} // namespace
} // namespace testing_support
