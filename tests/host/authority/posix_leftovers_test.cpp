// What a killed command leaves behind. Processes are started and killed as POSIX does.

#include "database/cdatabase.h"
#include "host/scratch/leftovers.h"
#include "tests/host/authority/temporary_files_in.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace testing_support
{
namespace
{

using scratch::Leftover;

constexpr auto kLongest = std::chrono::seconds(60);

class PosixLeftovers : public SampleBankTest
{
protected:
    PosixLeftovers() : m_where{Db(), "the bank", "option --db"}, m_temporary(m_copies.Path())
    {
        m_source.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
    }

    /// The copy that a process has made, once it is there.
    std::vector<Leftover> CopyOf(pid_t process)
    {
        std::vector<Leftover> copies = scratch::LeftoverFiles();
        const auto more = scratch::LeftoversIn(m_source, m_where);
        copies.insert(copies.end(), more.begin(), more.end());
        std::erase_if(copies, [process](const Leftover& each)
                      { return each.parts.process != static_cast<std::uint32_t>(process); });
        return copies;
    }

    /// Starts a command that takes a while on the bank.
    pid_t Start()
    {
        std::string connection = "--db=" + Db();
        std::string program = SIGNCHECK_PROGRAM;
        std::string command = "lint";
        char* const arguments[] = {program.data(), command.data(), connection.data(), nullptr};
        pid_t process = 0;
        posix_spawn_file_actions_t quietly;
        posix_spawn_file_actions_init(&quietly);
        posix_spawn_file_actions_addopen(&quietly, STDOUT_FILENO, "/dev/null", 1, 0);
        EXPECT_EQ(posix_spawn(&process, program.c_str(), &quietly, nullptr, arguments, environ), 0);
        posix_spawn_file_actions_destroy(&quietly);
        return process;
    }

    TemporaryFolder m_copies;
    host::Connection m_where;
    TemporaryFilesIn m_temporary;
    CDatabase m_source;
};

TEST_F(PosixLeftovers, OfAKilledCommandAreFoundByItsProcess)
{
    const pid_t process = Start();
    ASSERT_GT(process, 1);
    const auto end = std::chrono::steady_clock::now() + kLongest;
    while (CopyOf(process).empty() && std::chrono::steady_clock::now() < end)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }

    ASSERT_EQ(kill(process, SIGKILL), 0);
    ASSERT_EQ(waitpid(process, nullptr, 0), process);

    const auto left = CopyOf(process);
    ASSERT_EQ(left.size(), 1U);
    if (left[0].kind == std::string("SQLite file"))
    {
        EXPECT_TRUE(std::filesystem::remove(Utf8Path(left[0].name)));
    }
    else
    {
        m_source.ExecuteSQLW(std::wstring(left[0].remedy.begin(), left[0].remedy.end()).c_str());
    }
    EXPECT_TRUE(CopyOf(process).empty());
}

} // namespace
} // namespace testing_support
