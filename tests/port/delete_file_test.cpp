#include "port/files.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{

namespace fs = std::filesystem;
using testing_support::TemporaryFolder;

struct Refusal
{
    const char* description;
    std::string path;
    DWORD error;
};

TEST(DeleteFileA, RemovesAFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.veu", "x");
    EXPECT_NE(DeleteFileA(path.c_str()), 0);
    EXPECT_FALSE(fs::exists(path));
}

TEST(DeleteFileA, RefusesWithTheReason)
{
    const TemporaryFolder folder;
    const std::string file = folder.Write("present", "x");
    const std::string readOnly = folder.Write("readonly", "x");
    fs::permissions(readOnly, fs::perms::owner_read);
    const Refusal refusals[] = {
        {"no such file", folder.Path("missing"), 2},
        {"no such folder", folder.Path("missing/file"), 3},
        {"a file where a folder is needed", file + "/below", 3},
        {"empty name", "", 3},
        {"a folder", folder.Path(), 5},
        {"a file without write permission", readOnly, 5},
        {"star in the name", folder.Path("pre*"), 123},
        {"question mark in the name", folder.Path("presen?"), 123},
    };
    for (const Refusal& refusal : refusals)
    {
        SetLastError(0);
        EXPECT_EQ(DeleteFileA(refusal.path.c_str()), 0) << refusal.description;
        EXPECT_EQ(GetLastError(), refusal.error) << refusal.description;
    }
    EXPECT_TRUE(fs::exists(file));
    EXPECT_TRUE(fs::exists(readOnly));
    fs::permissions(readOnly, fs::perms::owner_all);
}

} // namespace
