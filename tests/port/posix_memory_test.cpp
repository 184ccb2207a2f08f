#include "port/com.h"
#include "port/files.h"
#include "port/profile.h"
#include "tests/testing/failing_allocations.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

// Calls of a C interface raise nothing: without memory they fail with that reason.

namespace
{

namespace fs = std::filesystem;
using testing_support::FailAllAllocations;
using testing_support::FailNextAllocation;
using testing_support::TemporaryFolder;

TEST(PosixMemory, FileIsDeletedWithoutMemory)
{
    const TemporaryFolder folder;
    folder.Write("soci\xC3\xA9t\xC3\xA9 \xE2\x82\xAC.veu", "x");
    const std::string path = folder.Path("soci\xE9t\xE9 \x80.veu");
    {
        const FailAllAllocations failure;
        EXPECT_NE(DeleteFileA(path.c_str()), 0);
        EXPECT_FALSE(failure.WasUsed());
    }
    EXPECT_TRUE(fs::is_empty(folder.Path()));
}

TEST(PosixMemory, PathLongerThanTheKernelTakesIsRefused)
{
    SetLastError(0);
    EXPECT_EQ(DeleteFileA(("/" + std::string(5000, 'p')).c_str()), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_NAME);
}

TEST(PosixMemory, DeletionThatCannotFindItsReasonTellsWantOfMemory)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("a missing folder/a file");
    SetLastError(0);
    BOOL deleted = TRUE;
    {
        const FailAllAllocations failure;
        EXPECT_NO_THROW(deleted = DeleteFileA(path.c_str()));
        EXPECT_TRUE(failure.WasUsed());
    }
    EXPECT_EQ(deleted, FALSE);
    EXPECT_EQ(GetLastError(), ERROR_NOT_ENOUGH_MEMORY);
}

/// A profile file with values too long to be kept without memory.
class PosixMemoryProfile : public testing::Test
{
protected:
    TemporaryFolder m_folder;
    std::string m_path =
        m_folder.Write("test.ini", "[A section with a long name]\nkey=" + m_value + "\n");

    static inline const std::string m_value = std::string(100, 'v');
    char m_buffer[256] = "before";
};

TEST_F(PosixMemoryProfile, ValueIsReadOrWantOfMemoryIsTold)
{
    bool failed = true;
    for (unsigned long spared = 0; failed; ++spared)
    {
        SetLastError(0);
        DWORD length = 4711;
        {
            const FailNextAllocation failure(spared);
            EXPECT_NO_THROW(
                length = GetPrivateProfileStringA("A section with a long name", "key",
                                                  "a default that is longer than a short text",
                                                  m_buffer, sizeof m_buffer, m_path.c_str()));
            failed = failure.WasUsed();
        }
        EXPECT_EQ(length, failed ? 0U : 100U) << spared;
        EXPECT_EQ(std::string(m_buffer), failed ? "" : m_value) << spared;
        EXPECT_EQ(GetLastError(), failed ? ERROR_NOT_ENOUGH_MEMORY : 0U) << spared;
    }
}

TEST_F(PosixMemoryProfile, SectionIsReadOrWantOfMemoryIsTold)
{
    bool failed = true;
    for (unsigned long spared = 0; failed; ++spared)
    {
        SetLastError(0);
        DWORD length = 4711;
        {
            const FailNextAllocation failure(spared);
            EXPECT_NO_THROW(length =
                                GetPrivateProfileSectionA("A section with a long name", m_buffer,
                                                          sizeof m_buffer, m_path.c_str()));
            failed = failure.WasUsed();
        }
        EXPECT_EQ(length, failed ? 0U : 105U) << spared;
        EXPECT_EQ(std::string(m_buffer), failed ? "" : "key=" + m_value) << spared;
        EXPECT_EQ(m_buffer[1], failed ? '\0' : 'e') << spared;
        EXPECT_EQ(GetLastError(), failed ? ERROR_NOT_ENOUGH_MEMORY : 0U) << spared;
    }
}

TEST(PosixMemory, ComRaisesNothingWithoutMemory)
{
    const GUID clsid = {0x5A1B2C3D, 0x0009, 0x4A00, {0x80, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 7}};
    ASSERT_EQ(CoInitialize(nullptr), S_OK);
    bool failed = true;
    for (unsigned long spared = 0; failed; ++spared)
    {
        const FailNextAllocation failure(spared);
        void* object = nullptr;
        HRESULT result = S_OK;
        EXPECT_NO_THROW(
            result = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, &object));
        EXPECT_NO_THROW(CoRevokeClassObject(4711));
        EXPECT_NO_THROW(CoFreeUnusedLibraries());
        failed = failure.WasUsed();
        EXPECT_TRUE(FAILED(result));
        EXPECT_EQ(object, nullptr);
    }
    CoUninitialize();
}

} // namespace
