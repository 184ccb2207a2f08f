// Completion in the shells themselves, and pages as man shows them. What is not installed here is
// left out.

#include "host/manual/completion.h"
#include "host/manual/pages.h"
#include "tests/testing/platform.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

struct Said
{
    int status = -1;
    std::vector<std::string> lines;
    std::string errors;
};

class Shells : public testing::Test
{
protected:
    Said Run(const std::string& program, const std::vector<std::string>& arguments) const
    {
        Said said;
        said.status =
            RunProgram(program, arguments, m_folder.Path("output"), m_folder.Path("errors"));
        std::istringstream output(ReadWholeFile(m_folder.Path("output")));
        for (std::string line; std::getline(output, line);)
        {
            said.lines.push_back(line);
        }
        said.errors = ReadWholeFile(m_folder.Path("errors"));
        return said;
    }

    bool IsInstalled(const std::string& program) const
    {
        return Run("sh", {"-c", "command -v " + program}).status == 0;
    }

    TemporaryFolder m_folder;
};

class BashCompletion : public Shells
{
protected:
    /// What is offered for the last of these words, as bash splits them.
    std::vector<std::string> OfferedFor(const std::vector<std::string>& words) const
    {
        const std::string file = m_folder.Write("signcheck.bash", manual::BashCompletion());
        std::vector<std::string> arguments = {
            "-c",
            "cd \"$1\"; source \"$0\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); "
            "_signcheck; [ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\\n' \"${COMPREPLY[@]}\"",
            file, m_folder.Path()};
        arguments.insert(arguments.end(), words.begin(), words.end());
        const Said said = Run("bash", arguments);
        EXPECT_EQ(said.errors, "");
        return said.lines;
    }
};

TEST_F(BashCompletion, OffersCommands)
{
    EXPECT_THAT(OfferedFor({"signcheck", "hist"}), ElementsAre("history"));
    EXPECT_THAT(OfferedFor({"signcheck", ""}),
                AllOf(Contains("check"), Contains("rules"), Not(Contains("export"))));
}

TEST_F(BashCompletion, OffersTheSecondWordOfAGroup)
{
    EXPECT_THAT(OfferedFor({"signcheck", "rules", ""}),
                AllOf(Contains("export"), Contains("apply"), Not(Contains("check"))));
    EXPECT_THAT(OfferedFor({"signcheck", "report", "c"}), ElementsAre("check"));
}

TEST_F(BashCompletion, OffersTheOptionsOfTheCommand)
{
    EXPECT_THAT(OfferedFor({"signcheck", "history", "--am"}),
                ElementsAre("--amount-from", "--amount-to"));
    EXPECT_THAT(OfferedFor({"signcheck", "rules", "diff", "rules.toml", "--ef"}),
                ElementsAre("--effect"));
}

TEST_F(BashCompletion, OffersChoicesBehindABlankAndBehindASign)
{
    EXPECT_THAT(OfferedFor({"signcheck", "history", "--format", ""}),
                ElementsAre("table", "json", "ndjson", "csv"));
    EXPECT_THAT(OfferedFor({"signcheck", "history", "--format", "="}),
                ElementsAre("table", "json", "ndjson", "csv"));
    EXPECT_THAT(OfferedFor({"signcheck", "history", "--format", "=", "n"}), ElementsAre("ndjson"));
    EXPECT_THAT(OfferedFor({"signcheck", "history", "--verdict", "r"}), ElementsAre("refused"));
    EXPECT_THAT(OfferedFor({"signcheck", "check", "x.xml", "--format", "=", "CFONB/1"}),
                ElementsAre("CFONB/160"));
}

TEST_F(BashCompletion, OffersFilesAndFolders)
{
    m_folder.Write("an order.xml", "");
    std::filesystem::create_directories(m_folder.Path("anteroom"));

    EXPECT_THAT(OfferedFor({"signcheck", "amounts", "an"}),
                UnorderedElementsAre("an order.xml", "anteroom"));
    EXPECT_THAT(OfferedFor({"signcheck", "watch", "an"}), ElementsAre("anteroom"));
    EXPECT_THAT(OfferedFor({"signcheck", "check", "x.xml", "--trace", "an"}),
                UnorderedElementsAre("an order.xml", "anteroom"));
}

TEST_F(BashCompletion, OffersNothingWhereItKnowsNothing)
{
    EXPECT_THAT(OfferedFor({"signcheck", "history", "--partner", ""}), IsEmpty());
    EXPECT_THAT(OfferedFor({"signcheck", "nonsense", ""}), IsEmpty());
}

TEST_F(Shells, ZshTakesItsCompletion)
{
    if (!IsInstalled("zsh"))
    {
        GTEST_SKIP() << "zsh is not installed";
    }
    const std::string file = m_folder.Write("_signcheck", manual::ZshCompletion());

    const Said said = Run("zsh", {"-f", "-n", file});

    EXPECT_EQ(said.status, 0);
    EXPECT_EQ(said.errors, "");
}

TEST_F(Shells, FishOffersCommandsOptionsAndChoices)
{
    if (!IsInstalled("fish"))
    {
        GTEST_SKIP() << "fish is not installed";
    }
    const ScopedEnvironment home("HOME", m_folder.Path().c_str());
    const std::string file = m_folder.Write("signcheck.fish", manual::FishCompletion());
    const auto offeredFor = [&](const std::string& line)
    {
        const Said said = Run("fish", {"--no-config", "-c",
                                       "source " + file + "; complete -C '" + line +
                                           "' | string replace -r '\\t.*' ''"});
        EXPECT_EQ(said.errors, "");
        return said.lines;
    };

    EXPECT_THAT(offeredFor("signcheck hist"), ElementsAre("history"));
    EXPECT_THAT(offeredFor("signcheck rules ex"), ElementsAre("export"));
    EXPECT_THAT(offeredFor("signcheck history --amount-f"), ElementsAre("--amount-from"));
    EXPECT_THAT(offeredFor("signcheck rules diff --ef"), ElementsAre("--effect"));
    EXPECT_THAT(offeredFor("signcheck history --format c"), ElementsAre("csv"));
    EXPECT_THAT(offeredFor("signcheck history --format "),
                UnorderedElementsAre("table", "json", "ndjson", "csv"));
}

TEST_F(Shells, ManShowsEveryPageWithoutAWarning)
{
    if (!IsInstalled("man") || !IsInstalled("groff"))
    {
        GTEST_SKIP() << "man or groff is not installed";
    }
    const ScopedEnvironment language("LC_ALL", "C.UTF-8");
    const ScopedEnvironment width("MANWIDTH", "80");
    for (const manual::Page& page : manual::Pages())
    {
        const std::string file = m_folder.Write(page.name + ".1", page.text);
        const Said said = Run("man", {"--warnings=w", "-E", "UTF-8", "-l", "-Tutf8", file});
        EXPECT_EQ(said.status, 0) << page.name;
        EXPECT_EQ(said.errors, "") << page.name;
        EXPECT_GT(said.lines.size(), 20U) << page.name;
    }
}

} // namespace
} // namespace testing_support
