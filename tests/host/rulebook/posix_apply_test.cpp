// signcheck rules apply while it works out what the change does. Processes are started and
// signalled as POSIX does.

#include "database/cdatabase.h"
#include "host/rulebook/rule_file_writer.h"
#include "tests/host/authority/large_contract.h"
#include "tests/host/authority/temporary_files_in.h"
#include "tests/host/rulebook/rule_file_run.h"
#include "tests/host/started_command.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class PosixApply : public RuleFileTest
{
protected:
    PosixApply() : m_temporary(m_copies.Path()) {}

    std::string FileOf(std::size_t holders) const
    {
        const rulebook::RuleBook book = LargeContract(holders);
        std::string toml;
        for (const rulebook::Holder& holder : book.holders)
        {
            toml += rulebook::RuleFileTable(holder) + "\n";
        }
        return m_folder.Write("large.toml", toml + rulebook::RuleFileTable(book.contracts[0]));
    }

    TemporaryFolder m_copies;
    TemporaryFilesIn m_temporary;
};

// Hours of work.
constexpr std::size_t kManyHolders = 60;

TEST_F(PosixApply, ShowsTheChangeBeforeItsEffectAndChangesNothingWhenInterrupted)
{
    const std::vector<std::vector<std::string>> commands = {
        {"rules", "apply", FileOf(kManyHolders), "--db", Db(), "--yes"},
        {"rules", "diff", FileOf(kManyHolders), "--db", Db(), "--effect"}};
    const auto before = AllTables();
    for (const auto& arguments : commands)
    {
        SCOPED_TRACE(arguments[1]);
        StartedCommand command(m_folder.Path(), arguments);
        ASSERT_TRUE(ComesToHold(
            [&]
            {
                return command.Output().find("Contracts: 1 added") != std::string::npos &&
                       !m_temporary.Left().empty();
            }));

        command.Signal(SIGINT);

        EXPECT_EQ(command.End(), 3);
        EXPECT_THAT(command.Output(),
                    AllOf(StartsWith("holder LARGE-0 added"), Not(HasSubstr("Effect"))));
        EXPECT_THAT(command.Errors(), HasSubstr("interrupted; nothing was written"));
        EXPECT_THAT(m_temporary.Left(), IsEmpty());
        EXPECT_EQ(AllTables(), before);
    }
}

TEST_F(PosixApply, WithoutTheEffectChangesALargeContractAtOnce)
{
    const Answer answer = RunSigncheck(
        {"rules", "apply", FileOf(kManyHolders), "--db", Db(), "--yes", "--no-effect"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, AllOf(HasSubstr("contract C-9001 added"), Not(HasSubstr("Effect")),
                                     HasSubstr("Done: the database holds what the file says.")));
}

TEST_F(PosixApply, LongSearchesTellAtATerminalHowFarTheyAre)
{
    ASSERT_EQ(
        RunSigncheck({"rules", "apply", FileOf(24), "--db", Db(), "--yes", "--no-effect"}).status,
        0);
    const std::string run = m_folder.Write(
        "run.sh", std::string("exec '") + SIGNCHECK_PROGRAM + "' pending C-9001 --db '" + Db() +
                      "' --signers 'Holder 0' --total 70000 --largest 1 --currency EUR\n");
    const std::string shown = m_folder.Path("shown");
    const std::string command =
        "script -qec 'sh " + run + "' /dev/null </dev/null >" + shown + " 2>&1";

    EXPECT_NE(std::system(command.c_str()), -1);

    const std::string text = ReadWholeFile(shown);
    EXPECT_THAT(text, HasSubstr("/350 sets of further signers, "));
    EXPECT_THAT(text, HasSubstr(" left, Ctrl-C ends it"));
    // The line is gone before the answer comes.
    const std::size_t last = text.rfind("Ctrl-C ends it");
    EXPECT_THAT(text.substr(last), StartsWith("Ctrl-C ends it\r\x1B[KContract"));
}

} // namespace
} // namespace testing_support
