// An archive's folder that somebody else has put something into, or may look into: links and modes,
// which POSIX alone lets a test make.

#include "tests/host/signcheck_process.h"
#include "tests/testing/file_mode.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sys/stat.h>

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

// What others put into the store is neither read nor waited for, and stays where it is.
TEST_F(PosixPrune, NoReportIsReadThroughALinkOrFromAPipe)
{
    const std::string store = m_folder.Path("handoff") + "/STATUS/DUPONTSA";
    fs::create_directories(store);
    const std::string secret =
        m_folder.Write("secret", "<CreDtTm>2025-12-31T23:59:59</CreDtTm><Cd>SECRET</Cd>");
    fs::create_symlink(secret, store + "/31.psr");
    ASSERT_EQ(mkfifo((store + "/32.psr").c_str(), 0600), 0);

    const Answer listed = RunSigncheck({"reports", "--text"});
    const Answer counted =
        RunSigncheck({"prune", "--db", Db(), "--before", "2026-01-01", "--dry-run"});
    const Answer pruned = Run();

    EXPECT_EQ(listed.status, 0) << listed.errors;
    EXPECT_EQ(listed.output.find("SECRET"), std::string::npos);
    EXPECT_THAT(counted.output, HasSubstr("0 status reports"));
    EXPECT_EQ(pruned.status, 0) << pruned.errors;
    for (const Answer* const answer : {&listed, &counted, &pruned})
    {
        EXPECT_THAT(answer->errors, HasSubstr("31.psr' is left out: it is a link"));
        EXPECT_THAT(answer->errors, HasSubstr("32.psr' is left out: it is a link"));
    }
    EXPECT_TRUE(fs::is_symlink(store + "/31.psr"));
    EXPECT_FALSE(fs::exists(m_archive + "/reports"));
}

} // namespace
} // namespace testing_support
