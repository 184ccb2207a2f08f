// What the completion of each shell knows; posix_shells_test.cpp runs it.

#include "host/manual/completion.h"

#include "host/command_table.h"
#include "host/event_row.h"
#include "host/history_row.h"
#include "host/manual/completed_value.h"
#include "host/manual/shell_words.h"
#include "host/order_format.h"
#include "host/statusreport/form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace
{

using testing::HasSubstr;

/// The part of a file that is about one command.
std::string PartOf(const std::string& file, const std::string& begin, const std::string& end)
{
    const std::size_t at = file.find(begin);
    EXPECT_NE(at, std::string::npos) << begin;
    return at == std::string::npos ? "" : file.substr(at, file.find(end, at) - at);
}

TEST(Completion, OfBashAndZshKnowsEveryOptionOfEveryCommand)
{
    for (const std::string& file : {manual::BashCompletion(), manual::ZshCompletion()})
    {
        for (const host::CommandSpec& command : host::Commands())
        {
            const std::string part =
                PartOf(file, std::string("    '") + command.name + "')\n", "\n        ;;\n");
            for (const host::OptionSpec& option : command.options)
            {
                for (const std::string& name : manual::DashedNamesOf(option))
                {
                    if (!option.positional)
                    {
                        EXPECT_THAT(part, HasSubstr(name)) << command.name;
                    }
                }
            }
        }
    }
}

TEST(Completion, OfFishKnowsEveryOptionOfEveryCommand)
{
    const std::string file = manual::FishCompletion();
    for (const host::CommandSpec& command : host::Commands())
    {
        for (const host::OptionSpec& option : command.options)
        {
            for (const std::string& name : manual::DashedNamesOf(option))
            {
                if (!option.positional)
                {
                    EXPECT_THAT(file, HasSubstr(std::string("-n '__signcheck_in ") + command.name +
                                                "' -l " + name.substr(2) + " "));
                }
            }
        }
    }
}

TEST(Completion, OfEachShellKnowsEveryCommand)
{
    for (const std::string& file :
         {manual::BashCompletion(), manual::ZshCompletion(), manual::FishCompletion()})
    {
        for (const manual::FirstWord& word : manual::FirstWords())
        {
            EXPECT_THAT(file, HasSubstr(word.word));
            for (const manual::FirstWord& further : word.further)
            {
                EXPECT_THAT(file, HasSubstr(further.word));
            }
        }
    }
}

TEST(Completion, OfEachShellKnowsHelpAndVersionByThemselves)
{
    EXPECT_THAT(manual::BashCompletion(), HasSubstr(" --help --version'"));
    EXPECT_THAT(manual::ZshCompletion(),
                HasSubstr("'--help:list the commands' '--version:show the version'"));
    EXPECT_THAT(manual::FishCompletion(), HasSubstr("'__signcheck_is' -l version"));
}

TEST(Completion, OfEachShellOffersTheChoicesOfAFilter)
{
    for (const auto& [command, option] :
         {std::pair{"history", "verdict"}, std::pair{"events", "level"},
          std::pair{"reports", "status"}, std::pair{"check", "format"},
          std::pair{"batch", "format"}, std::pair{"amounts", "format"}})
    {
        const host::OptionSpec* const spec = host::FindOption(*host::FindCommand(command), option);
        ASSERT_NE(spec, nullptr);
        EXPECT_EQ(manual::CompletedValueOf(*spec), manual::Completed::Choices) << command;
        const std::string choices = manual::Joined(manual::ChoicesOf(*spec));
        for (const std::string& file :
             {manual::BashCompletion(), manual::ZshCompletion(), manual::FishCompletion()})
        {
            EXPECT_THAT(file, HasSubstr(choices));
        }
    }
}

// What the shells offer is taken.
TEST(Completion, EveryChoiceIsOneOfTheCommands)
{
    const auto choicesOf = [](const char* command, const char* option)
    { return manual::ChoicesOf(*host::FindOption(*host::FindCommand(command), option)); };
    for (const std::string& verdict : choicesOf("history", "verdict"))
    {
        EXPECT_NO_THROW(host::VerdictFrom({verdict, "option --verdict"})) << verdict;
    }
    for (const std::string& level : choicesOf("events", "level"))
    {
        EXPECT_NO_THROW(host::LevelFrom({level, "option --level"})) << level;
    }
    for (const std::string& status : choicesOf("reports", "status"))
    {
        EXPECT_NE(statusreport::FindStatus(status), nullptr) << status;
    }
    std::string formats;
    for (const std::string& format : choicesOf("check", "format"))
    {
        formats += format == "auto" ? "" : (formats.empty() ? "" : ", ") + format;
    }
    EXPECT_EQ(formats, host::KnownOrderFormats());
}

TEST(Completion, QuotesWhatHasAMeaningToTheShell)
{
    EXPECT_EQ(manual::InSingleQuotes("a user's $x"), "'a user'\\''s $x'");
    EXPECT_EQ(manual::InFishQuotes("a user's \\x"), "'a user\\'s \\\\x'");
}

} // namespace
