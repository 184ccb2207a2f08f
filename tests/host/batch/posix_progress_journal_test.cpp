// Journals that others than their user may have written, or that are not where they seem to lie:
// modes, owners and links, which POSIX alone lets a test make.

#include "host/batch/journal_place.h"
#include "host/batch/progress_journal.h"
#include "host/refusal.h"
#include "tests/host/batch/batch_world.h"
#include "tests/testing/file_mode.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace testing_support
{
namespace
{

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

constexpr const char* kFirstLine = "{\"signcheck\":\"progress\",\"version\":1}\n";
constexpr const char* kVictimOfJournal = "what somebody needs\n";

class PosixJournalOfOrders : public testing::Test
{
protected:
    std::string Refused() const
    {
        try
        {
            const batch::ProgressJournal journal(m_path, "test");
        }
        catch (const host::Refusal& refusal)
        {
            EXPECT_EQ(refusal.Status(), 3);
            return refusal.what();
        }
        return "not refused";
    }

    void SetMode(const std::string& path, mode_t mode) const
    {
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
    }

    /// Only root can give a file away; others would test nothing.
    static bool GiveAway(const std::string& path)
    {
        return geteuid() == 0 && chown(path.c_str(), 1, static_cast<gid_t>(-1)) == 0;
    }

    TemporaryFolder m_folder;
    std::string m_path = m_folder.Path("progress");
};

TEST_F(PosixJournalOfOrders, IsItsUsersAlone)
{
    const ScopedMask mask(0);
    const batch::ProgressJournal journal(m_path, "test");

    EXPECT_EQ(ModeOf(m_path), 0600U);
}

TEST_F(PosixJournalOfOrders, IsNeverWrittenThroughALink)
{
    const TemporaryFolder elsewhere;
    const std::string victim = elsewhere.Write("victim", kVictimOfJournal);
    fs::create_symlink(victim, m_path);

    EXPECT_THAT(Refused(), AllOf(HasSubstr("is a link. Remove it"), HasSubstr("--journal")));
    EXPECT_EQ(ReadWholeFile(victim), kVictimOfJournal);
}

TEST_F(PosixJournalOfOrders, IsNeverReadThroughALink)
{
    const TemporaryFolder elsewhere;
    fs::create_symlink(elsewhere.Write("forged", kFirstLine), m_path);

    EXPECT_THAT(Refused(), HasSubstr("is a link"));
}

TEST_F(PosixJournalOfOrders, IsNeverMadeThroughADanglingLink)
{
    const TemporaryFolder elsewhere;
    fs::create_symlink(elsewhere.Path("made"), m_path);

    EXPECT_THAT(Refused(), HasSubstr("is a link"));
    EXPECT_FALSE(fs::exists(elsewhere.Path("made")));
}

TEST_F(PosixJournalOfOrders, ThatOthersMayWriteIsRefusedAndLeftAlone)
{
    m_folder.Write("progress", kFirstLine);
    for (const mode_t mode : {0660U, 0602U, 0666U})
    {
        SetMode(m_path, mode);
        EXPECT_THAT(Refused(), HasSubstr("so that others may have written into it. Remove it"));
        EXPECT_EQ(ModeOf(m_path), mode);
    }
    SetMode(m_path, 0644);
    EXPECT_EQ(Refused(), "not refused");
}

TEST_F(PosixJournalOfOrders, InAFolderThatOthersMayWriteIsRefusedBeforeAnythingIsMade)
{
    for (const mode_t mode : {0770U, 02770U, 0702U, 01777U})
    {
        SetMode(m_folder.Path(), mode);
        EXPECT_THAT(Refused(), AllOf(HasSubstr("lies in the folder '" + m_folder.Path()),
                                     HasSubstr("take the right from others: chmod go-w")));
        EXPECT_TRUE(fs::is_empty(m_folder.Path()));
    }
    SetMode(m_folder.Path(), 0755);
    EXPECT_EQ(Refused(), "not refused");
}

TEST_F(PosixJournalOfOrders, OfAnotherUserIsRefused)
{
    if (!GiveAway(m_folder.Write("progress", kFirstLine)))
    {
        GTEST_SKIP() << "only root can give a file to another user";
    }
    EXPECT_THAT(Refused(), HasSubstr("belongs to another user. Remove it"));
}

TEST_F(PosixJournalOfOrders, InAFolderOfAnotherUserIsRefused)
{
    if (!GiveAway(m_folder.Path()))
    {
        GTEST_SKIP() << "only root can give a folder to another user";
    }
    EXPECT_THAT(Refused(), HasSubstr("of another user. Name a file in a folder of this user"));
}

TEST_F(PosixJournalOfOrders, ThatIsNoRegularFileIsRefusedWithoutWaitingForIt)
{
    ASSERT_EQ(mkfifo(m_path.c_str(), 0600), 0);
    EXPECT_THAT(Refused(), HasSubstr("is no regular file"));
    fs::remove(m_path);
    fs::create_directory(m_path);
    EXPECT_THAT(Refused(), HasSubstr("is no regular file"));
}

using PosixPlantedJournal = BatchTest;

TEST_F(PosixPlantedJournal, ThatIsALinkInTheDropFolderOverwritesNothing)
{
    Order("A001.xml");
    const std::string victim = m_folder.Write("victim", kVictimOfJournal);
    fs::create_symlink(victim, m_orders.Path(".signcheck-progress"));
    fs::create_symlink(m_folder.Path("made"), m_orders.Path(".signcheck-progress.lock"));

    EXPECT_EQ(Batch().status, 0);
    EXPECT_EQ(ReadWholeFile(victim), kVictimOfJournal);
    EXPECT_FALSE(fs::exists(m_folder.Path("made")));
}

TEST_F(PosixPlantedJournal, NamedByItsOptionInAFolderOfManyIsRefused)
{
    Order("A001.xml");
    const std::string ofMany = m_folder.Path("many");
    fs::create_directory(ofMany);
    ASSERT_EQ(chmod(ofMany.c_str(), 02770), 0);

    const Answer answer = Batch({"--journal", ofMany + "/progress"});

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, HasSubstr("so that others may put one of theirs in its place"));
    EXPECT_EQ(RecordsWritten(), 0U);
    EXPECT_EQ(Batch().status, 0);
}

TEST_F(PosixPlantedJournal, HasItsOwnFolderForItsUserAlone)
{
    Order("A001.xml");
    EXPECT_EQ(Batch().status, 0);

    EXPECT_EQ(ModeOf(m_folder.Path("progress")), 0700U);
    EXPECT_EQ(ModeOf(Journal()), 0600U);
}

TEST_F(PosixPlantedJournal, IsTheSameByWhateverWayTheFolderIsReached)
{
    const std::string link = m_folder.Path("in");
    fs::create_directory_symlink(m_orders.Path(), link);

    EXPECT_EQ(batch::JournalPath(host::OptionValues(), link), Journal());
}

TEST_F(PosixPlantedJournal, HasNoPlaceInAFolderSharedByEverybody)
{
    Order("A001.xml");
    fs::create_directory(m_folder.Path("progress"));
    ASSERT_EQ(chmod(m_folder.Path("progress").c_str(), 01777), 0);

    const Answer answer = Batch();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("is shared by every user"), HasSubstr("SIGNCHECK_PROGRESS")));
}

} // namespace
} // namespace testing_support
