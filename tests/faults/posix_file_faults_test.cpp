// Whole checks of which one call to the file system fails: the first, the second, and so on until
// none is left to fail. Spool, hand-off store, temporary files, trace and work files lie below one
// folder; the database does not.

#include "port/com.h"
#include "signutils/measures.h"
#include "signutils/signutils.h"
#include "support/trace.h"
#include "tests/testing/bank.h"
#include "tests/testing/failing_files.h"
#include "tests/testing/temporary_folder.h"
#include "tests/testing/test_database.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace
{

using testing_support::Bank;
using testing_support::Bit;
using testing_support::Contract;
using testing_support::FileCall;
using testing_support::FileFault;
using testing_support::FilePlan;
using testing_support::Holder;
using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;
using testing_support::TestDatabase;

constexpr unsigned long kAccepted = 1;
constexpr unsigned long kRefused = 2;

struct Fault
{
    const char* name;
    FilePlan plan;
};

constexpr std::uint32_t kGrowing =
    Bit(FileCall::Write) | Bit(FileCall::Flush) | Bit(FileCall::MakeFolder);
constexpr std::uint32_t kTransfers = Bit(FileCall::Read) | Bit(FileCall::Write);

const Fault kFaults[] = {
    {"InputOutputError", {0, false, EIO, testing_support::kEveryFileCall}},
    {"Refused", {0, false, EACCES, testing_support::kEveryFileCall}},
    {"TooManyOpenFiles", {0, false, EMFILE, Bit(FileCall::Open)}},
    {"Interrupted", {0, false, EINTR, kTransfers}},
    {"HalfTransfers", {0, true, 0, kTransfers}},
    {"OneHalfTransfer", {0, false, 0, kTransfers}},
    {"DiskFull", {0, true, ENOSPC, kGrowing}},
    {"ReadOnlyFromThenOn",
     {0, true, EROFS, kGrowing | Bit(FileCall::Rename) | Bit(FileCall::Delete)}},
    {"DeletesRefused", {0, true, EACCES, Bit(FileCall::Delete)}},
};

std::vector<std::string> FilesBelow(const std::string& folder)
{
    std::vector<std::string> files;
    if (std::filesystem::exists(folder))
    {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        {
            if (entry.is_regular_file())
            {
                files.push_back(entry.path().string());
            }
        }
    }
    return files;
}

class FileFaults : public testing::TestWithParam<Fault>
{
protected:
    FileFaults()
    {
        std::filesystem::create_directory(m_temporary);
        Bank(m_database)
            .With(Holder(L"H1").Named(L"Ana", L"Ruiz").Certificate(L"Ana Ruiz"))
            .With(Contract(L"C1").AloneBy(L"H1").UpTo(L"350.49"));
    }

    void Prepare(SignUtils& session) const
    {
        session.SetConnexionString(m_database.ConnexionString().c_str());
        session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, "");
        session.SetMessageInfo("BANKFRPP", "ORDER0001", "pain.001.001.03", "MSG-1");
        session.SetAmountInfo(1000.0, 1000.0, "EUR");
    }

    void PutBack()
    {
        m_database.Execute(L"DELETE FROM HST_SIGNRULES");
        m_database.Execute(L"DELETE FROM EVT_JOURNAL");
        for (const std::string& folder : {m_spoolFolder, m_storeFolder, m_temporary, m_work})
        {
            std::filesystem::remove_all(folder);
        }
        std::filesystem::create_directory(m_temporary);
        std::filesystem::create_directory(m_work);
    }

    std::size_t Count(const wchar_t* table)
    {
        return m_database.Query(std::wstring(L"SELECT 1 FROM ") + table).size();
    }

    /// The next contact: whatever waits is delivered before this one, which is not counted.
    std::size_t DeliveredEvents()
    {
        SignUtils next;
        next.SetConnexionString(m_database.ConnexionString().c_str());
        next.LogEvent(0, L"next");
        return Count(L"EVT_JOURNAL") - 1;
    }

    std::vector<std::string> Reports() const
    {
        std::vector<std::string> reports;
        for (const std::string& path : FilesBelow(m_storeFolder))
        {
            const std::string name = std::filesystem::path(path).filename().string();
            if (!name.starts_with("identifiers."))
            {
                reports.push_back(path);
            }
        }
        return reports;
    }

    ScopedEnvironment m_memory{"TMPDIR", testing_support::MemoryFolder()};
    TestDatabase m_database; // in a folder of its own, which is spared
    TemporaryFolder m_folder;
    const std::string m_spoolFolder = m_folder.Path("spool");
    const std::string m_storeFolder = m_folder.Path("handoff");
    const std::string m_temporary = m_folder.Path("temporary");
    const std::string m_work = m_folder.Path("work");
    ScopedEnvironment m_spool{"SIGNUTILS_SPOOL", m_spoolFolder.c_str()};
    ScopedEnvironment m_handOff{"SIGNUTILS_HANDOFF", m_storeFolder.c_str()};
    ScopedEnvironment m_temporaryToo{"TMPDIR", m_temporary.c_str()};
    ScopedEnvironment m_language{"SIGNUTILS_LANG", "en"};
};

/// Whether the fault keeps a file from being deleted.
bool KeepsFiles(const FileFault& fault)
{
    return fault.WasUsed() && fault.Hit() == FileCall::Delete;
}

/// A refusal with its report while the journal is away or holds events that wait, and a trace.
class RecordFaults : public FileFaults
{
protected:
    /// Whether a call failed.
    bool Check(FilePlan plan, bool journalAway)
    {
        PutBack();
        m_database.Execute(L"ALTER TABLE EVT_JOURNAL RENAME TO EVT_AWAY");
        std::size_t due = 0;
        if (!journalAway)
        {
            SignUtils before;
            before.SetConnexionString(m_database.ConnexionString().c_str());
            before.LogEvent(0, L"before");
            m_database.Execute(L"ALTER TABLE EVT_AWAY RENAME TO EVT_JOURNAL");
            due = 1;
        }
        bool used = false;
        bool keepsFiles = false;
        CheckOutcome outcome;
        {
            const FileFault fault(m_folder.Path(), plan);
            void* const trace = TraceOpen(m_folder.Path("trace.txt").c_str());
            {
                SignUtils session(trace, nullptr);
                Prepare(session);
                session.SetPSRWarning("STATUS");
                EXPECT_EQ(session.CheckSignRules("order.xml", L"Ana Ruiz"), kRefused);
                outcome = session.GetLastCheck();
            }
            TraceClose(trace);
            used = fault.WasUsed();
            keepsFiles = KeepsFiles(fault) || plan.fromThenOn;
            m_hit = used
                        ? std::to_string(static_cast<unsigned>(fault.Hit())) + " " + fault.HitPath()
                        : "nothing";
        }
        SCOPED_TRACE("failed: " + m_hit);
        EXPECT_TRUE(outcome.ran);
        EXPECT_TRUE(outcome.rulesComplete);
        EXPECT_TRUE(outcome.lookupsComplete);
        EXPECT_EQ(outcome.rowsWritten, 1U);
        EXPECT_EQ(Count(L"HST_SIGNRULES"), 1U);
        ExpectReport(outcome);
        if (journalAway)
        {
            EXPECT_NE(outcome.journal, JournalState::Written);
            m_database.Execute(L"ALTER TABLE EVT_AWAY RENAME TO EVT_JOURNAL");
        }
        ExpectEvents(outcome, due);
        if (!keepsFiles)
        {
            EXPECT_EQ(FilesBelow(m_temporary), std::vector<std::string>());
        }
        return used;
    }

    void ExpectReport(const CheckOutcome& outcome) const
    {
        const std::vector<std::string> reports = Reports();
        if (outcome.report == ReportState::HandedOn)
        {
            ASSERT_EQ(reports.size(), 1U);
            const std::string text = testing_support::ReadWholeFile(reports.front());
            EXPECT_EQ(text.rfind("<?xml", 0), 0U);
            EXPECT_TRUE(text.ends_with("</Document>")) << text;
            return;
        }
        EXPECT_EQ(outcome.report, ReportState::NotHandedOn);
        EXPECT_FALSE(outcome.reportProblem.IsEmpty());
        for (const std::string& path : reports)
        {
            // Nobody fetches what is not finished. What is finished and cannot be made to last is
            // taken back, unless the system does not let it go.
            const FilePlan& plan = GetParam().plan;
            const bool kept = plan.fromThenOn && (plan.calls & Bit(FileCall::Delete)) != 0;
            EXPECT_TRUE(kept || std::filesystem::path(path).extension() == ".part") << path;
        }
    }

    /// The check's event and its report's, each once or told as lost, behind those before.
    void ExpectEvents(const CheckOutcome& outcome, std::size_t before)
    {
        constexpr std::size_t kOfTheCheck = 2;
        const std::size_t delivered = DeliveredEvents();
        if (outcome.journal == JournalState::Lost)
        {
            EXPECT_GE(delivered, before);
            EXPECT_LT(delivered, before + kOfTheCheck);
        }
        else
        {
            EXPECT_EQ(delivered, before + kOfTheCheck);
        }
        EXPECT_EQ(m_database.Query(L"SELECT DISTINCT EVENTKEY FROM EVT_JOURNAL").size(),
                  delivered + 1);
        for (const std::string& path : FilesBelow(m_spoolFolder))
        {
            // A spool that was begun and holds nothing is as good as none.
            EXPECT_EQ(std::filesystem::file_size(path), 0U) << path;
        }
    }

    void CheckEachCall(bool journalAway)
    {
        std::uint64_t number = 1;
        FilePlan plan = GetParam().plan;
        for (bool used = true; used && !HasFailure(); ++number)
        {
            SCOPED_TRACE(number);
            plan.failing = number;
            used = Check(plan, journalAway);
        }
        std::cout << GetParam().name << ": " << number - 1 << " runs\n";
    }

    std::string m_hit;
};

TEST_P(RecordFaults, TakeNothingFromAVerdictAndAreToldWhileTheJournalIsAway)
{
    CheckEachCall(true);
}

TEST_P(RecordFaults, TakeNothingFromAVerdictAndAreToldWhileEventsWait)
{
    CheckEachCall(false);
}

INSTANTIATE_TEST_SUITE_P(Kinds, RecordFaults, testing::ValuesIn(kFaults),
                         [](const auto& test) { return std::string(test.param.name); });

/// A check whose amounts come from its order file: 350.50 in two orders, against 350.49.
class WorkFileFaults : public FileFaults
{
protected:
    WorkFileFaults() { EXPECT_EQ(CoInitialize(nullptr), S_OK); }
    ~WorkFileFaults() override { CoUninitialize(); }

    bool Check(FilePlan plan)
    {
        PutBack();
        const std::string order = m_work + "/order.xml";
        std::filesystem::copy_file(std::filesystem::path(SIGNUTILS_CORPUS) / "pain001_v03.xml",
                                   order);
        SignUtils session;
        Prepare(session);
        session.SetFormatInfo("ISO20022", "pain.001", "");
        const FileFault fault(m_work, plan);
        const unsigned long verdict = session.CheckSignRules(order.c_str(), L"Ana Ruiz");
        SCOPED_TRACE("failed: " + std::to_string(static_cast<unsigned>(fault.Hit())) + " " +
                     fault.HitPath());
        const CheckOutcome& outcome = session.GetLastCheck();
        EXPECT_TRUE(outcome.ran);
        // What was read still counts.
        EXPECT_EQ(verdict, outcome.totalAmount > 350.49 ? kRefused : kAccepted);
        if (outcome.amountsKnown)
        {
            EXPECT_DOUBLE_EQ(outcome.totalAmount, 350.50);
            EXPECT_DOUBLE_EQ(outcome.maxOrderAmount, 250.50);
            EXPECT_EQ(outcome.orderCount, 2);
        }
        else
        {
            EXPECT_TRUE(fault.WasUsed());
            EXPECT_FALSE(outcome.amountsProblem.IsEmpty());
        }
        if (!KeepsFiles(fault) && !plan.fromThenOn)
        {
            EXPECT_EQ(FilesBelow(m_work), std::vector<std::string>({order}));
        }
        return fault.WasUsed();
    }
};

TEST_P(WorkFileFaults, LeaveTheAmountsRightOrToldAsUnknown)
{
    std::uint64_t number = 1;
    FilePlan plan = GetParam().plan;
    for (bool used = true; used && !HasFailure(); ++number)
    {
        SCOPED_TRACE(number);
        plan.failing = number;
        used = Check(plan);
    }
    std::cout << GetParam().name << ": " << number - 1 << " runs\n";
}

INSTANTIATE_TEST_SUITE_P(Kinds, WorkFileFaults, testing::ValuesIn(kFaults),
                         [](const auto& test) { return std::string(test.param.name); });

class MeasuresFaults : public testing::TestWithParam<FileCall>
{
};

// The one of before stays, and nothing beside it.
TEST_P(MeasuresFaults, FileIsAsItWasAndTheReasonIsTold)
{
    const TemporaryFolder folder;
    const ScopedEnvironment spool("SIGNUTILS_SPOOL", folder.Path("spool").c_str());
    const std::string before = "# HELP signutils_build_info of before";
    const std::string file = folder.Write("orders.prom", before);
    signutils::StartMeasures();
    TSimpleString problem;
    {
        const FileFault fault(folder.Path(), {1, false, EIO, Bit(GetParam())});
        EXPECT_FALSE(signutils::WriteMeasures(file.c_str(), problem));
        EXPECT_TRUE(fault.WasUsed());
    }
    EXPECT_FALSE(problem.IsEmpty());
    EXPECT_EQ(testing_support::ReadWholeFile(file), before);
    EXPECT_EQ(FilesBelow(folder.Path()).size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Calls, MeasuresFaults,
                         testing::Values(FileCall::Open, FileCall::Write, FileCall::Flush,
                                         FileCall::Rename),
                         [](const auto& call)
                         { return "Call" + std::to_string(static_cast<unsigned>(call.param)); });

} // namespace
