#include "host/config_file.h"

#include "host/refusal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace
{

using testing::AllOf;
using testing::HasSubstr;

host::OptionValues ValuesOf(const std::string& toml, const std::string& command = "check")
{
    const host::CommandSpec& spec = *host::FindCommand(command);
    const host::ConfigFile file = host::ReadConfigText(toml, "bank.toml");
    host::OptionValues values;
    for (const host::OptionSpec& option : spec.options)
    {
        for (const host::OptionValue& value : file.AllOf(spec, option.name))
        {
            values.AddUnlessThere(option.name, value);
        }
    }
    return values;
}

std::string TextOf(const host::OptionValues& values, const std::string& name)
{
    const host::OptionValue* value = values.Find(name);
    return value == nullptr ? "(none)" : value->text;
}

std::string RefusalOfToml(const std::string& toml)
{
    try
    {
        ValuesOf(toml);
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_EQ(refusal.Status(), host::kUsage);
        return refusal.what();
    }
    return "accepted";
}

TEST(SettingsFile, GivesEveryKindOfOption)
{
    const auto values = ValuesOf("partner = \"DUPONTSA\"\nprotocol = 9\nveu = true\n"
                                 "requester = false\ntotal = \"1500.10\"\nlargest = 800\n");

    EXPECT_EQ(TextOf(values, "partner"), "DUPONTSA");
    EXPECT_EQ(TextOf(values, "protocol"), "9");
    EXPECT_TRUE(values.IsOn("veu"));
    EXPECT_FALSE(values.IsOn("requester"));
    EXPECT_EQ(TextOf(values, "total"), "1500.10");
    EXPECT_EQ(TextOf(values, "largest"), "800");
}

TEST(SettingsFile, ACommandsTableGoesBeforeTheTop)
{
    const std::string toml = "partner = \"TOP\"\n[check]\npartner = \"CHECK\"\n[history]\n"
                             "partner = \"HISTORY\"\n";

    EXPECT_EQ(TextOf(ValuesOf(toml, "check"), "partner"), "CHECK");
    EXPECT_EQ(TextOf(ValuesOf(toml, "history"), "partner"), "HISTORY");
    EXPECT_EQ(TextOf(ValuesOf(toml, "events"), "partner"), "TOP");
}

TEST(SettingsFile, TopKeysOfOtherCommandsAreLeftOut)
{
    EXPECT_EQ(TextOf(ValuesOf("limit = 5\n", "check"), "limit"), "(none)");
}

TEST(SettingsFile, TellsWhatTheTopSaysBelowACommandsTable)
{
    const host::ConfigFile file =
        host::ReadConfigText("partner = \"TOP\"\n[check]\npartner = \"CHECK\"\n", "bank.toml");

    const auto said = file.AllOf(*host::FindCommand("check"), "partner");

    ASSERT_EQ(said.size(), 2U);
    EXPECT_EQ(said[0].text, "CHECK");
    EXPECT_EQ(said[1].text, "TOP");
}

TEST(SettingsFile, OriginNamesFileLineAndField)
{
    const auto values = ValuesOf("\n\n[check]\npartner = \"DUPONTSA\"\n");

    EXPECT_EQ(values.Find("partner")->origin, "bank.toml, line 4, field check.partner");
}

TEST(SettingsFile, UnknownKeysAreRefusedWithTheNearestName)
{
    EXPECT_THAT(RefusalOfToml("\npartnr = \"X\"\n"),
                AllOf(HasSubstr("bank.toml, line 2, field partnr: unknown field"),
                      HasSubstr("Did you mean partner?")));
    EXPECT_THAT(RefusalOfToml("[check]\nlimit = 3\n"),
                HasSubstr("bank.toml, line 2, field check.limit: unknown field"));
}

TEST(SettingsFile, UnknownKeysOfOtherCommandsAreRefusedToo)
{
    EXPECT_THAT(RefusalOfToml("[history]\nverdikt = \"x\"\n"), HasSubstr("Did you mean verdict?"));
}

TEST(SettingsFile, UnknownTablesAreRefused)
{
    EXPECT_THAT(RefusalOfToml("[chek]\npartner = \"X\"\n"),
                AllOf(HasSubstr("bank.toml, line 1"), HasSubstr("unknown table [chek]"),
                      HasSubstr("Did you mean check?")));
}

TEST(SettingsFile, CannotNameAnotherSettingsFile)
{
    EXPECT_THAT(RefusalOfToml("config = \"other.toml\"\n"),
                HasSubstr("field config: unknown field"));
}

TEST(SettingsFile, WrongTypesAreRefusedWithTheRightForm)
{
    EXPECT_THAT(RefusalOfToml("protocol = \"9\"\n"),
                AllOf(HasSubstr("bank.toml, line 1, field protocol"),
                      HasSubstr("expected a whole number, found text. Write protocol = 9.")));
    EXPECT_THAT(RefusalOfToml("partner = 5\n"),
                HasSubstr("expected text in quotes, found a whole number. Write partner = \"…\"."));
    EXPECT_THAT(RefusalOfToml("veu = \"yes\"\n"),
                HasSubstr("expected true or false, found text. Write veu = true."));
    EXPECT_THAT(RefusalOfToml("signers = [\"A\", \"B\"]\n"), HasSubstr("found a list"));
    EXPECT_THAT(RefusalOfToml("since = 2026-03-29\n[check]\n"), HasSubstr("found a date or time"));
}

TEST(SettingsFile, AmountsWithDecimalsStandInQuotes)
{
    EXPECT_THAT(RefusalOfToml("total = 1500.10\n"),
                HasSubstr("expected an amount in quotes, found a number with decimals. Write "
                          "total = \"1500.00\"."));
}

TEST(SettingsFile, BrokenLinesAreRefusedWithTheirPlace)
{
    EXPECT_THAT(RefusalOfToml("partner = \"X\"\nservice =\n"), HasSubstr("bank.toml, line 2"));
    EXPECT_THAT(RefusalOfToml("partner = \"X\"\npartner = \"Y\"\n"),
                HasSubstr("bank.toml, line 2"));
}

TEST(SettingsFile, MalformedUtf8IsRefused)
{
    EXPECT_THAT(RefusalOfToml("partner = \"\xE9\"\n"), HasSubstr("bank.toml, line 1"));
}

} // namespace
