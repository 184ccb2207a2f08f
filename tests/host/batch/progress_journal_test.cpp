#include "host/batch/progress_journal.h"

#include "host/refusal.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace batch
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing_support::ReadWholeFile;
using testing_support::TemporaryFolder;

class JournalOfOrders : public testing::Test
{
protected:
    std::string Refused() const
    {
        try
        {
            const ProgressJournal journal(m_path, "test");
        }
        catch (const host::Refusal& refusal)
        {
            return refusal.what();
        }
        return "not refused";
    }

    TemporaryFolder m_folder;
    std::string m_path = m_folder.Path("progress");
};

TEST_F(JournalOfOrders, RemembersOverTheEndOfTheProcess)
{
    {
        ProgressJournal journal(m_path, "test");
        journal.Begin("A.xml", "1/1", 7, "asked");
        journal.Done("A.xml", "1/1", "success");
        journal.Begin("B.xml", "2/2", 8, "asked");
        journal.Begin("C.xml", "3/3", 9, "asked");
        journal.GiveUp("C.xml");
    }
    const ProgressJournal journal(m_path, "test");

    EXPECT_TRUE(journal.IsDone("A.xml", "1/1"));
    ASSERT_TRUE(journal.Find("B.xml", "2/2"));
    EXPECT_FALSE(journal.Find("B.xml", "2/2")->isDone);
    EXPECT_EQ(journal.Find("B.xml", "2/2")->after, 8);
    EXPECT_EQ(journal.Find("B.xml", "2/2")->asked, "asked");
    EXPECT_FALSE(journal.Find("C.xml", "3/3"));
    EXPECT_FALSE(journal.Find("D.xml", "4/4"));
}

TEST_F(JournalOfOrders, TakesAFileThatWasReplacedForAnotherOrder)
{
    ProgressJournal journal(m_path, "test");
    journal.Begin("A.xml", "1/1", 7, "asked");
    journal.Done("A.xml", "1/1", "success");

    EXPECT_FALSE(journal.IsDone("A.xml", "1/2"));
    EXPECT_FALSE(journal.Find("A.xml", "1/2"));
}

TEST_F(JournalOfOrders, IsForOneRunAtATime)
{
    const ProgressJournal journal(m_path, "signcheck watch");

    EXPECT_THAT(Refused(), HasSubstr("is in use by another run (signcheck watch, process "));
}

TEST_F(JournalOfOrders, LeavesOutALineThatAKillCutShort)
{
    {
        ProgressJournal journal(m_path, "test");
        journal.Begin("A.xml", "1/1", 7, "asked");
    }
    const std::string whole = ReadWholeFile(m_path);
    m_folder.Write("progress", whole + R"({"done":"A.xml","fi)");
    {
        ProgressJournal journal(m_path, "test");
        EXPECT_FALSE(journal.IsDone("A.xml", "1/1"));
        EXPECT_TRUE(journal.Find("A.xml", "1/1"));
        journal.Done("A.xml", "1/1", "refused");
    }
    EXPECT_EQ(ReadWholeFile(m_path).find(R"({"done":"A.xml","fi)"
                                         "\n"),
              std::string::npos);
    EXPECT_TRUE(ProgressJournal(m_path, "test").IsDone("A.xml", "1/1"));
}

TEST_F(JournalOfOrders, RefusesALineThatIsNoneOfItsOwn)
{
    {
        const ProgressJournal journal(m_path, "test");
    }
    const std::string first = ReadWholeFile(m_path);
    for (const char* const line : {"rubbish", "{}", R"({"done":1})", R"({"begun":"A.xml"})"})
    {
        m_folder.Write("progress", first + line + "\n");
        EXPECT_THAT(Refused(), HasSubstr("cannot be read: line 2 is none of it")) << line;
    }
}

TEST_F(JournalOfOrders, IsNoOtherFileWhichStaysAsItIs)
{
    for (const std::string other : {"an order file of somebody\n", "a text without a line end"})
    {
        m_folder.Write("progress", other);
        EXPECT_THAT(Refused(),
                    AllOf(HasSubstr("is no progress journal but another file"),
                          HasSubstr("Leave that file as it is"), Not(HasSubstr("Remove"))));
        EXPECT_EQ(ReadWholeFile(m_path), other);
    }
}

TEST_F(JournalOfOrders, IsNamedByItsWholePath)
{
    std::string folders = "f";
    for (int depth = 0; depth < 3; ++depth)
    {
        folders += "/" + std::string(50, 'l');
    }
    std::filesystem::create_directories(m_folder.Path(folders));
    m_path = m_folder.Path(folders + "/progress");
    m_folder.Write(folders + "/progress", "rubbish\n");

    EXPECT_THAT(Refused(), HasSubstr("'" + m_path + "' is no progress journal"));
}

TEST_F(JournalOfOrders, OfAFolderThatIsNotThereIsRefusedWithTheRemedy)
{
    m_path = m_folder.Path("missing/progress");

    EXPECT_THAT(Refused(), HasSubstr("cannot be locked. Its folder must be there and writable"));
}

TEST_F(JournalOfOrders, IsWrittenAnewWhereMostOfItIsOld)
{
    {
        ProgressJournal journal(m_path, "test");
        for (int turn = 0; turn < 800; ++turn)
        {
            journal.Begin("A.xml", std::to_string(turn), turn, "asked");
            journal.Done("A.xml", std::to_string(turn), "success");
        }
        journal.Begin("B.xml", "2/2", 8, "asked");
    }
    const auto before = std::filesystem::file_size(m_path);
    {
        ProgressJournal journal(m_path, "test");
        journal.Tidy([](const std::string&) { return true; });
        EXPECT_LT(std::filesystem::file_size(m_path) * 100, before);
        journal.Done("B.xml", "2/2", "success");
    }
    const ProgressJournal journal(m_path, "test");
    EXPECT_TRUE(journal.IsDone("A.xml", "799"));
    EXPECT_TRUE(journal.IsDone("B.xml", "2/2"));
}

TEST_F(JournalOfOrders, ForgetsOrdersWhoseFilesAreLongGoneAndNoOthers)
{
    const std::string first = "{\"signcheck\":\"progress\",\"version\":1}\n";
    m_folder.Write("progress",
                   first +
                       R"({"done":"old.xml","file":"1","outcome":"success","at":1000})"
                       "\n" +
                       R"({"done":"there.xml","file":"1","outcome":"success","at":1000})"
                       "\n" +
                       R"({"begun":"begun.xml","file":"1","asked":"a","after":3})"
                       "\n");
    ProgressJournal journal(m_path, "test");
    journal.Done("new.xml", "1", "success");

    journal.Tidy([](const std::string& key) { return key == "there.xml"; });

    EXPECT_FALSE(journal.Find("old.xml", "1"));
    EXPECT_TRUE(journal.Find("there.xml", "1"));
    EXPECT_TRUE(journal.Find("begun.xml", "1"));
    EXPECT_TRUE(journal.Find("new.xml", "1"));
}

} // namespace
} // namespace batch
