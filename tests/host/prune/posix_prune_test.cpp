// An archive's folder that somebody else has put something into, or may look into: links and modes,
// which POSIX alone lets a test make.

#include "tests/host/signcheck_process.h"
#include "tests/testing/file_mode.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace testing_support
{
namespace
{

namespace fs = std::filesystem;
using testing::HasSubstr;

class PosixPrune : public SampleBankTest
{
protected:
    PosixPrune() : m_archive(m_folder.Path("archive"))
    {
        EXPECT_EQ(RunSigncheck(CheckOf("Élodie Lefèvre")).status, 0);
        m_database.Execute(L"UPDATE HST_SIGNRULES SET DATETIME = '2025-12-31 23:59:59'");
    }

    Answer Run() const
    {
        return RunSigncheck(
            {"prune", "--db", Db(), "--before", "2026-01-01", "--export", m_archive, "--yes"});
    }

    std::string m_archive;
};

TEST_F(PosixPrune, TheArchiveIsItsUsersAlone)
{
    const ScopedMask mask(0);
    EXPECT_EQ(Run().status, 0);

    EXPECT_EQ(ModeOf(m_archive), 0700U);
    for (const auto& entry : fs::directory_iterator(m_archive))
    {
        EXPECT_EQ(ModeOf(entry.path().string()), 0600U) << entry.path();
    }
}

TEST_F(PosixPrune, NothingIsMadeThroughALinkInTheArchivesFolder)
{
    fs::create_directory(m_archive);
    fs::create_symlink(m_folder.Path("made"), m_archive + "/prune.lock");

    const Answer answer = Run();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("prune.lock"));
    EXPECT_FALSE(fs::exists(m_folder.Path("made")));
    EXPECT_EQ(m_database.Query(L"SELECT ROWNO FROM HST_SIGNRULES").size(), 1U);
}

} // namespace
} // namespace testing_support
