// Explanations that are ended in the middle. Processes are started and signalled as POSIX does.

#include "database/cdatabase.h"
#include "database/dialect.h"
#include "host/query.h"
#include "host/refusal.h"
#include "host/rulebook/rule_book_writer.h"
#include "host/scratch/leftovers.h"
#include "tests/host/authority/large_contract.h"
#include "tests/host/authority/temporary_files_in.h"
#include "tests/host/signcheck_process.h"
#include "tests/host/started_command.h"
#include "tests/testing/file_mode.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <filesystem>

namespace testing_support
{
namespace
{

using scratch::Leftover;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Some hundred thousand sets of changes to try: minutes of work.
constexpr std::size_t kHolders = 80;
// A row for each of the three rules that name the signer, and an event.
constexpr std::size_t kRecordsOfACheck = 4;

class PosixExplain : public SampleBankTest
{
protected:
    PosixExplain() : m_where{Db(), "the bank", "option --db"}, m_temporary(m_copies.Path())
    {
        m_source.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        rulebook::WriteRuleBook(m_source, LargeContract(kHolders));
    }

    std::vector<std::string> Check() const
    {
        return {"check",     m_order, "--db",       Db(),       "--partner",  "LARGE",
                "--service", "CCT",   "--client",   "LARGE",    "--protocol", "9",
                "--type",    "1",     "--signers",  "Holder 0", "--total",    "70000.00",
                "--largest", "1.00",  "--currency", "EUR",      "--explain"};
    }

    std::vector<std::string> Simulation() const
    {
        return {"simulate", "C-9001",    "--db", Db(),         "--signers", "Holder 0", "--total",
                "70000.00", "--largest", "1.00", "--currency", "EUR",       "--explain"};
    }

    std::vector<Leftover> LeftBy(pid_t process, const std::string& kind)
    {
        std::vector<Leftover> left = scratch::LeftoverFiles();
        const auto more = scratch::LeftoversIn(m_source, m_where);
        left.insert(left.end(), more.begin(), more.end());
        std::erase_if(left,
                      [&](const Leftover& each)
                      {
                          return each.parts.process != static_cast<std::uint32_t>(process) ||
                                 (each.kind == "trace file") != (kind == "trace file");
                      });
        return left;
    }

    /// Whether it looks for what would have been accepted by now: the copy is there.
    bool IsLookingForRemedies(const StartedCommand& command)
    {
        return ComesToHold([&] { return !LeftBy(command.Process(), "copy").empty(); });
    }

    /// Whether the copy of the process holds more than the check that it was made for.
    bool HasTriedAChange(pid_t process)
    {
        const auto copies = LeftBy(process, "copy");
        if (copies.empty())
        {
            return false;
        }
        std::size_t checks = 0;
        try
        {
            CDatabase copy;
            copy.OpenEx(("Driver=SQLite3;Database=" + copies[0].name).c_str(),
                        CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
            host::ForEachRow(copy, m_where, "SELECT STATUT FROM HST_SIGNRULES", {"STATUT"},
                             [&checks](const host::QueryRow&)
                             {
                                 ++checks;
                                 return true;
                             });
        }
        catch (const host::Refusal&)
        {
            return false; // its tables are not all there
        }
        return checks > 1;
    }

    /// Has its name tell a day long ago.
    static void MakeOld(const std::string& path)
    {
        std::string old = path;
        const std::string begin = "signcheck_scratch_";
        old.replace(old.find(begin) + begin.size(), 8, "20260329");
        std::filesystem::rename(path, old);
    }

    host::Connection m_where;
    TemporaryFolder m_copies;
    TemporaryFilesIn m_temporary;
    CDatabase m_source;
};

TEST_F(PosixExplain, AnInterruptedSearchLeavesTheDecisionToldAndItsStatus)
{
    for (const int signal : {SIGINT, SIGTERM})
    {
        SCOPED_TRACE(signal);
        StartedCommand command(m_folder.Path(), Check());
        ASSERT_TRUE(IsLookingForRemedies(command));

        command.Signal(signal);

        EXPECT_EQ(command.End(), 1);
        EXPECT_THAT(command.Output(),
                    AllOf(HasSubstr("history rows in HST_SIGNRULES"),
                          HasSubstr("Rule 1 of C-9001\n"), HasSubstr("  Result  REFUSES"),
                          HasSubstr("the search was interrupted."),
                          Not(HasSubstr("nothing was written"))));
        EXPECT_THAT(command.Errors(), IsEmpty());
        EXPECT_THAT(m_temporary.Left(), IsEmpty());
    }
    EXPECT_EQ(RecordsWritten(), 2 * kRecordsOfACheck);
}

TEST_F(PosixExplain, AnInterruptedSimulationTellsTheTypesThatItJudged)
{
    if (m_source.GetDialect().product != database::Product::Sqlite)
    {
        GTEST_SKIP() << "looks into the copy, which is a file on SQLite";
    }
    m_source.ExecuteSQLW(L"INSERT INTO SSR_CONTRACTCUR SELECT * FROM SSR_CONTRACTCUR WHERE "
                         L"CUID = 'C-9001'");
    m_source.ExecuteSQLW(L"UPDATE SSR_CONTRACTCUR SET TYPE = 2 WHERE ROWID = (SELECT MAX(ROWID) "
                         L"FROM SSR_CONTRACTCUR)");
    StartedCommand command(m_folder.Path(), Simulation());
    ASSERT_TRUE(ComesToHold([&] { return HasTriedAChange(command.Process()); }));

    command.Signal(SIGINT);

    EXPECT_EQ(command.End(), 3);
    EXPECT_THAT(command.Output(),
                AllOf(HasSubstr("C-9001, order type 1:"), HasSubstr("Decided   REFUSED"),
                      HasSubstr("the search was interrupted."), Not(HasSubstr("order type 2"))));
    EXPECT_THAT(command.Errors(), HasSubstr("interrupted; nothing was written to the database."));
    EXPECT_THAT(m_temporary.Left(), IsEmpty());
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(PosixExplain, ATraceThatKeepsNothingLeavesTheCheckAsItIs)
{
    auto arguments = Check();
    arguments.insert(arguments.end(), {"--trace", "/dev/null"});

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("the check is done, but cannot be explained"),
                                     HasSubstr("'/dev/null'"), HasSubstr("--trace")));
    EXPECT_EQ(RecordsWritten(), kRecordsOfACheck);
}

TEST_F(PosixExplain, AKilledCheckLeavesATraceThatDoctorRemoves)
{
    const ScopedMask open(0);
    StartedCommand command(m_folder.Path(), Check());
    ASSERT_TRUE(IsLookingForRemedies(command));
    const pid_t process = command.Process();

    command.Signal(SIGKILL);

    EXPECT_EQ(command.End(), 256 + SIGKILL);
    const auto left = LeftBy(process, "trace file");
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(ModeOf(left[0].name), 0600U);
    const Answer told = RunSigncheck({"doctor", "--db", Db()});
    EXPECT_THAT(told.output, AllOf(HasSubstr("trace file"), HasSubstr("Delete the file, or")));
    EXPECT_THAT(ReadWholeFile(left[0].name), HasSubstr("CHECK SIGNATURES RULES"));

    MakeOld(left[0].name);
    RunSigncheck({"doctor", "--db", Db(), "--remove-leftovers", "1d"});

    EXPECT_THAT(LeftBy(process, "trace file"), IsEmpty());
}

class PosixExplainWithoutPlaces : public PosixExplain
{
protected:
    void SkipWhereCopiesAreNoFiles()
    {
        if (m_source.GetDialect().product != database::Product::Sqlite)
        {
            GTEST_SKIP() << "on a server a copy needs no folder";
        }
    }

    Answer Explained(const std::vector<std::string>& more = {}) const
    {
        auto arguments = Check();
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Run(arguments);
    }

    Answer Run(const std::vector<std::string>& arguments) const
    {
        StartedCommand command(m_folder.Path(), arguments);
        const int status = command.End();
        return {status, command.Output(), command.Errors()};
    }

    ScopedEnvironment m_nowhere{"TMPDIR", m_folder.Path("missing").c_str()};
    ScopedEnvironment m_progress{"SIGNCHECK_PROGRESS", m_folder.Path("progress").c_str()};
};

TEST_F(PosixExplainWithoutPlaces, ACheckIsStillToldRuleByRule)
{
    SkipWhereCopiesAreNoFiles();

    const Answer answer = Explained();

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("history rows in HST_SIGNRULES"), HasSubstr("Rule 1 of C-9001\n"),
                      HasSubstr("  Result  REFUSES"), HasSubstr("Decided   REFUSED: one refusal"),
                      HasSubstr("Accepted  not found out: a copy of the rules"),
                      HasSubstr("TMPDIR"), HasSubstr("stands."),
                      Not(HasSubstr("nothing was written"))));
    EXPECT_THAT(answer.errors, IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(m_folder.Path("progress")));
    EXPECT_EQ(RecordsWritten(), kRecordsOfACheck);
}

TEST_F(PosixExplainWithoutPlaces, TheMissingProposalsAreNamedInJsonAndFrench)
{
    SkipWhereCopiesAreNoFiles();
    const ScopedEnvironment language("SIGNUTILS_LANG", "fr");

    const auto explanation = Explained({"--json"}).Json()["explanation"];

    EXPECT_TRUE(explanation["acceptedIf"].is_null());
    EXPECT_THAT(explanation["acceptedIfObstacle"].get<std::string>(), HasSubstr("TMPDIR"));
    EXPECT_EQ(explanation["rules"][0]["ending"], "total-above-limit");
    EXPECT_THAT(Explained().output, AllOf(HasSubstr("Accepté   non recherché : "),
                                          HasSubstr("demeure. signcheck simulate")));
}

TEST_F(PosixExplainWithoutPlaces, AnAcceptedDistributedOrderIsToldWithoutItsOutlook)
{
    SkipWhereCopiesAreNoFiles();
    auto check =
        With(With(With(CheckOf("Käthe Schröder"), "--partner", "MUELLER"), "--service", "CCU"),
             "--client", "KASSE");
    check.insert(check.end(), {"--veu", "--explain"});

    const Answer answer = Run(check);

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Outlook   not found out whether the order can still be completed: "
                                "a copy"),
                      HasSubstr("TMPDIR"), Not(HasSubstr("WARNING"))));
    check.emplace_back("--json");
    const auto explanation = Run(check).Json()["explanation"];
    EXPECT_TRUE(explanation["canBeCompleted"].is_null());
    EXPECT_THAT(explanation["canBeCompletedObstacle"].get<std::string>(), HasSubstr("TMPDIR"));
}

TEST_F(PosixExplainWithoutPlaces, ACheckWhoseTraceHasNoneIsToldWithoutItsRules)
{
    const ScopedEnvironment progress("SIGNCHECK_PROGRESS", m_order.c_str()); // a file, no folder

    const Answer answer = Explained();

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.output, HasSubstr("history rows in HST_SIGNRULES"));
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("the check is done, but cannot be explained: no trace can be"),
                      HasSubstr("TMPDIR"), Not(HasSubstr("nothing was written"))));
    EXPECT_EQ(RecordsWritten(), kRecordsOfACheck);
}

} // namespace
} // namespace testing_support
