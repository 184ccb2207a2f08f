// Which orders a change of rules decides otherwise, told before it is made.

#include "tests/host/rulebook/rule_file_run.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class RulesEffect : public RuleFileTest
{
protected:
    nlohmann::json EffectOf(const std::string& toml, const std::vector<std::string>& more = {})
    {
        std::vector<std::string> options = {"--effect", "--json"};
        options.insert(options.end(), more.begin(), more.end());
        const Answer answer = Rules("diff", toml, options);
        EXPECT_LE(answer.status, 1) << answer.errors;
        return answer.Json()["effect"];
    }

    // "signers | veu | amounts: before -> after", one a line
    static std::string Lines(const nlohmann::json& effect)
    {
        std::string lines;
        for (const auto& each : effect["redecided"])
        {
            lines += each["signers"].get<std::string>() + " | " + each["veu"].get<std::string>() +
                     " | " + each["amounts"].get<std::string>() + ": " +
                     each["before"].get<std::string>() + " -> " + each["after"].get<std::string>() +
                     "\n";
        }
        return lines;
    }
};

TEST_F(RulesEffect, ARaisedLimitAcceptsTheAmountsBetween)
{
    const auto effect = EffectOf(Replaced(Exported("C-7001"), "\"50000.00\"", "\"75000.00\""));

    // One by one, Björn Weiß's own limit of 5000.00 still refuses the pair.
    EXPECT_EQ(Lines(effect),
              "Siobhán O'Brien | any | total above 50000.00, up to 75000.00: refused -> accepted\n"
              "Björn Weiß + Siobhán O'Brien | off | total above 50000.00, up to 75000.00: refused "
              "-> accepted\n"
              "Siobhán O'Brien + anyone else | on | total above 50000.00, up to 75000.00: refused "
              "-> accepted\n");
    EXPECT_EQ(effect["contractsNotJudged"], 0);
}

TEST_F(RulesEffect, ARaisedLimitBehindALowerOneAcceptsNothing)
{
    const std::string rules = "  { holder1 = \"FR-0001\", alone = true, amount = \"100000.00\", "
                              "level = \"file\" },\n]\n";
    const std::string toml = Exported("C-1001");

    const auto effect = EffectOf(toml.substr(0, toml.rfind("]")) + rules);

    EXPECT_THAT(effect["redecided"], IsEmpty());
    EXPECT_GT(effect["ordersJudged"], 0);
}

TEST_F(RulesEffect, OppositionReachesEveryContractThatNamesTheHolder)
{
    std::string toml = Exported("C-7001");
    toml.erase(toml.find("\n[[contract]]"));
    std::string holder = toml.substr(toml.find("huid = \"DE-0003\""));
    holder = "[[holder]]\n" + holder.substr(0, holder.find("\n[[holder]]"));

    const auto effect = EffectOf(Replaced(holder, "opposition = \"0\"", "opposition = \"1\""));

    EXPECT_EQ(effect["contractsJudged"], 2); // C-2002 and C-7001
    const std::string lines = Lines(effect);
    EXPECT_THAT(lines, HasSubstr("Björn Weiß | any | total up to 5000.00: accepted -> refused"));
    EXPECT_THAT(lines, HasSubstr("Käthe Schröder + Björn Weiß | any | total up to 250000.00: "
                                 "accepted -> refused"));
}

TEST_F(RulesEffect, ANewCertificateIsTheHoldersToo)
{
    const auto effect = EffectOf(Replaced(Exported("C-1001"),
                                          "{ name = \"Élodie Lefèvre\", serial = \"4A01\", expires "
                                          "= 2027-06-30 }",
                                          "{ name = \"Lefèvre E\" }"));

    const std::string lines = Lines(effect);
    EXPECT_THAT(lines, HasSubstr("Élodie Lefèvre [FR-0001, former certificate] | any | total up to "
                                 "50000.00: accepted -> no rule"));
    EXPECT_THAT(lines, HasSubstr("Élodie Lefèvre [FR-0001, new certificate] | any | total up to "
                                 "50000.00: no rule -> accepted"));
}

TEST_F(RulesEffect, ALastNameDecidesNothing)
{
    const auto effect = EffectOf(Replaced(Exported("C-7001"), "\"Weiß\"", "\"Roth\""));

    EXPECT_THAT(effect["redecided"], IsEmpty());
    EXPECT_EQ(effect["contractsJudged"], 0);
}

TEST_F(RulesEffect, AContractThatGoesLeavesNoRule)
{
    const Answer whole = Rules("diff", Exported(), {"--effect", "--json"});
    EXPECT_THAT(whole.Json()["effect"]["redecided"], IsEmpty());
    std::string toml = Exported();
    const std::size_t begin = toml.find("\n[[contract]]\ncuid = \"C-3001\"");
    toml.erase(begin, toml.find("\n[[contract]]", begin + 1) - begin);

    const auto effect = EffectOf(toml, {"--remove"});

    EXPECT_THAT(Lines(effect), HasSubstr("José Núñez Ibáñez | any | largest order up to 3000.00: "
                                         "accepted -> no rule"));
}

TEST_F(RulesEffect, ALargeChangeTellsWhatWasNotJudged)
{
    std::string toml;
    for (int number = 0; number < 22; ++number)
    {
        const std::string name = std::to_string(100 + number);
        toml += "[[contract]]\ncuid = \"N" + name + "\"\npartner = \"N" + name +
                "\"\nservice = \"S\"\nclient = \"C\"\nprotocol = 9\nside = \"server\"\n"
                "terms = [ { type = 1 } ]\n";
    }

    const Answer answer = Rules("diff", toml, {"--effect"});

    EXPECT_THAT(answer.output, HasSubstr("Effect: no order of those that were judged is decided "
                                         "otherwise."));
    EXPECT_THAT(answer.output, HasSubstr("WARNING: only 20 of the contracts"));
}

TEST_F(RulesEffect, ApplyTellsItBeforeItWrites)
{
    const Answer answer =
        Rules("apply", Replaced(Exported("C-7001"), "\"50000.00\"", "\"75000.00\""), {"--yes"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    const std::size_t effect = answer.output.find("Effect: these orders are decided otherwise");
    EXPECT_LT(answer.output.find("contract C-7001 changed"), effect);
    EXPECT_LT(effect, answer.output.find("Done: the database holds what the file says."));
    EXPECT_THAT(answer.output,
                HasSubstr("  Björn Weiß + Siobhán O'Brien, VEU off\n"
                          "      total above 50000.00, up to 75000.00: refused -> accepted\n"));
}

} // namespace
} // namespace testing_support
