#include "port/files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace
{

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing_support::TemporaryFolder;

TEST(Folder, PrivateFolderIsCreatedWithWhatIsMissingAboveIt)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("a/b/c");
    EXPECT_TRUE(port::CreatePrivateFolder(path.c_str()));
    EXPECT_TRUE(fs::is_directory(path));
    EXPECT_TRUE(port::CreatePrivateFolder(path.c_str())) << "one's own folder is accepted";
    EXPECT_TRUE(port::CreatePrivateFolder((path + "/").c_str()));
}

TEST(Folder, PrivateFolderIsRefusedWithTheReason)
{
    const TemporaryFolder folder;
    const std::string file = folder.Write("file", "");
    EXPECT_FALSE(port::CreatePrivateFolder(file.c_str()));
    EXPECT_EQ(GetLastError(), 80U);
    EXPECT_FALSE(port::CreatePrivateFolder((file + "/below").c_str()));
    EXPECT_EQ(GetLastError(), 3U);
    EXPECT_FALSE(port::CreatePrivateFolder(""));
    EXPECT_EQ(GetLastError(), 3U);
}

TEST(Folder, ListsNamesSortedByBytes)
{
    const TemporaryFolder folder;
    folder.Write("b", "");
    folder.Write("C", "");
    folder.Write(".hidden", "");
    fs::create_directory(folder.Path("a"));
    std::vector<std::string> names = {"left over"};
    ASSERT_TRUE(port::ListFolder(folder.Path().c_str(), names));
    EXPECT_THAT(names, ElementsAre(".hidden", "C", "a", "b"));
}

TEST(Folder, ListingAnEmptyFolderGivesNoName)
{
    const TemporaryFolder folder;
    std::vector<std::string> names = {"left over"};
    EXPECT_TRUE(port::ListFolder(folder.Path().c_str(), names));
    EXPECT_TRUE(names.empty());
}

TEST(Folder, NamesWithoutAPlaceInWindows1252AreNotListed)
{
    const TemporaryFolder folder;
    fs::create_directory(fs::path(folder.Path()) / fs::path(u8"\u0142"));
    fs::create_directory(fs::path(folder.Path()) / fs::path(u8"\u20AC\u00E9"));
    std::vector<std::string> names;
    ASSERT_TRUE(port::ListFolder(folder.Path().c_str(), names));
    EXPECT_THAT(names, ElementsAre("\x80\xE9"));
}

TEST(Folder, ListingWhatIsNoFolderFails)
{
    const TemporaryFolder folder;
    std::vector<std::string> names;
    EXPECT_FALSE(port::ListFolder(folder.Path("missing").c_str(), names));
    EXPECT_FALSE(port::ListFolder(folder.Write("file", "").c_str(), names));
    EXPECT_EQ(GetLastError(), 3U);
}

TEST(Folder, OnlyAnEmptyFolderIsRemoved)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("a");
    fs::create_directory(path);
    folder.Write("a/file", "");
    EXPECT_FALSE(port::RemoveEmptyFolder(path.c_str()));
    EXPECT_EQ(GetLastError(), 145U);
    fs::remove(folder.Path("a/file"));
    EXPECT_TRUE(port::RemoveEmptyFolder(path.c_str()));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_FALSE(port::RemoveEmptyFolder(path.c_str()));
    EXPECT_EQ(GetLastError(), 2U);
}

TEST(Folder, WritableIsSaidOfFoldersOnly)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(port::IsWritableFolder(folder.Path().c_str()));
    EXPECT_FALSE(port::IsWritableFolder(folder.Write("file", "").c_str()));
    EXPECT_FALSE(port::IsWritableFolder(folder.Path("missing").c_str()));
}

TEST(Folder, FlushingReachesFoldersOnly)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(port::FlushFolder(folder.Path().c_str()));
    EXPECT_FALSE(port::FlushFolder(folder.Path("missing").c_str()));
}

TEST(Folder, TemporaryFolderIsThereAndEndsWithoutSeparator)
{
    const std::string folder = port::TemporaryFolder();
    EXPECT_TRUE(port::FolderExists(folder.c_str()));
    EXPECT_FALSE(port::IsPathSeparator(folder.back()));
}

TEST(Folder, ModuleFolderIsThereAndEndsWithoutSeparator)
{
    const std::string folder = port::ModuleFolder();
    EXPECT_TRUE(fs::path(folder).is_absolute());
    EXPECT_TRUE(port::FolderExists(folder.c_str()));
    EXPECT_FALSE(port::IsPathSeparator(folder.back()));
}

} // namespace
