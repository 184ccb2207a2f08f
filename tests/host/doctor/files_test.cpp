// Faults of store, spool, engine, settings and what was left behind, planted and found.

#include "host/doctor/file_checks.h"
#include "port/files.h"
#include "port/kernel.h"
#include "port/program.h"
#include "services/event_key.h"
#include "services/event_spool.h"
#include "tests/host/doctor/doctor_bank.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

constexpr const char* kNobodysCopy = "signcheck_scratch_20260329_101159_4194304_ana_0badcafe.db";

services::EventRecord Event(const std::string& dateTime)
{
    services::EventRecord event;
    event.key = services::MakeEventKey();
    event.dateTime = dateTime;
    event.text = L"refused";
    return event;
}

class DoctorFiles : public DoctorBank
{
protected:
    void Wait(const std::string& connection, const std::string& since) const
    {
        ASSERT_TRUE(services::EventSpool(m_folder.Path("spool"), connection).Append(Event(since)));
    }

    /// The spool of this database, on any platform.
    std::string SpoolFile() const
    {
        return m_folder.Path("spool/" + services::EventSpool("", Db()).FileName());
    }
};

TEST_F(DoctorFiles, AStoreThatTheOptionNamesAndThatIsNotThereIsTold)
{
    const Answer answer = Doctor({"--hand-off", m_folder.Path("nowhere")});

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(Told(answer, "store"),
                ElementsAre(AllOf(StartsWith("warning: the folder "), HasSubstr("is not there"),
                                  HasSubstr("option --hand-off"), HasSubstr("mkdir -m 700"))));
    EXPECT_FALSE(fs::exists(Utf8Path(m_folder.Path("nowhere"))));
}

TEST_F(DoctorFiles, AStoreThatIsAFileFails)
{
    const Answer answer = Doctor({"--hand-off", m_folder.Write("file", "x")});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "store"),
                ElementsAre(AllOf(StartsWith("failed: "), HasSubstr("is a file and no folder"))));
}

TEST_F(DoctorFiles, UnfinishedReportsAreToldWithTheirAge)
{
    const std::string folder = m_folder.Path("handoff") + "/STATUS/DUPONTSA";
    fs::create_directories(Utf8Path(folder));
    std::ofstream(Utf8Path(folder + "/7.psr.part")) << "half";
    std::ofstream(Utf8Path(folder + "/6.psr")) << "whole";
    fs::last_write_time(Utf8Path(folder + "/7.psr.part"),
                        fs::file_time_type::clock::now() - std::chrono::hours(50));

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(Told(answer, "store"),
                ElementsAre(AllOf(StartsWith("warning: 1 unfinished report lies there (.part), the "
                                             "oldest 2 days old"),
                                  HasSubstr("-name '*.part' -mtime +1"))));
}

TEST_F(DoctorFiles, ASpoolThatTheVariableNamesAndThatIsNotThereIsTold)
{
    const ScopedEnvironment spool("SIGNUTILS_SPOOL", m_folder.Path("elsewhere").c_str());

    EXPECT_THAT(Told(Doctor(), "spool"),
                ElementsAre(AllOf(StartsWith("warning: the folder "), HasSubstr("SIGNUTILS_SPOOL"),
                                  HasSubstr("mkdir -m 700"))));
}

TEST_F(DoctorFiles, WaitingEventsAreToldWithTheirNumberAndAge)
{
    Wait(Db(), "2026-03-29 14:05:09");
    Wait(Db(), "2026-03-28 09:00:00");

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(Told(answer, "spool"),
                ElementsAre(AllOf(StartsWith("warning: 2 events wait for this database, the oldest "
                                             "since 2026-03-28 09:00:00"),
                                  HasSubstr("Each check on this connection string delivers"))));
}

TEST_F(DoctorFiles, EventsOfOtherConnectionStringsAreToldAsSuch)
{
    Wait("Driver=SQLite3;Database=/srv/other.db", "2026-03-29 14:05:09");
    Wait("", "2026-03-29 14:05:09");

    const auto told = Told(Doctor(), "spool");

    ASSERT_EQ(told.size(), 2U);
    EXPECT_THAT(told[0], AllOf(StartsWith("warning: 1 event waits for another connection string in "
                                          "events-"),
                               HasSubstr("on that very string")));
    EXPECT_THAT(told[1], AllOf(StartsWith("warning: 1 event waits for no database"),
                               HasSubstr("events-unaddressed.jsonl")));
}

TEST_F(DoctorFiles, ATornLineIsToldBesideTheWholeOnes)
{
    Wait(Db(), "2026-03-29 14:05:09");
    std::ofstream(Utf8Path(SpoolFile()), std::ios::app | std::ios::binary)
        << "{\"EVENTKEY\":\"0000";

    EXPECT_THAT(Told(Doctor(), "spool"),
                ElementsAre(StartsWith("warning: 1 event waits for this database"),
                            AllOf(HasSubstr("has 1 line that is no event, torn by a crash"),
                                  HasSubstr(".damaged"))));
}

TEST_F(DoctorFiles, LinesThatWereSetAsideAreTold)
{
    m_folder.Write("spool/events-abc.damaged", "{\"EVENTKEY\":\"0000\n{\n");

    EXPECT_THAT(Told(Doctor(), "spool"),
                ElementsAre(AllOf(
                    StartsWith("warning: 2 damaged lines were set aside in events-abc.damaged"),
                    HasSubstr("remove the file"))));
}

TEST_F(DoctorFiles, WithoutADisplayConfigurationIsTold)
{
    const ScopedEnvironment config("SIGNUTILS_CONFIG", m_temporaryFolder.Path().c_str());

    EXPECT_THAT(Told(Doctor(), "settings"),
                ElementsAre(AllOf(StartsWith("warning: CtlVEU.INI is not in"),
                                  HasSubstr("SIGNUTILS_CONFIG"))));
}

TEST_F(DoctorFiles, SettingsThatMeanNothingAreTold)
{
    const ScopedEnvironment language("SIGNUTILS_LANG", "de");
    const ScopedEnvironment timeout("SIGNUTILS_DB_TIMEOUT", "30s");

    EXPECT_THAT(
        Told(Doctor(), "settings"),
        ElementsAre(AllOf(HasSubstr("SIGNUTILS_LANG: 'de'"), HasSubstr("Set en or fr.")),
                    AllOf(HasSubstr("SIGNUTILS_DB_TIMEOUT: '30s'"), HasSubstr("whole seconds"))));
}

TEST_F(DoctorFiles, ACopyOfADeadProcessIsToldAndStaysWithoutAnAge)
{
    const std::string path = m_temporaryFolder.Write(kNobodysCopy, "");

    const Answer answer = Doctor();

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(Told(answer, "copies"),
                ElementsAre(AllOf(StartsWith("warning: SQLite file "), HasSubstr(kNobodysCopy),
                                  HasSubstr("process 4194304 of user ana does not run"),
                                  HasSubstr("Delete the file, or signcheck doctor "
                                            "--remove-leftovers 1d."))));
    EXPECT_TRUE(fs::exists(Utf8Path(path)));
}

TEST_F(DoctorFiles, ACopyOfADeadProcessGoesWhenItIsOlderThanTheAge)
{
    const std::string path = m_temporaryFolder.Write(kNobodysCopy, "");

    EXPECT_THAT(Told(Doctor({"--remove-leftovers", "1d"}), "copies"),
                ElementsAre("ok: no copy of rules and no trace was left behind; 1 was removed | "));
    EXPECT_FALSE(fs::exists(Utf8Path(path)));
}

TEST_F(DoctorFiles, ATraceOfADeadProcessIsToldAndGoesWithAnAge)
{
    const std::string path =
        m_temporaryFolder.Write("signcheck_scratch_20260329_101159_4194304_ana_0badcafe.trace", "");

    EXPECT_THAT(Told(Doctor(), "copies"),
                ElementsAre(AllOf(StartsWith("warning: trace file "), HasSubstr("0badcafe.trace"),
                                  HasSubstr("Delete the file, or"))));
    Doctor({"--remove-leftovers", "1d"});
    EXPECT_FALSE(fs::exists(Utf8Path(path)));
}

TEST_F(DoctorFiles, ATraceBesideTheProgressJournalsIsTold)
{
    const TemporaryFolder journals;
    const ScopedEnvironment progress("SIGNCHECK_PROGRESS", journals.Path().c_str());
    journals.Write("signcheck_scratch_20260329_101159_4194304_ana_0badcafe.trace", "");
    journals.Write("signcheck_scratch_20260329_101159_4194304_ana_0badcafe.db", "");

    EXPECT_THAT(Told(Doctor(), "copies"), ElementsAre(HasSubstr("0badcafe.trace")));
}

TEST_F(DoctorFiles, ACopyOfALivingProcessStaysWhateverItsAge)
{
    const std::string path =
        m_temporaryFolder.Write("signcheck_scratch_20260329_101159_" +
                                    std::to_string(GetCurrentProcessId()) + "_ana_0badcafe.db",
                                "");

    EXPECT_THAT(Told(Doctor({"--remove-leftovers", "1s"}), "copies"),
                ElementsAre("ok: no copy of rules and no trace was left behind; 1 is in use | "));
    EXPECT_TRUE(fs::exists(Utf8Path(path)));
}

TEST_F(DoctorFiles, AnAgeThatIsNoneIsWrongUsage)
{
    const Answer answer = Doctor({"--remove-leftovers", "old"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("is no age"));
}

/// A folder of orders.
class DoctorOrders : public DoctorFiles
{
protected:
    DoctorOrders() { fs::create_directory(Utf8Path(m_folder.Path("orders"))); }

    std::string Left(const std::string& name, const std::string& bytes) const
    {
        const std::string path = m_folder.Path("orders") + "/" + name;
        std::ofstream(Utf8Path(path), std::ios::binary) << bytes;
        fs::last_write_time(Utf8Path(path),
                            fs::file_time_type::clock::now() - std::chrono::hours(50));
        return path;
    }

    Answer DoctorOfOrders(std::vector<std::string> more = {}) const
    {
        more.insert(more.begin(), m_folder.Path("orders"));
        return Doctor(more);
    }

    static std::string LockOf(std::uint64_t process)
    {
        return "signcheck check, process " + std::to_string(process) + " on " + port::MachineName();
    }
};

TEST_F(DoctorOrders, WithoutLeftoversAreInOrder)
{
    Left("A.xml", "<Document/>");

    EXPECT_THAT(Told(DoctorOfOrders(), "orders"),
                ElementsAre(StartsWith("ok: nothing of a killed run lies in ")));
}

TEST_F(DoctorOrders, OfAKilledRunAreToldWithTheirAgeAndStayWithoutOne)
{
    const std::string work = Left("A.xml.veu.cp", "orders");
    Left("A.xml.veu.lock", LockOf(4194304));

    const Answer answer = DoctorOfOrders();

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(Told(answer, "orders"),
                ElementsAre(AllOf(StartsWith("warning: 1 work file lies in "),
                                  HasSubstr("the oldest 2 days old"), HasSubstr("A.xml.veu.cp"),
                                  HasSubstr("--remove-leftovers 1d")),
                            AllOf(StartsWith("warning: 1 lock of processes that do not run"),
                                  HasSubstr("process 4194304 on "))));
    EXPECT_TRUE(fs::exists(Utf8Path(work)));
}

TEST_F(DoctorOrders, OfAKilledRunGoWhenTheyAreOlderThanTheAge)
{
    const std::string work = Left("A.xml.veu.cp", "orders");

    EXPECT_THAT(Told(DoctorOfOrders({"--remove-leftovers", "2d"}), "orders"),
                ElementsAre(HasSubstr("; 1 work file was removed")));
    EXPECT_FALSE(fs::exists(Utf8Path(work)));
}

TEST_F(DoctorOrders, ThatAreBeingJudgedAreLeftAlone)
{
    Left("A.xml.veu.cp", "orders");
    Left("A.xml.veu.lock", LockOf(GetCurrentProcessId()));
    Left("B.xml.veu.cp", "orders");
    Left("B.xml.veu.lock", "signcheck watch, process 4194304 on another-machine");

    EXPECT_THAT(Told(DoctorOfOrders(), "orders"),
                ElementsAre(StartsWith("ok: nothing of a killed run lies in ")));
}

TEST_F(DoctorOrders, OfAFolderThatIsNotThereFail)
{
    const Answer answer = Doctor({m_folder.Path("nowhere")});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "orders"), ElementsAre(StartsWith("failed: ")));
}

} // namespace
} // namespace testing_support
