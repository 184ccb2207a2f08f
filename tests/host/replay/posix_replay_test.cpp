// Replays that are ended in the middle. Processes are started and signalled as POSIX does.

#include "database/cdatabase.h"
#include "host/scratch/leftovers.h"
#include "tests/host/replay/replay_run.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace testing_support
{
namespace
{

using scratch::Leftover;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto kLongest = std::chrono::seconds(60);
// Each with a signer of its own, so that each has to be asked about: seconds of work.
constexpr int kOrders = 3000;

class PosixReplay : public ReplayTest
{
protected:
    PosixReplay() : m_where{Db(), "the bank", "option --db"}
    {
        m_source.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        m_database.Execute(L"BEGIN");
        for (int order = 0; order < kOrders; ++order)
        {
            const std::wstring number = std::to_wstring(order);
            m_database.Execute(
                L"INSERT INTO HST_SIGNRULES (DATETIME, SERVER, STATUT, VPNAME, TYPE_PTC, VFNAME, "
                L"VCNAME, IDFICVFS, ORDERID, TYPE_CTRL, SIGNER1, SIGNER2, MOTIF, CNS, TOTAL, "
                L"MAXORDER, FILENAME) VALUES ('2026-03-29 10:00:00', 1, '0', 'DUPONTSA', 9, 'CCT', "
                L"'TRESOR', 0, '" +
                number + L"', 0, ' ', ' ', '', 'Signer " + number + L"', 900, 900, 'order.xml')");
        }
        m_database.Execute(L"COMMIT");
    }

    std::vector<Leftover> Copies()
    {
        std::vector<Leftover> copies = scratch::LeftoverFiles();
        const auto more = scratch::LeftoversIn(m_source, m_where);
        copies.insert(copies.end(), more.begin(), more.end());
        return copies;
    }

    /// Starts a replay and waits until it has made its copies.
    void Start()
    {
        const std::string rules = m_folder.Write("replayed.toml", Exported());
        std::vector<std::string> texts = {SIGNCHECK_PROGRAM, "replay", "--rules=" + rules,
                                          "--db=" + Db(), "--json"};
        std::vector<char*> arguments;
        for (std::string& text : texts)
        {
            arguments.push_back(text.data());
        }
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        const int mode = O_WRONLY | O_CREAT | O_TRUNC;
        posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, m_output.c_str(), mode, 0600);
        posix_spawn_file_actions_addopen(&files, STDERR_FILENO, m_errors.c_str(), mode, 0600);
        EXPECT_EQ(posix_spawn(&m_process, arguments[0], &files, nullptr, arguments.data(), environ),
                  0);
        posix_spawn_file_actions_destroy(&files);
        ASSERT_GT(m_process, 1);
        const auto end = std::chrono::steady_clock::now() + kLongest;
        while (Copies().size() < 2 && std::chrono::steady_clock::now() < end)
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
    }

    /// The exit status, once it has ended by itself.
    int End()
    {
        int status = 0;
        EXPECT_EQ(waitpid(m_process, &status, 0), m_process);
        EXPECT_TRUE(WIFEXITED(status)) << "ended by a signal";
        return WEXITSTATUS(status);
    }

    void ExpectNothingLeft(const std::string& told)
    {
        EXPECT_EQ(End(), 3);
        EXPECT_THAT(ReadWholeFile(m_errors), HasSubstr(told));
        const auto answer = nlohmann::json::parse(ReadWholeFile(m_output), nullptr, false);
        ASSERT_TRUE(answer.is_object());
        EXPECT_EQ(answer["status"], 3);
        EXPECT_THAT(answer["error"].get<std::string>(), HasSubstr(told));
        EXPECT_THAT(Copies(), IsEmpty());
    }

    host::Connection m_where;
    CDatabase m_source;
    std::string m_output = m_folder.Path("output");
    std::string m_errors = m_folder.Path("errors");
    pid_t m_process = 0;
};

TEST_F(PosixReplay, ThatIsInterruptedLeavesNothingAndSaysSo)
{
    for (const int signal : {SIGINT, SIGTERM})
    {
        SCOPED_TRACE(signal);
        const auto before = AllTables();
        // Shells have what they start in the background ignore an interruption.
        std::signal(signal, SIG_DFL);
        Start();

        ASSERT_EQ(kill(m_process, signal), 0);

        ExpectNothingLeft("interrupted; nothing was written to the database");
        EXPECT_EQ(AllTables(), before);
    }
}

TEST_F(PosixReplay, WhoseHistoryGoesAwayLeavesNothingAndSaysSo)
{
    Start();

    m_database.Execute(L"DROP TABLE HST_SIGNRULES");

    ExpectNothingLeft("refused to be read");
}

} // namespace
} // namespace testing_support
