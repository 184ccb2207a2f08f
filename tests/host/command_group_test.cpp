// Commands of two words: their group, its help and their tables in a settings file.

#include "host/command_table.h"
#include "host/exit_status_table.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using CommandGroup = SampleBankTest;

TEST_F(CommandGroup, AloneItListsItsCommands)
{
    const Answer answer = RunSigncheck({"rules"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("signcheck rules does nothing by itself"),
                                     HasSubstr("export, validate")));
}

TEST_F(CommandGroup, AnUnknownCommandIsNamedWithTheNearestOne)
{
    const Answer answer = RunSigncheck({"rules", "exprot"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("unknown command 'rules exprot'"),
                                     HasSubstr("Did you mean rules export?")));
}

TEST_F(CommandGroup, TheHelpOfACommandEndsWithExamples)
{
    const Answer answer = RunSigncheck({"rules", "export", "--help"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("--contract"),
                      HasSubstr("Examples:\n  The whole bank:\n    signcheck rules export"),
                      HasSubstr("signcheck rules export --contract C-1001\n")));
}

// Those of the commands' own help, which are run.
TEST_F(CommandGroup, TheHelpOfSigncheckAndOfAGroupHasExamplesToo)
{
    std::set<std::string> lines;
    for (const host::CommandSpec& command : host::Commands())
    {
        for (const host::Example& example : command.examples)
        {
            lines.insert(example.line);
        }
    }
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--help"}, {"rules", "--help"}, {"report", "--help"}})
    {
        std::istringstream help(RunSigncheck(arguments).output);
        std::size_t examples = 0;
        for (std::string line; std::getline(help, line);)
        {
            if (line.starts_with("    signcheck "))
            {
                EXPECT_TRUE(lines.contains(line.substr(4))) << line;
                ++examples;
            }
        }
        EXPECT_GE(examples, 1U) << arguments.front();
    }
}

std::string StatusLine(const host::Ending& ending)
{
    std::string number = std::to_string(ending.status);
    number.resize(4, ' ');
    return "\n  " + number + ending.meaning + "\n";
}

TEST_F(CommandGroup, TheHelpTellsEveryExitStatus)
{
    const std::string every = RunSigncheck({"--help"}).output;
    for (const host::Ending& ending : host::EveryEnding())
    {
        EXPECT_THAT(every, HasSubstr(StatusLine(ending)));
    }
    const std::string ofBatch = RunSigncheck({"batch", "--help"}).output;
    for (const host::Ending& ending : host::EndingsOf(*host::FindCommand("batch")))
    {
        EXPECT_THAT(ofBatch, HasSubstr(StatusLine(ending)));
    }
}

TEST_F(CommandGroup, ASettingsFileHasItsCommandsInTablesOfItsOwn)
{
    const std::string file =
        m_folder.Write("set.toml", "[rules.export]\ncontract = \"C-2001\"\n[history]\nlimit = 3\n");

    const Answer answer = RunSigncheck({"rules", "export", "--db", Db(), "--config", file});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, AllOf(HasSubstr("\"C-2001\""), Not(HasSubstr("\"C-1001\""))));
}

TEST_F(CommandGroup, AnUnknownTableOfAGroupIsRefused)
{
    const std::string table =
        m_folder.Write("table.toml", "[rules.exprot]\ncontract = \"C-2001\"\n");
    const std::string field = m_folder.Write("field.toml", "[rules]\nexport = 1\n");
    const std::string option = m_folder.Write("option.toml", "[rules.export]\ncontrat = \"C\"\n");

    const auto errorsOf = [this](const std::string& file) {
        return RunSigncheck({"rules", "export", "--db", Db(), "--config", file}).errors;
    };

    EXPECT_THAT(errorsOf(table),
                AllOf(HasSubstr("table.toml, line 1"), HasSubstr("unknown table [rules exprot]"),
                      HasSubstr("Did you mean rules export?")));
    EXPECT_THAT(errorsOf(field), HasSubstr("field.toml, line 2, field rules.export"));
    EXPECT_THAT(errorsOf(option), AllOf(HasSubstr("field rules.export.contrat"),
                                        HasSubstr("Did you mean contract?")));
}

} // namespace
} // namespace testing_support
