// The examples at the end of each command's help do what they say.

#include "tests/host/shell_world.h"

#include "host/command_table.h"
#include "host/exit_status.h"

#include <gmock/gmock.h>

namespace testing_support
{
namespace
{

using testing::HasSubstr;

class PosixExamples : public ShellWorldTest
{
protected:
    // A watcher goes on until it is told to end; a question is asked at a terminal only.
    Answer Run(const std::string& line) const
    {
        if (line.starts_with("signcheck watch"))
        {
            return RunUntil("ACCEPTED", line);
        }
        return RunInCopy(line == "signcheck rules apply rules.toml"
                             ? "echo yes | script -qec '" + line + "' /dev/null"
                             : line);
    }
};

// Examples that show a refusal or a finding end with it.
int ExpectedStatus(const std::string& line)
{
    const bool isRefused = line.find(" --explain") != std::string::npos;
    return isRefused || line.starts_with("signcheck lint") ? host::kFindings : host::kDone;
}

TEST_F(PosixExamples, OfEveryCommandRun)
{
    for (const host::CommandSpec& command : host::Commands())
    {
        ASSERT_FALSE(command.examples.empty()) << command.name;
        for (const host::Example& example : command.examples)
        {
            EXPECT_THAT(example.line,
                        testing::StartsWith(std::string("signcheck ") + command.name));
            const Answer answer = Run(example.line);
            EXPECT_EQ(answer.status, ExpectedStatus(example.line))
                << example.line << "\n"
                << answer.output << answer.errors;
        }
    }
}

TEST_F(PosixExamples, StandAtTheEndOfEveryCommandsHelp)
{
    for (const host::CommandSpec& command : host::Commands())
    {
        const Answer answer = RunInCopy(std::string("signcheck ") + command.name + " --help");
        EXPECT_EQ(answer.status, 0);
        const std::size_t at = answer.output.find("\nExamples:\n");
        ASSERT_NE(at, std::string::npos) << command.name;
        for (const host::Example& example : command.examples)
        {
            EXPECT_THAT(answer.output.substr(at), HasSubstr(example.line));
        }
    }
}

} // namespace
} // namespace testing_support
