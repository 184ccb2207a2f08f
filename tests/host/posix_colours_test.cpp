// Colours stand on a terminal and nowhere else.

#include "tests/host/shell_world.h"

#include <gmock/gmock.h>

#include <regex>

namespace testing_support
{
namespace
{

using testing::HasSubstr;
using testing::Not;

#define TERMS "--partner DUPONTSA --service CCT --client TRESOR --protocol 9 --type 1 --format auto"
#define CHECK "signcheck check order.xml " TERMS " --signers \\\"Élodie Lefèvre\\\""

constexpr char kGreen[] = "\x1b[32m";
constexpr char kRed[] = "\x1b[31m";
constexpr char kYellow[] = "\x1b[33m";

class PosixColours : public ShellWorldTest
{
protected:
    PosixColours() : m_noColour("NO_COLOR", nullptr), m_terminal("TERM", "xterm") {}

    /// What a terminal shows of the command, outputs and messages together.
    std::string OnTerminal(const std::string& command) const
    {
        return RunInCopy("script -qec \"" + command + "\" /dev/null").output;
    }

    std::string Piped(const std::string& command) const
    {
        const Answer answer = RunInCopy("sh -c \"" + command + "\"");
        return answer.output + answer.errors;
    }

    ScopedEnvironment m_noColour;
    ScopedEnvironment m_terminal;
};

TEST_F(PosixColours, OfAVerdictStandOnATerminal)
{
    EXPECT_THAT(OnTerminal(CHECK),
                HasSubstr(std::string("Decided   ") + kGreen + "ACCEPTED\x1b[0m: the signatures"));
    EXPECT_THAT(OnTerminal("signcheck simulate C-1001 --signers nobody --total 1 --largest 1 "
                           "--currency EUR"),
                HasSubstr(std::string(kYellow) + "NO RULE\x1b[0m"));
    EXPECT_THAT(OnTerminal("cp refused.xml orders; signcheck batch orders " TERMS
                           " --signers \\\"Élodie Lefèvre\\\""),
                HasSubstr(std::string(kRed) + "REFUSED\x1b[0m     "));
}

TEST_F(PosixColours, OfErrorsAndWarningsStandOnATerminal)
{
    EXPECT_THAT(OnTerminal("signcheck history --limit x"),
                HasSubstr(std::string(kRed) + "signcheck:\x1b[0m option --limit"));
    EXPECT_THAT(OnTerminal("signcheck check order.xml " TERMS " --signers \\\"\\\""),
                HasSubstr(std::string(kYellow) + "WARNING:\x1b[0m"));
}

// A bar that wrapped would leave its first line behind each time it is drawn.
TEST_F(PosixColours, OfABarAreNotCountedWhereItIsCutAtTheEndOfTheLine)
{
    const std::string shown = OnTerminal("stty cols 40; signcheck batch orders " TERMS
                                         " --signers \\\"Élodie Lefèvre\\\"");
    const std::string before = "\r\x1b[K";
    std::size_t bars = 0;
    for (std::size_t at = shown.find(before); at != std::string::npos; at = shown.find(before, at))
    {
        at += before.size();
        const std::string line = shown.substr(at, shown.find_first_of("\r\n", at) - at);
        if (line.starts_with("[") && line.find("/1 files") != std::string::npos)
        {
            EXPECT_EQ(std::regex_replace(line, std::regex("\x1b\\[[0-9]*m"), "").size(), 39U)
                << line;
            ++bars;
        }
    }
    EXPECT_GT(bars, 0U) << shown;
}

TEST_F(PosixColours, StandInNoPipe)
{
    EXPECT_THAT(Piped(CHECK), Not(HasSubstr("\x1b")));
    EXPECT_THAT(Piped("signcheck history --limit x"), Not(HasSubstr("\x1b")));
}

TEST_F(PosixColours, AreLeftOutWhereNoColorIsSet)
{
    const ScopedEnvironment noColour("NO_COLOR", "1");

    EXPECT_THAT(OnTerminal(CHECK), Not(HasSubstr("\x1b")));
}

TEST_F(PosixColours, AreLeftOutOnATerminalWithoutAny)
{
    const ScopedEnvironment terminal("TERM", "dumb");

    EXPECT_THAT(OnTerminal(CHECK), Not(HasSubstr("\x1b")));
}

TEST_F(PosixColours, AreAskedForAndForbiddenByTheOption)
{
    EXPECT_THAT(OnTerminal(CHECK " --color never"), Not(HasSubstr("\x1b")));
    EXPECT_THAT(Piped(CHECK " --color always"), HasSubstr(kGreen));
    const ScopedEnvironment noColour("NO_COLOR", "1");
    EXPECT_THAT(Piped(CHECK " --color always"), HasSubstr(kGreen));
}

TEST_F(PosixColours, ComeFromTheSettingsToo)
{
    const ScopedEnvironment colour("SIGNCHECK_COLOR", "never");

    EXPECT_THAT(OnTerminal(CHECK), Not(HasSubstr("\x1b")));
}

TEST_F(PosixColours, NeverStandInWhatProgramsRead)
{
    for (const std::string format : {"json", "ndjson"})
    {
        const Answer answer =
            RunInCopy("sh -c \"" CHECK " --color always --output-format " + format + "\"");
        EXPECT_EQ(answer.status, 0) << answer.errors;
        EXPECT_THAT(answer.output, Not(HasSubstr("\\u001b")));
        EXPECT_THAT(answer.output, Not(HasSubstr("\x1b")));
    }
    for (const std::string format : {"json", "ndjson", "csv"})
    {
        EXPECT_THAT(OnTerminal("signcheck history --color always --format " + format),
                    Not(HasSubstr("\x1b")));
    }
}

TEST_F(PosixColours, RefuseAnotherChoice)
{
    const Answer answer = RunInCopy("signcheck history --color red");

    EXPECT_EQ(answer.status, 64);
    EXPECT_EQ(answer.errors,
              "signcheck: option --color: 'red' is none of the choices. Give one of: "
              "auto, always, never.\n");
}

} // namespace
} // namespace testing_support
