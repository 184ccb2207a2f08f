// What the completion of each shell knows; posix_shells_test.cpp runs it.

#include "host/manual/completion.h"

#include "host/command_table.h"
#include "host/manual/completed_value.h"
#include "host/manual/shell_words.h"

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

TEST(Completion, QuotesWhatHasAMeaningToTheShell)
{
    EXPECT_EQ(manual::InSingleQuotes("a user's $x"), "'a user'\\''s $x'");
    EXPECT_EQ(manual::InFishQuotes("a user's \\x"), "'a user\\'s \\\\x'");
}

} // namespace
