// The folder of progress journals, with journals that runs have left there.

#include "host/batch/journal_lines.h"
#include "host/order_lock.h"
#include "port/lock_file.h"
#include "port/program.h"
#include "tests/host/doctor/doctor_bank.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

const batch::Progress kBegun = {"4711-1", false, 7, 0, "asked"};
const batch::Progress kDone = {"4711-1", true, 0, 1, ""};

class DoctorProgress : public DoctorBank
{
protected:
    /// A journal with these lines behind its first one.
    std::string Journal(const std::string& name, const std::vector<std::string>& lines) const
    {
        std::string text = std::string(batch::kFirstJournalLine) + "\n";
        for (const std::string& line : lines)
        {
            text += line + "\n";
        }
        return m_folder.Write("progress/" + name, text);
    }

    static void MakeOld(const std::string& file, int days)
    {
        fs::last_write_time(Utf8Path(file),
                            fs::file_time_type::clock::now() - std::chrono::hours(24 * days));
    }

    std::vector<std::string> Progress(const std::vector<std::string>& more = {}) const
    {
        return Told(Doctor(more), "progress");
    }
};

TEST_F(DoctorProgress, OfJournalsThatAreDoneIsInOrder)
{
    Journal("in-1.progress", {LineOfBegun("A.xml", kBegun), LineOfDone("A.xml", kDone, "success")});
    Journal("in-2.progress", {LineOfBegun("A.xml", kBegun), batch::LineOfGivenUp("A.xml")});

    EXPECT_THAT(Progress(), ElementsAre(AllOf(StartsWith("ok: "), HasSubstr(", 2 journals |"))));
}

TEST_F(DoctorProgress, ThatIsNotThereIsToldWhereAVariableNamesIt)
{
    fs::remove(Utf8Path(m_folder.Path("progress")));

    EXPECT_THAT(Progress(),
                ElementsAre(AllOf(StartsWith("warning: the folder "), HasSubstr("is not there"),
                                  HasSubstr("SIGNCHECK_PROGRESS"))));
    EXPECT_FALSE(fs::exists(Utf8Path(m_folder.Path("progress"))));
}

TEST_F(DoctorProgress, OrdersThatAKilledRunHadBegunAreTold)
{
    const std::string journal =
        Journal("in-1.progress", {LineOfBegun("A.xml", kBegun), LineOfBegun("B.xml", kBegun),
                                  LineOfDone("B.xml", kDone, "success")});
    m_folder.Write("progress/in-1.progress.lock",
                   "signcheck watch, process 4194304 on " + port::MachineName());

    EXPECT_THAT(
        Progress(),
        ElementsAre(AllOf(StartsWith("warning: the journal 'in-1.progress' has 1 order begun and "
                                     "not done by a run that is gone (signcheck watch, process "),
                          HasSubstr("Start signcheck batch or watch on its folder"),
                          HasSubstr("Leave the journal where it is"))));
    EXPECT_TRUE(fs::exists(Utf8Path(journal)));
}

TEST_F(DoctorProgress, JournalOfARunAtWorkIsInUse)
{
    const std::string journal = Journal("in-1.progress", {LineOfBegun("A.xml", kBegun)});
    port::LockFile lock;
    ASSERT_EQ(lock.TryTake((journal + ".lock").c_str(), host::LockNote("signcheck watch")),
              port::LockFile::Attempt::Taken);

    EXPECT_THAT(Progress(),
                ElementsAre(AllOf(StartsWith("ok: "), HasSubstr("1 journal, 1 in use"))));
}

TEST_F(DoctorProgress, JournalOfAnotherMachineIsTakenForOneInUse)
{
    Journal("in-1.progress", {LineOfBegun("A.xml", kBegun)});
    m_folder.Write("progress/in-1.progress.lock", "signcheck watch, process 1 on another-bank");

    EXPECT_THAT(Progress(), ElementsAre(HasSubstr("1 in use")));
}

TEST_F(DoctorProgress, OldJournalsAreToldAndNeverRemoved)
{
    const std::string old = Journal("in-1.progress", {LineOfDone("A.xml", kDone, "success")});
    MakeOld(old, 45);
    MakeOld(Journal("in-2.progress", {LineOfDone("A.xml", kDone, "success")}), 29);
    const std::string begun = Journal("in-3.progress", {LineOfBegun("A.xml", kBegun)});
    MakeOld(begun, 45);

    EXPECT_THAT(Progress({"--remove-leftovers", "1s"}),
                ElementsAre(AllOf(StartsWith("warning: the journal 'in-1.progress' was last "
                                             "written 45 days ago, and no process holds it"),
                                  HasSubstr("gone, delete it. Else leave it")),
                            StartsWith("warning: the journal 'in-3.progress' has 1 order begun")));
    EXPECT_TRUE(fs::exists(Utf8Path(old)));
    EXPECT_TRUE(fs::exists(Utf8Path(begun)));
}

TEST_F(DoctorProgress, DamagedJournalFailsWithItsLine)
{
    Journal("in-1.progress", {LineOfDone("A.xml", kDone, "success"), "rubbish"});
    m_folder.Write("progress/other.txt", "no journal");

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "progress"),
                ElementsAre(AllOf(StartsWith("failed: the journal 'in-1.progress' has a line 3 "),
                                  HasSubstr("refuse it"), HasSubstr("Remove that line"))));
}

TEST_F(DoctorProgress, OtherFileUnderTheNameOfAJournalFails)
{
    m_folder.Write("progress/in-1.progress", "an order file of somebody\n");

    EXPECT_THAT(Progress(), ElementsAre(AllOf(StartsWith("failed: the journal 'in-1.progress' is "
                                                         "no progress journal but another file"),
                                              HasSubstr("Move it elsewhere"))));
}

TEST_F(DoctorProgress, LineThatAKillCutShortIsNoDamage)
{
    m_folder.Write("progress/in-1.progress",
                   std::string(batch::kFirstJournalLine) + "\n{\"begun\":\"A.x");

    EXPECT_THAT(Progress(), ElementsAre(StartsWith("ok: ")));
}

} // namespace
} // namespace testing_support
