#include "psr/report_handoff.h"

#include "port/file_identity.h"
#include "services/tpipeexception.h"
#include "tests/signers/trace_file.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::ReadWholeFile;
using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;
using testing_support::TraceFile;

constexpr char kDocument[] = "<?xml version=\"1.0\"?>\n<Document/>";

std::vector<std::string> NamesIn(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
    {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

/// A client that notes what it is asked and answers what the test wants.
class NotingClient : public cmoncom
{
public:
    NotingClient() : cmoncom(1) {}

    bool AddFile(const char* first, const char* target, tagADDFILE* record,
                 unsigned long& fileId) override
    {
        ++calls;
        firstWasNull = first == nullptr;
        targetWasNull = target == nullptr;
        targetText = target == nullptr ? "" : target;
        announced = *record;
        idBefore = fileId;
        path = std::string(record->filePath, strnlen(record->filePath, sizeof(record->filePath)));
        content = ReadWholeFile(path);
        fileId = 42;
        return answer();
    }
    void Refuse(std::uint32_t code, std::uint32_t systemCode, const char* text)
    {
        m_lastRc = {};
        m_lastRc.code = code;
        m_lastRc.systemCode = systemCode;
        std::strncpy(m_lastRc.text, text, sizeof(m_lastRc.text) - 1);
        answer = [] { return false; };
    }

    std::function<bool()> answer = [] { return true; };
    int calls = 0;
    bool firstWasNull = false;
    bool targetWasNull = false;
    std::string targetText;
    tagADDFILE announced = {};
    unsigned long idBefore = 99;
    std::string path;
    std::string content;
};

/// A world whose temporary files lie in a folder of the test.
class ReportHandOff : public testing::Test
{
protected:
    ReportHandOff()
    {
        std::filesystem::create_directory(m_temporary);
        std::memset(&rc, 0x5A, sizeof(rc));
    }

    std::uint32_t HandOn(const char* extension = "psr", const char* service = "STATUS",
                         const char* partner = "PARTNER1", const char* target = "")
    {
        return psr::HandOnReport(nullptr, client, TSimpleString(kDocument), extension, service,
                                 partner, target, rc, &fileId);
    }

    std::vector<std::string> TemporaryFiles() const { return NamesIn(m_temporary); }

    /// Whether no byte of the error record was written.
    bool RcUntouched() const
    {
        tag_Rc before;
        std::memset(&before, 0x5A, sizeof(before));
        return std::memcmp(&before, &rc, sizeof(rc)) == 0;
    }

    TemporaryFolder folder;
    std::string m_temporary = folder.Path("temporary");
    ScopedEnvironment m_posix{"TMPDIR", m_temporary.c_str()};
    ScopedEnvironment m_windows{"TMP", m_temporary.c_str()};
    ScopedEnvironment m_windowsToo{"TEMP", m_temporary.c_str()};
    ScopedEnvironment m_store{"SIGNUTILS_HANDOFF", folder.Path("store").c_str()};
    NotingClient client;
    tag_Rc rc;
    unsigned long fileId = 7;
};

TEST_F(ReportHandOff, SuccessGivesTheIdentifierAndLeavesTheErrorRecord)
{
    EXPECT_EQ(HandOn(), psr::kHandedOn);
    EXPECT_EQ(fileId, 42U);
    EXPECT_TRUE(RcUntouched());
    EXPECT_EQ(client.calls, 1);
}

TEST_F(ReportHandOff, ResultCodesAreTheHostsOwn)
{
    EXPECT_EQ(psr::kHandedOn, 0U);
    EXPECT_EQ(psr::kNotHandedOn, 13172740U);
}

TEST_F(ReportHandOff, FileHoldsTheReportWhileItIsAnnounced)
{
    HandOn();
    EXPECT_EQ(client.content, kDocument);
    EXPECT_EQ(port::IdentifyFile(std::filesystem::path(client.path).parent_path().string()),
              port::IdentifyFile(m_temporary));
    EXPECT_EQ(std::filesystem::path(client.path).extension().string(), ".psr");
}

TEST_F(ReportHandOff, RecordIsFilledAndTheRestIsZero)
{
    const auto before = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    HandOn("psr", "ST", "P");
    const auto after = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());

    const tagADDFILE& record = client.announced;
    EXPECT_EQ(std::string(record.partner, 8), std::string("P\0\0\0\0\0\0\0", 8));
    EXPECT_EQ(std::string(record.service, 8), std::string("ST\0\0\0\0\0\0", 8));
    EXPECT_EQ(record.fileKind, 2);
    EXPECT_EQ(record.flag, 1U);
    EXPECT_GE(record.creationTime, static_cast<std::int64_t>(before));
    EXPECT_LE(record.creationTime, static_cast<std::int64_t>(after));
    EXPECT_EQ(std::memcmp(record.filePath, record.secondFilePath, sizeof(record.filePath)), 0);
    EXPECT_THAT(std::string(record.filePath + client.path.size(),
                            sizeof(record.filePath) - client.path.size()),
                testing::Each('\0'));
}

TEST_F(ReportHandOff, IdentifiersOfEightCharactersFillTheirFields)
{
    HandOn("psr", "SERVICE8", "PARTNER8");
    EXPECT_EQ(std::string(client.announced.partner, 8), "PARTNER8");
    EXPECT_EQ(std::string(client.announced.service, 8), "SERVICE8");
}

TEST_F(ReportHandOff, IdentifiersAreCutToEightCharacters)
{
    HandOn("psr", "SERVICE89", "PARTNER8-TOO-LONG");
    EXPECT_EQ(std::string(client.announced.partner, 8), "PARTNER8");
    EXPECT_EQ(std::string(client.announced.service, 8), "SERVICE8");
    EXPECT_EQ(client.announced.fileKind, 2);
}

TEST_F(ReportHandOff, ClientIsCalledWithNullAndAnIdentifierOfZero)
{
    HandOn();
    EXPECT_TRUE(client.firstWasNull);
    EXPECT_EQ(client.idBefore, 0U);
}

TEST_F(ReportHandOff, EmptyTargetArrivesAsNull)
{
    HandOn("psr", "STATUS", "PARTNER1", "");
    EXPECT_TRUE(client.targetWasNull);
}

TEST_F(ReportHandOff, NullTargetArrivesAsNull)
{
    HandOn("psr", "STATUS", "PARTNER1", nullptr);
    EXPECT_TRUE(client.targetWasNull);
}

TEST_F(ReportHandOff, TargetArrivesAsGiven)
{
    HandOn("psr", "STATUS", "PARTNER1", "/some/where");
    EXPECT_EQ(client.targetText, "/some/where");
}

struct KindCase
{
    const char* name;
    const char* extension;
    int kind;
};

class ReportHandOffKind : public ReportHandOff, public testing::WithParamInterface<KindCase>
{
};

TEST_P(ReportHandOffKind, FollowsTheExtension)
{
    HandOn(GetParam().extension);
    EXPECT_EQ(client.announced.fileKind, GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(Extensions, ReportHandOffKind,
                         testing::Values(KindCase{"HacInCapitals", "HAC", 4},
                                         KindCase{"Hac", "hac", 4}, KindCase{"PtkMixed", "pTk", 1},
                                         KindCase{"Ptk", "ptk", 1}, KindCase{"Psr", "psr", 2},
                                         KindCase{"LongerThanHac", "hacx", 2},
                                         KindCase{"ShorterThanPtk", "pt", 2},
                                         KindCase{"None", "", 2}),
                         [](const auto& run) { return run.param.name; });

TEST_F(ReportHandOff, IdentifierNeedNotBeAskedFor)
{
    EXPECT_EQ(psr::HandOnReport(nullptr, client, TSimpleString(kDocument), "psr", "STATUS",
                                "PARTNER1", "", rc, nullptr),
              psr::kHandedOn);
    EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(ReportHandOff, NullNamesArriveEmpty)
{
    EXPECT_EQ(HandOn(nullptr, nullptr, nullptr, nullptr), psr::kHandedOn);
    EXPECT_THAT(std::string(client.announced.partner, 8), testing::Each('\0'));
    EXPECT_THAT(std::string(client.announced.service, 8), testing::Each('\0'));
}

TEST_F(ReportHandOff, TemporaryFileIsGoneAfterSuccess)
{
    HandOn();
    EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(ReportHandOff, RefusalCopiesTheWholeErrorRecord)
{
    client.Refuse(4, 112, "disk full");
    EXPECT_EQ(HandOn(), psr::kNotHandedOn);
    EXPECT_EQ(rc.code, 4U);
    EXPECT_EQ(rc.systemCode, 112U);
    EXPECT_STREQ(rc.text, "disk full");
    EXPECT_EQ(std::memcmp(&rc, &client.GetLastRc(), sizeof(rc)), 0);
    EXPECT_EQ(fileId, 7U);
    EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(ReportHandOff, UnreachableServiceWritesItsTextOnly)
{
    client.answer = []() -> bool { throw TPipeException("The store is missing"); };
    EXPECT_EQ(HandOn(), psr::kNotHandedOn);
    EXPECT_STREQ(rc.text, "The store is missing");
    EXPECT_EQ(rc.code, 0x5A5A5A5AU);
    EXPECT_EQ(rc.systemCode, 0x5A5A5A5AU);
    EXPECT_EQ(fileId, 7U);
    EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(ReportHandOff, LongTextOfAnExceptionIsCutTo254Characters)
{
    client.answer = []() -> bool { throw TPipeException(std::string(300, 't').c_str()); };
    HandOn();
    EXPECT_EQ(std::string(rc.text), std::string(254, 't'));
}

TEST_F(ReportHandOff, AnyOtherExceptionIsUnknown)
{
    client.answer = []() -> bool { throw std::runtime_error("from below"); };
    EXPECT_EQ(HandOn(), psr::kNotHandedOn);
    EXPECT_STREQ(rc.text, "Unknown exception");
    EXPECT_EQ(rc.code, 0x5A5A5A5AU);
    EXPECT_EQ(fileId, 7U);
    EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(ReportHandOff, ExceptionThatIsNoObjectIsUnknown)
{
    client.answer = []() -> bool { throw 5; };
    EXPECT_EQ(HandOn(), psr::kNotHandedOn);
    EXPECT_STREQ(rc.text, "Unknown exception");
    EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(ReportHandOff, ReportThatCannotBeSavedIsNotAnnounced)
{
    std::filesystem::remove_all(m_temporary);
    EXPECT_EQ(HandOn(), psr::kNotHandedOn);
    EXPECT_EQ(client.calls, 0);
    EXPECT_TRUE(RcUntouched());
    EXPECT_EQ(fileId, 7U);
}

TEST_F(ReportHandOff, FileThatIsGoneAlreadyIsNoFailure)
{
    client.answer = [this] { return std::filesystem::remove(client.path); };
    EXPECT_EQ(HandOn(), psr::kHandedOn);
}

TEST_F(ReportHandOff, TraceTellsPartnerAndService)
{
    TraceFile trace;
    psr::HandOnReport(trace.Handle(), client, TSimpleString(kDocument), "psr", "STATUS", "PARTNER1",
                      "", rc, &fileId);
    EXPECT_EQ(trace.Lines(), "[PREPFILE STATUS REPORT]\nPartner|PARTNER1\nService|STATUS\n");
}

TEST_F(ReportHandOff, UnusableTraceHandlesAreIgnored)
{
    void* const allOnes = reinterpret_cast<void*>(UINTPTR_MAX);
    EXPECT_EQ(psr::HandOnReport(allOnes, client, TSimpleString(kDocument), "psr", "STATUS",
                                "PARTNER1", "", rc, &fileId),
              psr::kHandedOn);
}

TEST_F(ReportHandOff, RealServiceFilesTheReportUnderTheDefaultStore)
{
    EXPECT_EQ(psr::HandOnReport(nullptr, TSimpleString(kDocument), "psr", "STATUS", "PARTNER1", "",
                                rc, &fileId),
              psr::kHandedOn);
    EXPECT_EQ(fileId, 1U);
    EXPECT_EQ(ReadWholeFile(folder.Path("store/STATUS/PARTNER1/1.psr")), kDocument);
    EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(ReportHandOff, RealServiceFilesTheReportUnderTheTarget)
{
    const std::string target = folder.Path("elsewhere");
    EXPECT_EQ(psr::HandOnReport(nullptr, TSimpleString(kDocument), "psr", "STATUS", "PARTNER1",
                                target.c_str(), rc, &fileId),
              psr::kHandedOn);
    EXPECT_EQ(ReadWholeFile(folder.Path("elsewhere/STATUS/PARTNER1/1.psr")), kDocument);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("store")));
}

TEST_F(ReportHandOff, RealServiceRefusesANameThatWouldLeaveTheStore)
{
    EXPECT_EQ(psr::HandOnReport(nullptr, TSimpleString(kDocument), "psr", "STATUS", "..", "", rc,
                                &fileId),
              psr::kNotHandedOn);
    EXPECT_THAT(rc.text, HasSubstr("partner"));
    EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

TEST_F(ReportHandOff, RealServiceWithoutAUsableStoreTellsWhy)
{
    const std::string target = folder.Write("a-file", "not a folder");
    EXPECT_EQ(psr::HandOnReport(nullptr, TSimpleString(kDocument), "psr", "STATUS", "PARTNER1",
                                target.c_str(), rc, &fileId),
              psr::kNotHandedOn);
    EXPECT_THAT(rc.text, HasSubstr(target));
    EXPECT_EQ(rc.code, 0x5A5A5A5AU);
    EXPECT_THAT(TemporaryFiles(), IsEmpty());
}

} // namespace
