// The history judged again by changed rules, as a user asks for it.

#include "host/text.h"
#include "tests/host/replay/replay_run.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr const char* kLimitOfLefevre =
    R"({ holder1 = "FR-0001", alone = true, amount = "50000.00", level = "file" })";
constexpr const char* kLimitOfWeiss =
    R"({ holder1 = "DE-0003", alone = true, amount = "5000.00", level = "file" })";

std::string Limit(const std::string& rule, const std::string& amount)
{
    const std::string field = "amount = \"";
    const std::size_t begin = rule.find(field) + field.size();
    return rule.substr(0, begin) + amount + rule.substr(rule.find('"', begin));
}

class Replays : public ReplayTest
{
protected:
    /// The bank's rules with another limit.
    std::string Limited(const std::string& rule, const std::string& amount)
    {
        return Replaced(Exported(), rule, Limit(rule, amount));
    }

    std::string WithHolder(const std::string& huid, const std::string& field,
                           const std::string& value)
    {
        std::string text = Exported();
        const std::size_t holder = text.find("[[holder]]\nhuid = \"" + huid + "\"");
        const std::size_t at = text.find("\n" + field + " = ", holder) + 1;
        return text.replace(at, text.find('\n', at) - at, field + " = " + value);
    }
};

/// Whether every number of this kind is 0.
void ExpectNoChange(const nlohmann::json& json)
{
    for (const char* const count :
         {"refused", "accepted", "withoutRule", "dependent", "againstRecord", "notJudged"})
    {
        EXPECT_EQ(json[count], 0) << count;
    }
    EXPECT_TRUE(json["changes"].empty());
}

TEST_F(Replays, ByUnchangedRulesGiveNoChangeAndWriteNothing)
{
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A1");
    Check(kDupont, "Hélène Garçon", "900.00", "A2");
    Check(kDupont, "Paul Martin", "900.00", "A3");
    Check(kDupont, "Élodie Lefèvre;Jean-François Béranger", "900.00", "A4", {"--veu"});
    Check(kBodensee, "Björn Weiß", "20000.00", "B1");
    Check(kBodensee, "Björn Weiß;Siobhan OBrien", "20000.00", "B2");
    Check({"MUELLER", "CCU", "KASSE"}, "Käthe Schröder", "180000.00", "C1", {"--veu"});
    Check({"DUPONTSA", "CCU", "TRESOR"}, "Cabinet Lacroix", "900.00", "D1");
    const auto before = AllTables();

    const Answer answer = Replay(Exported(), {"--json"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    const auto json = answer.Json();
    EXPECT_EQ(json["orders"], 8);
    EXPECT_EQ(json["rows"], 10);
    ExpectNoChange(json);
    EXPECT_EQ(AllTables(), before);
    EXPECT_THAT(m_temporary.Left(), IsEmpty());
}

TEST_F(Replays, TellWhatALowerLimitWouldRefuse)
{
    Check(kDupont, "Élodie Lefèvre", "9000.00", "A1");
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A2");
    const std::string changed = Limited(kLimitOfLefevre, "10000.00");
    const auto before = AllTables();

    const Answer answer = Replay(changed, {"--json"});

    EXPECT_EQ(answer.status, 1) << answer.errors;
    const auto json = answer.Json();
    EXPECT_EQ(json["orders"], 2);
    EXPECT_EQ(json["refused"], 1);
    EXPECT_EQ(json["accepted"], 0);
    ASSERT_EQ(json["changes"].size(), 1U);
    const auto& change = json["changes"][0];
    EXPECT_EQ(change["orderId"], "A2");
    EXPECT_EQ(change["recorded"], "accepted");
    EXPECT_EQ(change["cause"], "rules");
    EXPECT_EQ(change["dependent"], false);
    EXPECT_EQ(change["ways"][0]["before"], "accepted");
    EXPECT_EQ(change["ways"][0]["after"], "refused");
    EXPECT_THAT(change["ways"][0]["reason"].get<std::string>(),
                AllOf(HasSubstr("Rule 1 of C-1001: REFUSES"), HasSubstr("total 12500.00"),
                      HasSubstr("limit 10000.00")));
    EXPECT_EQ(AllTables(), before);
}

TEST_F(Replays, CompareTheLimitItselfAsTheLibraryDoes)
{
    Check(kDupont, "Élodie Lefèvre", "10000.00", "A1");
    Check(kDupont, "Élodie Lefèvre", "10000.01", "A2");

    const auto json = ReplayedJson(Limited(kLimitOfLefevre, "10000.00"));

    ASSERT_EQ(json["changes"].size(), 1U);
    EXPECT_EQ(json["changes"][0]["orderId"], "A2");
}

// Fifteen digits of this total are the limit itself, which would be accepted.
TEST_F(Replays, CompareEveryDigitOfALargeTotalWithTheLimit)
{
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A1");
    m_database.Execute(L"UPDATE HST_SIGNRULES SET TOTAL = 123456789012.98042");

    const std::string before = Limited(kLimitOfLefevre, "123456789012.99");
    ASSERT_EQ(RunSigncheck(
                  {"rules", "apply", m_folder.Write("before.toml", before), "--yes", "--db", Db()})
                  .status,
              0);
    const auto json = ReplayedJson(Replaced(before, "\"123456789012.99\"", "\"123456789012.98\""));

    EXPECT_EQ(json["refused"], 1);
    ASSERT_EQ(json["changes"].size(), 1U);
    EXPECT_EQ(json["changes"][0]["total"], 123456789012.98042);
    EXPECT_EQ(json["changes"][0]["ways"][0]["after"], "refused");
}

TEST_F(Replays, TellWhatAHigherLimitWouldAccept)
{
    Check(kBodensee, "Björn Weiß", "20000.00", "B1");

    const auto json = ReplayedJson(Limited(kLimitOfWeiss, "25000.00"));

    EXPECT_EQ(json["refused"], 0);
    EXPECT_EQ(json["accepted"], 1);
    EXPECT_EQ(json["changes"][0]["rows"], 2);
    EXPECT_THAT(json["changes"][0]["ways"][0]["reason"].get<std::string>(),
                HasSubstr("Rule 1 of C-7001: ACCEPTS"));
}

TEST_F(Replays, TellWhatWouldMeetNoRuleAnyMore)
{
    Check(kDupont, "Élodie Lefèvre", "900.00", "A1");

    const auto json =
        ReplayedJson(Replaced(Exported(), std::string("  ") + kLimitOfLefevre + ",\n", ""));

    EXPECT_EQ(json["withoutRule"], 1);
    EXPECT_EQ(json["refused"], 0);
    EXPECT_THAT(json["changes"][0]["ways"][0]["reason"].get<std::string>(), HasSubstr("NO RULE"));
}

TEST_F(Replays, TellWhatChangedHoldersCauseApart)
{
    Check(kDupont, "Élodie Lefèvre", "900.00", "A1");
    Check(kBodensee, "Björn Weiß", "20000.00", "B1");
    const std::string changed = Replaced(WithHolder("FR-0001", "opposition", "\"1\""),
                                         kLimitOfWeiss, Limit(kLimitOfWeiss, "25000.00"));

    const auto json = ReplayedJson(changed);
    const Answer words = Replay(changed);

    ASSERT_EQ(json["changes"].size(), 2U);
    EXPECT_EQ(json["changes"][0]["orderId"], "B1");
    EXPECT_EQ(json["changes"][0]["cause"], "rules");
    EXPECT_EQ(json["changes"][1]["orderId"], "A1");
    EXPECT_EQ(json["changes"][1]["cause"], "holders");
    EXPECT_THAT(json["changes"][1]["ways"][0]["reason"].get<std::string>(),
                HasSubstr("in opposition"));
    const std::size_t rules = words.output.find("because of changed rules: 1");
    const std::size_t holders = words.output.find("because of changed holders: 1");
    ASSERT_NE(rules, std::string::npos) << words.output;
    ASSERT_NE(holders, std::string::npos);
    EXPECT_LT(rules, words.output.find("  B1  "));
    EXPECT_LT(words.output.find("  B1  "), holders);
    EXPECT_LT(holders, words.output.find("  A1  "));
}

TEST_F(Replays, TellWhatHoldersAndRulesCauseTogether)
{
    Check(kDupont, "Hélène Garçon", "60000.00", "A1");
    const std::string limit =
        R"({ holder1 = "FR-0003", alone = true, amount = "50000.00", level = "file" })";
    const std::string changed =
        Replaced(WithHolder("FR-0003", "opposition", "\"0\""), limit, Limit(limit, "70000.00"));

    const auto json = ReplayedJson(changed);

    ASSERT_EQ(json["accepted"], 1);
    EXPECT_EQ(json["changes"][0]["cause"], "both");
    EXPECT_THAT(Replay(changed).output,
                HasSubstr("because of changed rules and holders together: 1"));
}

TEST_F(Replays, JudgeBothVeuModesUnlessToldWhich)
{
    Check(kBodensee, "Björn Weiß;Siobhan OBrien", "4000.00", "B1");
    const std::string changed = Limited(kLimitOfWeiss, "1000.00");

    const auto both = ReplayedJson(changed);
    const auto on = ReplayedJson(changed, {"--veu-mode", "on"});
    const auto off = ReplayedJson(changed, {"--veu-mode", "off"});

    EXPECT_EQ(both["refused"], 0);
    EXPECT_EQ(both["dependent"], 1);
    EXPECT_EQ(both["changes"][0]["dependent"], true);
    EXPECT_EQ(both["changes"][0]["ways"][0]["veu"], "off");
    EXPECT_EQ(both["changes"][0]["ways"][0]["after"], "accepted");
    EXPECT_EQ(both["changes"][0]["ways"][1]["veu"], "on");
    EXPECT_EQ(both["changes"][0]["ways"][1]["after"], "refused");
    EXPECT_EQ(on["refused"], 1);
    EXPECT_EQ(on["dependent"], 0);
    ExpectNoChange(off);
    EXPECT_THAT(Replay(changed).output,
                AllOf(HasSubstr("order type 1, VEU off: accepted as before"),
                      HasSubstr("order type 1, VEU on: accepted -> refused. Rule 1 of C-7001"),
                      HasSubstr("Depends   1 past order more")));
}

TEST_F(Replays, TakeTheRecordedVerdictForTheVeuModeWhereItTells)
{
    Check(kBodensee, "Björn Weiß;Siobhan OBrien", "20000.00", "B1"); // accepted with VEU off alone
    const std::string pair =
        R"({ holder1 = "DE-0003", holder2 = "IE-0001", alone = false, amount = "50000.00", level = "file" })";

    const auto json = ReplayedJson(Limited(pair, "10000.00"));

    EXPECT_EQ(json["refused"], 1);
    EXPECT_EQ(json["dependent"], 0);
    for (const auto& way : json["changes"][0]["ways"])
    {
        EXPECT_EQ(way["counts"], way["veu"] == "off" && way["type"] == 1) << way;
    }
}

TEST_F(Replays, JudgeEveryOrderTypeUnlessToldWhich)
{
    const std::string second = R"(
[[contract]]
cuid = "C-1009"
partner = "DUPONTSA"
service = "CCT"
client = "TRESOR"
protocol = 9
side = "server"
terms = [ { type = 2, profile = "single", all-holders = false, opposition = "0" } ]
rules = [ { holder1 = "FR-0001", alone = true, amount = "50000.00", level = "file" } ]
)";
    ASSERT_EQ(Rules("apply", second, {"--yes"}).status, 0);
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A1");
    const std::string changed = Replaced(second, kLimitOfLefevre, Limit(kLimitOfLefevre, "100.00"));

    const auto every = ReplayedJson(changed);
    const auto one = ReplayedJson(changed, {"--type", "1"});
    const auto two = ReplayedJson(changed, {"--type", "2"});

    EXPECT_EQ(every["dependent"], 1);
    EXPECT_EQ(every["refused"], 0);
    ExpectNoChange(one);
    EXPECT_EQ(two["refused"], 1);
    EXPECT_THAT(Replay(changed).output,
                HasSubstr("order type 2, VEU off; order type 2, VEU on: accepted -> refused."));
}

TEST_F(Replays, JudgeOrderTypesWithoutTermsByTheContractAlone)
{
    Check({"DANUBE", "CCT", "EINKAUF"}, "Björn Weiß", "900.00", "D1");
    std::string changed = Exported("C-6001");
    changed = Replaced(changed, "all-holders = false", "all-holders = true");

    const auto json = ReplayedJson(changed);

    EXPECT_EQ(json["accepted"], 1);
    EXPECT_EQ(json["changes"][0]["ways"][0]["type"], nullptr);
}

TEST_F(Replays, CountOrdersThatOtherRulesDecidedAtTheTime)
{
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A1");
    const std::string today = Limited(kLimitOfLefevre, "10000.00");
    ASSERT_EQ(Rules("apply", today, {"--yes"}).status, 0);

    const auto json = ReplayedJson(today);

    EXPECT_EQ(json["againstRecord"], 1);
    EXPECT_EQ(json["refused"], 0);
    EXPECT_THAT(Replay(today).output, HasSubstr("Record    1 past order"));
}

TEST_F(Replays, CountOrdersThatCannotBeJudgedAgain)
{
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A1");
    m_database.Execute(L"UPDATE HST_SIGNRULES SET TOTAL = NULL");
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A2");
    m_database.Execute(L"UPDATE HST_SIGNRULES SET VPNAME = 'O''BRIEN' WHERE ORDERID = 'A2'");

    const auto json = ReplayedJson(Limited(kLimitOfLefevre, "10000.00"));

    EXPECT_EQ(json["orders"], 2);
    EXPECT_EQ(json["notJudged"], 2);
    EXPECT_EQ(json["refused"], 0);
}

TEST_F(Replays, CountWhatMayBeSeveralChecksOrPartsOfOne)
{
    Check(kBodensee, "Björn Weiß", "20000.00", "B1"); // two rows
    Check(kBodensee, "Björn Weiß", "20000.00", "B1");
    Check(kDupont, "Élodie Lefèvre", "900.00", "A1");
    Check(kBodensee, "Björn Weiß", "20000.00", "B1");
    m_database.Execute(L"UPDATE HST_SIGNRULES SET DATETIME = '2026-03-29 10:00:00'");

    const std::string changed = Limited(kLimitOfWeiss, "25000.00");
    const auto json = ReplayedJson(changed);
    const Answer words = Replay(changed);

    EXPECT_EQ(json["rows"], 7);
    EXPECT_EQ(json["orders"], 3);
    EXPECT_EQ(json["maybeSeveral"], 1);
    EXPECT_EQ(json["maybeParts"], 1);
    EXPECT_EQ(json["changes"][1]["maybeSeveral"], true);
    EXPECT_EQ(json["changes"][1]["maybePart"], true);
    EXPECT_THAT(words.output,
                AllOf(HasSubstr("1 of them may be\n          several (their rows repeat"),
                      HasSubstr("1 may be parts of\n          others (rows of other checks"),
                      HasSubstr("May be several checks, of rows 1 to 4"),
                      HasSubstr("May be part of a check with a row near by")));
}

TEST_F(Replays, LookAtTheOrdersAskedForOnly)
{
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A1");
    Check(kBodensee, "Björn Weiß", "20000.00", "B1");
    m_database.Execute(L"UPDATE HST_SIGNRULES SET DATETIME = '2025-06-30 10:00:00' "
                       L"WHERE ORDERID = 'A1'");
    const std::string rules = Exported();

    EXPECT_EQ(ReplayedJson(rules, {"--partner", "BODENSEE"})["orders"], 1);
    EXPECT_EQ(ReplayedJson(rules, {"--service", "CCU"})["orders"], 0);
    EXPECT_EQ(ReplayedJson(rules, {"--client", "TRESOR"})["orders"], 1);
    EXPECT_EQ(ReplayedJson(rules, {"--until", "2025-12-31"})["orders"], 1);
    EXPECT_EQ(ReplayedJson(rules, {"--since", "2025-01-01"})["orders"], 2);
}

TEST_F(Replays, KeepWhatTheFileDoesNotNameUnlessToldToRemoveIt)
{
    Check(kDupont, "Élodie Lefèvre", "900.00", "A1");
    const std::string part = Exported("C-7001");

    ExpectNoChange(ReplayedJson(part));
    EXPECT_EQ(ReplayedJson(part, {"--remove"})["withoutRule"], 1);
}

TEST_F(Replays, RefuseWhatIsNoRuleFile)
{
    Check(kDupont, "Élodie Lefèvre", "900.00", "A1");
    const auto before = AllTables();

    const Answer none = RunSigncheck({"replay", "--db", Db()});
    EXPECT_EQ(none.status, 64);
    EXPECT_THAT(none.errors, HasSubstr("option --rules is missing"));

    const Answer missing =
        RunSigncheck({"replay", "--db", Db(), "--rules", m_folder.Path("nothing.toml")});
    EXPECT_EQ(missing.status, 64);
    EXPECT_THAT(missing.errors, AllOf(HasSubstr("option --rules"), HasSubstr("nothing.toml")));

    const Answer toml = Replay("[[holder]\n");
    EXPECT_EQ(toml.status, 1);
    EXPECT_THAT(toml.errors, HasSubstr("replayed.toml, line 1"));

    const Answer field = Replay(Limited(kLimitOfLefevre, "10,000"));
    EXPECT_EQ(field.status, 1);
    EXPECT_THAT(field.errors, AllOf(HasSubstr("field contract.rules.amount"),
                                    HasSubstr("has 1 problem"), HasSubstr("nothing was compared")));
    EXPECT_EQ(AllTables(), before);
}

TEST_F(Replays, RefuseModesAndTypesThatAreNone)
{
    const std::string rules = Exported();

    const Answer mode = Replay(rules, {"--veu-mode", "sideways"});
    EXPECT_EQ(mode.status, 64);
    EXPECT_THAT(mode.errors, AllOf(HasSubstr("--veu-mode"), HasSubstr("off")));
    EXPECT_EQ(Replay(rules, {"--type", "one"}).status, 64);
    EXPECT_EQ(Replay(rules, {"--since", "yesterday"}).status, 64);
}

TEST_F(Replays, NeedAHistory)
{
    const std::string rules = Exported();
    m_database.Execute(L"DROP TABLE HST_SIGNRULES");

    const Answer answer = Replay(rules);

    EXPECT_EQ(answer.status, 3);
    // As the product spells it.
    EXPECT_THAT(answer.errors,
                testing::AnyOf(HasSubstr("HST_SIGNRULES"), HasSubstr("\"hst_signrules\"")));
}

TEST_F(Replays, OfNoHistoryFindNothing)
{
    const Answer answer = Replay(Limited(kLimitOfLefevre, "10000.00"));

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, HasSubstr("0 of 0 past orders would now be refused"));
}

TEST_F(Replays, TellTheirAnswerInLinesOf80Columns)
{
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A234567890");
    Check(kBodensee, "Björn Weiß;Siobhan OBrien", "4000.00", "B1");

    const Answer answer = Replay(Replaced(Limited(kLimitOfLefevre, "10000.00"), kLimitOfWeiss,
                                          Limit(kLimitOfWeiss, "1000.00")));

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output,
                AllOf(testing::StartsWith("1 of 2 past orders would now be refused, 0 newly "
                                          "accepted.\n"),
                      HasSubstr("Compares  what the rules of the database decide today"),
                      HasSubstr("Grouped   2 past orders were put together from 2 history rows."),
                      HasSubstr("accepted -> refused. Rule 1 of C-1001: REFUSES"),
                      HasSubstr("Signers Élodie Lefèvre; largest order 900.00"),
                      HasSubstr("nothing was written to the")));
    std::istringstream lines(answer.output);
    for (std::string line; std::getline(lines, line);)
    {
        EXPECT_LE(host::DisplayWidth(line), 80U) << line;
    }
}

TEST_F(Replays, TellReasonsInTheLanguageOfTheMessages)
{
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A1");
    const std::string changed = Limited(kLimitOfLefevre, "10000.00");
    const ScopedEnvironment french("SIGNUTILS_LANG", "fr");

    const auto json = ReplayedJson(changed);

    EXPECT_THAT(json["changes"][0]["ways"][0]["reason"].get<std::string>(),
                HasSubstr("Règle 1 du contrat C-1001"));
}

TEST_F(Replays, GiveOneLineOfJsonWhenAsked)
{
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A1");

    const Answer answer =
        Replay(Limited(kLimitOfLefevre, "10000.00"), {"--output-format", "ndjson"});

    EXPECT_EQ(answer.output.find('\n'), answer.output.size() - 1);
    EXPECT_EQ(answer.Json()["refused"], 1);
}

// Different amounts between the same limits are asked about once, and yet told by themselves.
TEST_F(Replays, AskOnceAboutOrdersThatNoRuleTellsApart)
{
    Check(kDupont, "Élodie Lefèvre", "12500.00", "A1");
    const auto one = ReplayedJson(Limited(kLimitOfLefevre, "10000.00"), {"--partner", "NOBODY"});
    const std::string changed = Limited(kLimitOfLefevre, "10000.00");
    const auto asked = [&] { return ReplayedJson(changed)["judged"].get<int>(); };
    const int first = asked();

    Check(kDupont, "Élodie Lefèvre", "9000.00", "A2");
    const int second = asked();
    Check(kDupont, "Élodie Lefèvre", "8000.00", "A3");
    const int third = asked();

    EXPECT_EQ(one["judged"], 0);
    EXPECT_GT(first, 0);
    EXPECT_GT(second, first);
    EXPECT_EQ(third, second);
}

} // namespace
} // namespace testing_support
