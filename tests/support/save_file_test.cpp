#include "port/file_identity.h"
#include "support/temporary_file.h"
#include "support/tsimplestring.h"
#include "tests/testing/platform.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

namespace
{

using testing_support::ReadWholeFile;
using testing_support::TemporaryFolder;

std::size_t FilesIn(const std::string& folder)
{
    const std::filesystem::directory_iterator files(folder);
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

TEST(SaveFile, WritesTheWholeTextByteForByte)
{
    const TemporaryFolder folder;
    const TSimpleString text("<a>\r\n\xC3\xA9</a>");
    TSimpleString name;
    ASSERT_TRUE(text.SaveFile(folder.Path().c_str(), "psr", name, 0));
    EXPECT_EQ(ReadWholeFile(name.SafeGetString()), "<a>\r\n\xC3\xA9</a>");
    const std::filesystem::path path(name.SafeGetString());
    EXPECT_EQ(path.parent_path(), std::filesystem::path(folder.Path()));
    EXPECT_EQ(path.extension(), ".psr");
}

TEST(SaveFile, WritesAnEmptyTextAsAnEmptyFile)
{
    const TemporaryFolder folder;
    TSimpleString name;
    ASSERT_TRUE(TSimpleString().SaveFile(folder.Path().c_str(), "psr", name, 0));
    EXPECT_EQ(ReadWholeFile(name.SafeGetString()), "");
}

TEST(SaveFile, LargeTextsArriveWhole)
{
    const TemporaryFolder folder;
    const std::string large(3'000'000, 'x');
    TSimpleString name;
    ASSERT_TRUE(TSimpleString(large.c_str()).SaveFile(folder.Path().c_str(), "psr", name, 0));
    EXPECT_EQ(ReadWholeFile(name.SafeGetString()), large);
}

TEST(SaveFile, WithoutAFolderTheFolderForTemporaryFilesIsUsed)
{
    const TSimpleString text("content");
    for (const char* const directory : {static_cast<const char*>(nullptr), ""})
    {
        TSimpleString name;
        ASSERT_TRUE(text.SaveFile(directory, "psr", name, 0));
        const std::filesystem::path path(name.SafeGetString());
        EXPECT_EQ(port::IdentifyFile(path.parent_path().string()),
                  port::IdentifyFile(std::filesystem::temp_directory_path().string()));
        EXPECT_TRUE(std::filesystem::remove(path));
    }
}

TEST(SaveFile, WithoutAnExtensionTheNameHasNoPoint)
{
    const TemporaryFolder folder;
    for (const char* const extension : {static_cast<const char*>(nullptr), ""})
    {
        TSimpleString name;
        ASSERT_TRUE(TSimpleString("x").SaveFile(folder.Path().c_str(), extension, name, 0));
        EXPECT_EQ(std::filesystem::path(name.SafeGetString()).extension(), "");
    }
}

TEST(SaveFile, EveryFileHasANameOfItsOwn)
{
    const TemporaryFolder folder;
    const TSimpleString text("same");
    std::set<std::string> names;
    for (int i = 0; i < 100; ++i)
    {
        TSimpleString name;
        ASSERT_TRUE(text.SaveFile(folder.Path().c_str(), "psr", name, 0));
        names.insert(name.SafeGetString());
    }
    EXPECT_EQ(names.size(), 100U);
    EXPECT_EQ(FilesIn(folder.Path()), 100U);
}

TEST(SaveFile, OnlyTheOwnerMayReadTheFile)
{
    const TemporaryFolder folder;
    TSimpleString name;
    ASSERT_TRUE(TSimpleString("secret").SaveFile(folder.Path().c_str(), "psr", name, 0));
    EXPECT_TRUE(testing_support::IsForOwnerOnly(name.SafeGetString()));
}

TEST(SaveFile, TheNameMayBeStoredInTheTextItself)
{
    const TemporaryFolder folder;
    TSimpleString text("content");
    ASSERT_TRUE(text.SaveFile(folder.Path().c_str(), "psr", text, 0));
    EXPECT_EQ(ReadWholeFile(text.SafeGetString()), "content");
}

TEST(SaveFile, AMissingFolderIsRefusedAndTheNameStays)
{
    const TemporaryFolder folder;
    TSimpleString name("before");
    EXPECT_FALSE(TSimpleString("x").SaveFile(folder.Path("none").c_str(), "psr", name, 0));
    EXPECT_STREQ(name.SafeGetString(), "before");
}

TEST(SaveFile, AnExtensionThatLeadsOutOfTheFolderIsRefused)
{
    const TemporaryFolder folder;
    TSimpleString name("before");
    EXPECT_FALSE(TSimpleString("x").SaveFile(folder.Path().c_str(), "x/../../y", name, 0));
    EXPECT_STREQ(name.SafeGetString(), "before");
    EXPECT_EQ(FilesIn(folder.Path()), 0U);
}

TEST(TemporaryFile, AFileThatIsThereIsNeverOverwritten)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("present", "kept");
    EXPECT_FALSE(support::WriteNewFile(path, "other"));
    EXPECT_EQ(ReadWholeFile(path), "kept");
}

} // namespace
