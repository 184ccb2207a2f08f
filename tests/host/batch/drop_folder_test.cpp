// What a drop folder hands on, and when.

#include "host/batch/drop_folder.h"

#include "host/batch/order_path.h"
#include "host/refusal.h"
#include "port/files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <optional>

namespace batch
{
namespace
{

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::TemporaryFolder;

namespace fs = std::filesystem;

constexpr int kTurns = 20;

class WatchedFolder : public testing::Test
{
protected:
    void Watch(bool isTermsBeside = false)
    {
        m_watched.emplace(m_folder.Path(),
                          DropFolder::Times{milliseconds(100), milliseconds(60'000)}, isTermsBeside,
                          m_journal, m_queue);
    }

    /// The names that are handed on while the folder takes some turns, or until there are so many.
    std::vector<std::string> HandedOn(std::size_t most = 1000)
    {
        std::vector<std::string> names;
        for (int turn = 0; turn < kTurns && names.size() < most; ++turn)
        {
            m_watched->Turn();
            while (m_queue.Waiting() > 0)
            {
                names.push_back(m_queue.Next()->key);
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    void End(const std::string& name, Ending ending)
    {
        Order order;
        order.key = name;
        OrderResult result;
        result.ending = ending;
        m_watched->Take(order, result);
    }

    void Judge(const std::string& name)
    {
        const std::string version = *VersionOf(m_folder.Path(name));
        m_journal.Begin(name, version, 0, "asked");
        m_journal.Done(name, version, "success");
        End(name, Ending::Judged);
    }

    TemporaryFolder m_other;
    TemporaryFolder m_folder;
    ProgressJournal m_journal = ProgressJournal(m_other.Path("journal"), "test");
    OrderQueue m_queue;
    std::optional<DropFolder> m_watched;
};

TEST_F(WatchedFolder, HandsOnWhatWasThereAndWhatComes)
{
    m_folder.Write("A.xml", "order");
    Watch();
    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));

    m_folder.Write("B.xml", "order");
    fs::rename(m_other.Write("C.xml", "order"), m_folder.Path("C.xml"));

    EXPECT_THAT(HandedOn(2), ElementsAre("B.xml", "C.xml"));
    EXPECT_EQ(m_watched->Waiting(), 3U);
}

TEST_F(WatchedFolder, HandsNothingOnTwice)
{
    m_folder.Write("A.xml", "order");
    Watch();
    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
    Judge("A.xml");

    EXPECT_THAT(HandedOn(), IsEmpty());
    EXPECT_EQ(m_watched->Waiting(), 0U);
}

TEST_F(WatchedFolder, HandsOnNoFileThatIsBeingWritten)
{
    Watch();
    port::File file;
    ASSERT_TRUE(file.Open(m_folder.Path("A.xml").c_str(), port::OpenMode::CreateNew));
    ASSERT_TRUE(file.Write("half", 4));
    EXPECT_THAT(HandedOn(), IsEmpty());

    file.Close();

    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
}

TEST_F(WatchedFolder, HandsOnNoFileThatWasBeingWrittenAtTheStart)
{
    port::File file;
    ASSERT_TRUE(file.Open(m_folder.Path("A.xml").c_str(), port::OpenMode::CreateNew));
    ASSERT_TRUE(file.Write("half", 4));
    Watch();

    EXPECT_THAT(HandedOn(), IsEmpty());

    file.Close();
    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
}

TEST_F(WatchedFolder, LeavesOutWhatIsNoOrder)
{
    m_folder.Write("A.xml.veu.cp", "");
    m_folder.Write(".hidden", "");
    fs::create_directory(m_folder.Path("inner"));
    Watch();
    m_folder.Write("B.xml.veu", "");
    m_folder.Write("B.xml.part", "");
    m_folder.Write("B.xml.terms", "");

    EXPECT_THAT(HandedOn(), IsEmpty());
}

TEST_F(WatchedFolder, HandsOnWhatGetsItsNameByRenaming)
{
    Watch();
    const std::string part = m_folder.Write("A.xml.part", "order");
    EXPECT_THAT(HandedOn(), IsEmpty());

    fs::rename(part, m_folder.Path("A.xml"));

    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
}

TEST_F(WatchedFolder, WaitsForTheTermsOfAnOrder)
{
    m_folder.Write("A.xml", "order");
    Watch(true);
    EXPECT_THAT(HandedOn(), IsEmpty());

    m_folder.Write("A.xml.terms", "{}");

    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
}

TEST_F(WatchedFolder, HandsOnAFaultyOrderAgainOnlyWhenItChanges)
{
    m_folder.Write("A.xml", "order");
    Watch(true);
    m_folder.Write("A.xml.terms", "{");
    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
    End("A.xml", Ending::NotJudged);
    EXPECT_THAT(HandedOn(), IsEmpty());

    m_folder.Write("A.xml.terms", "{ }");

    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
}

TEST_F(WatchedFolder, TellsOnceOfAnOrderThatWaitsForItsTerms)
{
    m_folder.Write("A.xml", "order");
    m_watched.emplace(m_folder.Path(), DropFolder::Times{milliseconds(50), milliseconds(100)}, true,
                      m_journal, m_queue);

    testing::internal::CaptureStderr();
    EXPECT_THAT(HandedOn(), IsEmpty());
    const std::string told = testing::internal::GetCapturedStderr();

    EXPECT_THAT(told, HasSubstr("A.xml' waits for its terms: '"));
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1) << told;
    EXPECT_EQ(m_watched->WithoutTerms(), 1U);

    m_folder.Write("A.xml.terms", "{}");
    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
    EXPECT_EQ(m_watched->WithoutTerms(), 0U);
}

TEST_F(WatchedFolder, HandsOnAnOrderWhoseTermsAreNoFileToBeRefused)
{
    m_folder.Write("A.xml", "order");
    fs::create_directory(m_folder.Path("A.xml.terms"));
    Watch(true);

    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
}

// Else every look at the folder would add a history row until the cause is repaired.
TEST_F(WatchedFolder, HandsOnAnOrderForTheNextRunOnlyWhenItChanged)
{
    m_folder.Write("A.xml", "order");
    Watch();
    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
    Order order;
    order.key = "A.xml";
    OrderResult result;
    result.ending = Ending::Judged;
    result.check.ran = true;
    result.check.verdict = 1;
    result.check.amounts.origin = host::AmountsOrigin::Unknown;
    ASSERT_TRUE(result.IsForNextRun());
    m_watched->Take(order, result);
    fs::rename(m_folder.Path("A.xml"), m_other.Path("A.xml"));
    fs::rename(m_other.Path("A.xml"), m_folder.Path("A.xml"));
    EXPECT_THAT(HandedOn(), IsEmpty());

    m_folder.Write("A.xml", "another order");

    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
}

TEST_F(WatchedFolder, HandsOnAnOrderAgainThatAnotherHostHeld)
{
    m_folder.Write("A.xml", "order");
    Watch();
    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));

    End("A.xml", Ending::Held);

    EXPECT_THAT(HandedOn(1), ElementsAre("A.xml"));
}

TEST_F(WatchedFolder, TriesOneOrderAfterAnotherWhileTheDatabaseIsAway)
{
    m_folder.Write("A.xml", "order");
    m_folder.Write("B.xml", "order");
    Watch();
    EXPECT_THAT(HandedOn(2), ElementsAre("A.xml", "B.xml"));

    End("A.xml", Ending::DatabaseAway);
    End("B.xml", Ending::DatabaseAway);
    EXPECT_TRUE(m_watched->IsDatabaseAway());
    ASSERT_THAT(HandedOn(1), ElementsAre("A.xml"));
    EXPECT_THAT(HandedOn(), IsEmpty()) << "B.xml waits for what becomes of it";

    Judge("A.xml");
    EXPECT_FALSE(m_watched->IsDatabaseAway());
    EXPECT_THAT(HandedOn(1), ElementsAre("B.xml"));
}

TEST_F(WatchedFolder, ForgetsAnOrderThatWentAway)
{
    m_folder.Write("A.xml", "order");
    Watch();
    m_watched->Turn(); // found, and waited for to settle
    fs::remove(m_folder.Path("A.xml"));

    EXPECT_THAT(HandedOn(), IsEmpty());
    EXPECT_EQ(m_watched->Waiting(), 0U);
}

TEST_F(WatchedFolder, ThatIsNotThereIsRefused)
{
    EXPECT_THROW(DropFolder(m_folder.Path("missing"),
                            DropFolder::Times{milliseconds(100), milliseconds(100)}, false,
                            m_journal, m_queue),
                 host::Refusal);
}

} // namespace
} // namespace batch
