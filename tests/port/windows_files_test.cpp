#include "port/files.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{

TEST(WindowsFiles, OpenFileIsDeletedOnlyAfterItsEnd)
{
    const testing_support::TemporaryFolder folder;
    const std::string path = folder.Write("order.veu", "x");
    port::File file;
    ASSERT_TRUE(file.Open(path.c_str(), port::OpenMode::Read));

    SetLastError(0);
    EXPECT_EQ(DeleteFileA(path.c_str()), 0);
    EXPECT_EQ(GetLastError(), 32U); // a sharing violation
    EXPECT_TRUE(std::filesystem::exists(path));

    file.Close();
    EXPECT_NE(DeleteFileA(path.c_str()), 0);
    EXPECT_FALSE(std::filesystem::exists(path));
}

} // namespace
