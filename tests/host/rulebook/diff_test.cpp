// signcheck rules diff: what a rule file would change.

#include "tests/host/rulebook/rule_file_run.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;

using RulesDiff = RuleFileTest;

TEST_F(RulesDiff, AnExportDiffersInNothing)
{
    const Answer answer = Rules("diff", Exported());

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.output, "No difference.\n");
}

TEST_F(RulesDiff, AChangedRuleIsShownWithBothItsLines)
{
    const Answer answer = Rules("diff", Replaced(Exported("C-7001"), "5000.00\"", "6000.00\""));

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.output, R"(contract C-7001 changed
  -   { holder1 = "DE-0003", alone = true, amount = "5000.00", level = "file" },
  +   { holder1 = "DE-0003", alone = true, amount = "6000.00", level = "file" },

Holders: 0 added, 0 changed, 0 removed.
Contracts: 0 added, 1 changed, 0 removed.
10 holders and 9 contracts of the database are not in the file and stay as they
are.
)");
}

TEST_F(RulesDiff, ALineThatIsTooLongForATerminalGoesOnBelow)
{
    const Answer answer =
        Rules("diff", Replaced(Exported("C-7001"), "\"50000.00\"", "\"75000.00\""));

    EXPECT_THAT(answer.output, HasSubstr(R"(
  -   { holder1 = "DE-0003", holder2 = "IE-0001", alone = false,
  -     amount = "50000.00", level = "file" },
  +   { holder1 = "DE-0003", holder2 = "IE-0001", alone = false,
  +     amount = "75000.00", level = "file" },
)"));
}

TEST_F(RulesDiff, TheOrderOfRulesIsADifference)
{
    const std::string first =
        "  { holder1 = \"FR-0001\", alone = true, amount = \"50000.00\", level = \"file\" },\n";
    const std::string second =
        "  { holder1 = \"FR-0002\", alone = true, amount = \"10000.00\", level = \"file\" },\n";

    const Answer answer =
        Rules("diff", Replaced(Exported("C-1001"), first + second, second + first));

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, HasSubstr(R"(contract C-1001 changed
  -   { holder1 = "FR-0001", alone = true, amount = "50000.00",
  -     level = "file" },
  +   { holder1 = "FR-0001", alone = true, amount = "50000.00",
  +     level = "file" },
)"));
}

TEST_F(RulesDiff, NewHoldersAndContractsAreShownWhole)
{
    const Answer answer = Rules("diff", R"([[holder]]
huid = "N-1"
[[contract]]
cuid = "C-9"
partner = "NEW"
service = "S"
client = "C"
protocol = 9
side = "server"
terms = [ { type = 1 } ]
)");

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("holder N-1 added\n  + huid = \"N-1\"\n\n"),
                      HasSubstr("contract C-9 added\n  + cuid = \"C-9\"\n  + partner = \"NEW\"\n"),
                      HasSubstr("Contracts: 1 added, 0 changed, 0 removed.")));
}

TEST_F(RulesDiff, WhatTheFileDoesNotNameGoesOnlyWhenAsked)
{
    const std::string part = Exported("C-7001");

    EXPECT_EQ(Rules("diff", part).status, 0);
    const Answer answer = Rules("diff", part, {"--remove"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, AllOf(HasSubstr("contract C-1001 removed\n  - cuid = \"C-1001\"\n"),
                                     HasSubstr("Holders: 0 added, 0 changed, 10 removed."),
                                     HasSubstr("Contracts: 0 added, 0 changed, 9 removed.")));
}

TEST_F(RulesDiff, AHolderWhoGoesCannotBeNamedByARuleThatStays)
{
    std::string part = Exported("C-7001");
    const std::size_t holders = part.find("\n[[holder]]");
    part.erase(holders, part.find("\n[[contract]]") - holders);

    EXPECT_EQ(Rules("diff", part).status, 0);
    const Answer answer = Rules("diff", part, {"--remove"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("the holder 'DE-0003' is not known"),
                                     HasSubstr("nothing was compared or changed")));
    EXPECT_EQ(answer.output, "");
}

TEST_F(RulesDiff, IsOneJsonObjectWhereJsonIsAskedFor)
{
    const Answer answer =
        Rules("diff", Replaced(Exported("C-7001"), "\"Björn\"", "\"Bjørn\""), {"--json"});

    EXPECT_EQ(answer.status, 1);
    const auto holder = answer.Json()["holders"][0];
    EXPECT_EQ(holder["id"], "DE-0003");
    EXPECT_EQ(holder["change"], "changed");
    EXPECT_EQ(holder["lines"][0]["sign"], "-");
    EXPECT_EQ(holder["lines"][1]["text"], "first-name = \"Bjørn\"");
    EXPECT_EQ(answer.Json()["otherContracts"], 9);
}

TEST_F(RulesDiff, AFileWithProblemsIsNotCompared)
{
    const Answer answer = Rules("diff", "[[holder]]\nhuid = 1\n[[holder]]\nhuid = 2\n");

    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.output, "");
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("rules.toml, line 2, field holder.huid"),
                      HasSubstr("rules.toml, line 4, field holder.huid"), HasSubstr("2 problems")));
}

TEST_F(RulesDiff, ADatabaseThatCannotBeReadIsTold)
{
    const std::string path = m_folder.Write("rules.toml", "");

    EXPECT_EQ(RunSigncheck({"rules", "diff", path}).status, 64);
    EXPECT_EQ(RunSigncheck({"rules", "diff", path, "--db", "Driver=NoSuchDriver"}).status, 3);
}

} // namespace
} // namespace testing_support
