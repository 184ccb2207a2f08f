#include "psr/report_handoff.h"
#include "psr/status_report.h"
#include "tests/testing/failing_allocations.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <string>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::FailAllAllocations;
using testing_support::FailNextAllocation;
using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;

constexpr char kMomentOfMemory[] = "2026-03-29T14:05:09";

const psr::StatusReport kRefusal = {
    "BANKFRPP", "MSG-2026-0001", "pain.001.001.03", "PSR-1", false, "AM02", "A reason", 3, 1234.5};

TEST(ReportWithoutMemory, KeepsTheOldDocument)
{
    TSimpleString document("the document that was there before");
    bool failed = true;
    for (unsigned long spared = 0; failed; ++spared)
    {
        bool raised = false;
        try
        {
            const FailNextAllocation failure(spared);
            psr::WriteStatusReport(nullptr, kRefusal, kMomentOfMemory, document);
            failed = failure.WasUsed();
        }
        catch (const std::bad_alloc&)
        {
            raised = true;
        }
        EXPECT_EQ(raised, failed) << spared;
        EXPECT_EQ(document == "the document that was there before", failed) << spared;
    }
    TSimpleString expected;
    psr::WriteStatusReport(nullptr, kRefusal, kMomentOfMemory, expected);
    EXPECT_TRUE(document == expected);
}

/// All regular files below a folder, but the store's own two.
std::vector<std::string> ReportsBelow(const std::string& folder)
{
    std::vector<std::string> files;
    if (!std::filesystem::exists(folder))
    {
        return files;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    {
        const std::string name = entry.path().filename().string();
        if (entry.is_regular_file() && name != "identifiers.counter" && name != "identifiers.lock")
        {
            files.push_back(name);
        }
    }
    return files;
}

/// A hand-over by the real service of which one allocation fails, or it and all behind it.
template <typename Failure>
class HandOffWithoutMemory : public testing::Test
{
protected:
    HandOffWithoutMemory() { std::filesystem::create_directory(m_temporary); }

    /// Whether an allocation failed on the way. Asserts what must be true however it ended.
    bool HandOnSparing(unsigned long spared)
    {
        const std::string store = m_folder.Path("store" + std::to_string(spared));
        const TSimpleString report("a report that is longer than a short text");
        tag_Rc rc = {};
        unsigned long fileId = 0;
        std::uint32_t result = psr::kNotHandedOn;
        bool used = true;
        try
        {
            const Failure failure(spared);
            result = psr::HandOnReport(nullptr, report, "psr", "STATUS", "PARTNER1", store.c_str(),
                                       rc, &fileId);
            used = failure.WasUsed();
        }
        catch (const std::bad_alloc&)
        {
            EXPECT_EQ(fileId, 0U) << spared;
        }
        EXPECT_THAT(ReportsBelow(m_temporary), IsEmpty()) << spared;
        if (result == psr::kHandedOn)
        {
            EXPECT_THAT(ReportsBelow(store), ElementsAre("1.psr")) << spared;
            EXPECT_EQ(fileId, 1U) << spared;
        }
        else
        {
            EXPECT_THAT(ReportsBelow(store), IsEmpty()) << spared;
            EXPECT_EQ(fileId, 0U) << spared;
        }
        EXPECT_EQ(psr::kHandedOn, psr::HandOnReport(nullptr, report, "psr", "STATUS", "PARTNER1",
                                                    store.c_str(), rc, &fileId))
            << spared << ": " << rc.text;
        return used;
    }

    TemporaryFolder m_folder;
    std::string m_temporary = m_folder.Path("temporary");
    ScopedEnvironment m_posix{"TMPDIR", m_temporary.c_str()};
    ScopedEnvironment m_windows{"TMP", m_temporary.c_str()};
    ScopedEnvironment m_windowsToo{"TEMP", m_temporary.c_str()};
};

using Failures = testing::Types<FailNextAllocation, FailAllAllocations>;
TYPED_TEST_SUITE(HandOffWithoutMemory, Failures);

TYPED_TEST(HandOffWithoutMemory, LeavesNoTemporaryFileAndFilesTheReportOrNot)
{
    unsigned long spared = 0;
    while (this->HandOnSparing(spared))
    {
        ++spared;
    }
    EXPECT_GT(spared, 10U); // there was something to fail
}

} // namespace
