#include "host/settings/unknown_variables.h"

#include "host/command_table.h"
#include "host/settings/variables.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>

#include <memory>

namespace
{

using testing::IsEmpty;
using testing::SizeIs;
using testing_support::ScopedEnvironment;

std::vector<host::UnknownVariable> WhenSet(const std::string& name)
{
    const ScopedEnvironment variable(name, "x");
    return host::UnknownVariables();
}

struct Misspelling
{
    const char* set;
    const char* meant;
};

constexpr Misspelling kMisspellings[] = {
    {"SIGNCHECK_PARNTER", "SIGNCHECK_PARTNER"},   {"SIGNCHECK_DBB", "SIGNCHECK_DB"},
    {"SIGNCHECK_HANDOFF", "SIGNCHECK_HAND_OFF"},  {"SIGNCHECK_LIMITS", "SIGNCHECK_LIMIT"},
    {"SIGNCHECK_PROGRES", "SIGNCHECK_PROGRESS"},  {"SIGNCHECK_PARTN", "SIGNCHECK_PARTNER"},
    {"SIGNCHECK_HAND-OFF", "SIGNCHECK_HAND_OFF"},
};

TEST(UnknownVariables, NameTheOneThatIsMeant)
{
    for (const Misspelling& each : kMisspellings)
    {
        const auto unknown = WhenSet(each.set);
        ASSERT_THAT(unknown, SizeIs(1)) << each.set;
        EXPECT_EQ(unknown[0].meant, each.meant);
        EXPECT_TRUE(unknown[0].IsMistake());
        EXPECT_EQ(host::InWords(unknown[0]),
                  std::string(each.set) + " is not known; did you mean " + each.meant + "?");
    }
}

// What a cluster sets for each service, here one of the name signcheck, and what scripts call
// theirs.
TEST(UnknownVariables, AreNoMistakesWhereNoNameIsNear)
{
    for (const char* const name :
         {"SIGNCHECK_SERVICE_HOST", "SIGNCHECK_SERVICE_PORT", "SIGNCHECK_PORT",
          "SIGNCHECK_PORT_8080_TCP_ADDR", "SIGNCHECK_HOME", "SIGNCHECK_"})
    {
        const auto unknown = WhenSet(name);
        ASSERT_THAT(unknown, SizeIs(1)) << name;
        EXPECT_FALSE(unknown[0].IsMistake()) << unknown[0].meant;
        EXPECT_EQ(host::InWords(unknown[0]), std::string(name) + " is not known.");
    }
}

TEST(UnknownVariables, SayThatWhatBelongsToOneRunIsNotRead)
{
    for (const char* const name : {"SIGNCHECK_TOTAL", "SIGNCHECK_SIGNERS", "SIGNCHECK_YES"})
    {
        const auto unknown = WhenSet(name);
        ASSERT_THAT(unknown, SizeIs(1)) << name;
        EXPECT_TRUE(unknown[0].IsMistake());
        EXPECT_EQ(host::InWords(unknown[0]), std::string(name) +
                                                 " is not read: what belongs to one order or run "
                                                 "is given on the command line.");
    }
}

TEST(UnknownVariables, AreNoneOfThoseThatAreRead)
{
    std::vector<std::unique_ptr<ScopedEnvironment>> all;
    for (const host::CommandSpec& command : host::Commands())
    {
        for (const host::OptionSpec& option : command.options)
        {
            if (host::MayComeFromEnvironment(option.name))
            {
                all.push_back(
                    std::make_unique<ScopedEnvironment>(host::VariableOf(option.name), "true"));
            }
        }
    }
    const ScopedEnvironment progress("SIGNCHECK_PROGRESS", "x");

    EXPECT_THAT(host::UnknownVariables(), IsEmpty());
    while (!all.empty())
    {
        all.pop_back(); // the last first, since a name comes more than once
    }
}

TEST(UnknownVariables, AreNoneOfOthers)
{
    for (const char* const name : {"SIGNUTILS_PARNTER", "MY_SIGNCHECK_PARNTER", "SIGNCHECKER"})
    {
        EXPECT_THAT(WhenSet(name), IsEmpty()) << name;
    }
}

TEST(UnknownVariables, AreNoneWhileTheyAreEmpty)
{
    const ScopedEnvironment variable("SIGNCHECK_PARNTER", "");

    EXPECT_THAT(host::UnknownVariables(), IsEmpty());
}

} // namespace
