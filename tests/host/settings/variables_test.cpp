#include "host/settings/variables.h"

#include "host/refusal.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>

namespace
{

using testing::HasSubstr;
using testing_support::ScopedEnvironment;

const host::OptionSpec& SpecOf(const std::string& option)
{
    return *host::FindOption(*host::FindCommand("check"), option);
}

TEST(SettingVariables, AreNamedAfterTheirOptions)
{
    EXPECT_EQ(host::VariableOf("db"), "SIGNCHECK_DB");
    EXPECT_EQ(host::VariableOf("psr-service"), "SIGNCHECK_PSR_SERVICE");
}

TEST(SettingVariables, GiveAnOptionItsValue)
{
    const ScopedEnvironment partner("SIGNCHECK_PARTNER", "DÉPÔT");

    const auto value = host::FromEnvironment(SpecOf("partner"));

    ASSERT_TRUE(value);
    EXPECT_EQ(value->text, "DÉPÔT");
    EXPECT_EQ(value->origin, "SIGNCHECK_PARTNER");
}

TEST(SettingVariables, SayNothingWhenTheyAreEmpty)
{
    const ScopedEnvironment partner("SIGNCHECK_PARTNER", "");

    EXPECT_FALSE(host::FromEnvironment(SpecOf("partner")));
}

TEST(SettingVariables, OfFlagsAreTrueOrFalse)
{
    {
        const ScopedEnvironment veu("SIGNCHECK_VEU", "false");
        EXPECT_EQ(host::FromEnvironment(SpecOf("veu"))->text, "false");
    }
    const ScopedEnvironment veu("SIGNCHECK_VEU", "yes");
    try
    {
        host::FromEnvironment(SpecOf("veu"));
        ADD_FAILURE() << "it was taken";
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_EQ(refusal.Status(), host::kUsage);
        EXPECT_THAT(refusal.what(), HasSubstr("SIGNCHECK_VEU: 'yes' is neither true nor false."));
    }
}

TEST(SettingVariables, DoNotGiveWhatBelongsToOneOrderOrRun)
{
    for (const std::string option : {"signers", "total", "order-id", "yes", "before"})
    {
        EXPECT_FALSE(host::MayComeFromEnvironment(option)) << option;
    }
    const ScopedEnvironment total("SIGNCHECK_TOTAL", "1.00");
    EXPECT_FALSE(host::FromEnvironment(SpecOf("total")));
}

TEST(SettingVariables, DoNotGiveArguments)
{
    EXPECT_FALSE(host::MayComeFromEnvironment("file"));
    EXPECT_FALSE(host::MayComeFromEnvironment("contract"));
}

} // namespace
