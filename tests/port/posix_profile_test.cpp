#include "port/profile.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

// Choices of the POSIX side where Windows differs between its versions or has no counterpart.

namespace
{

using testing_support::TemporaryFolder;

TEST(PosixProfile, Utf8MarkHidesTheFirstSection)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("test.ini", "\xEF\xBB\xBF[A]\nk=1\n[B]\nk=2\n");
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileStringA("A", "k", "", buffer, 16, path.c_str()), 0U);
    EXPECT_EQ(GetPrivateProfileStringA("B", "k", "", buffer, 16, path.c_str()), 1U);
    EXPECT_STREQ(buffer, "2");
}

TEST(PosixProfile, SurrogatePairIsOneQuestionMark)
{
    const TemporaryFolder folder;
    const char bytes[] = "\xFF\xFE[\0A\0]\0\n\0k\0=\0\x3D\xD8\x00\xDE!\0\x42\x01";
    const std::string path = folder.Write("test.ini", std::string(bytes, sizeof bytes - 1));
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileStringA("A", "k", "", buffer, 16, path.c_str()), 3U);
    EXPECT_STREQ(buffer, "?!?");
}

TEST(PosixProfile, MissingFolderAndNoNameAreToldAsAMissingFile)
{
    const TemporaryFolder folder;
    char buffer[16];
    for (const std::string& path : {folder.Path("missing/test.ini"), std::string()})
    {
        SetLastError(0);
        EXPECT_EQ(GetPrivateProfileStringA("A", "k", "text", buffer, 16, path.c_str()), 4U);
        EXPECT_EQ(GetLastError(), 2U);
    }
    SetLastError(0);
    EXPECT_EQ(GetPrivateProfileStringA("A", "k", "text", buffer, 16, nullptr), 4U);
    EXPECT_EQ(GetLastError(), 2U);
}

TEST(PosixProfile, FolderInPlaceOfAFileGivesTheDefault)
{
    const TemporaryFolder folder;
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileStringA("A", "k", "text", buffer, 16, folder.Path().c_str()), 4U);
    EXPECT_EQ(GetLastError(), 5U);
}

TEST(PosixProfile, NullSectionHasNoLines)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("test.ini", "[A]\nk=1\n");
    char buffer[4] = {'#', '#', '#', '#'};
    EXPECT_EQ(GetPrivateProfileSectionA(nullptr, buffer, 4, path.c_str()), 0U);
    EXPECT_EQ(buffer[1], '\0');
}

TEST(PosixProfile, ListsWithoutANameGiveTheDefault)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("test.ini", "[]\n=1\nnokey\n");
    char buffer[8] = {};
    EXPECT_EQ(GetPrivateProfileStringA("", nullptr, "text", buffer, 8, path.c_str()), 4U);
    EXPECT_EQ(GetPrivateProfileStringA(nullptr, nullptr, "text", buffer, 8, path.c_str()), 4U);
    EXPECT_EQ(GetPrivateProfileStringA("B", nullptr, "text", buffer, 8, path.c_str()), 4U);
}

// What follows the real calls of Wine answer otherwise, so that they cannot be asked for it.

TEST(PosixProfile, WholeSectionIsFoundWithBlanksAroundItsName)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("test.ini", "[ Columns ]\nAmount=1\n");
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileSectionA(" columns ", buffer, 16, path.c_str()), 9U);
    EXPECT_STREQ(buffer, "Amount=1");
}

TEST(PosixProfile, AccentedNamesAreComparedWithoutCase)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("test.ini", "[R\xC9GLE]\n\x8C\x9F=1\n");
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileStringA("r\xE9gle", "\x9C\xFF", "", buffer, 16, path.c_str()), 1U);
}

TEST(PosixProfile, CommentAndNamelessLineAreNoKeys)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("test.ini", "[A]\n;k=0\n=1\nk=2\n");
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileStringA("A", ";k", "", buffer, 16, path.c_str()), 0U);
    EXPECT_EQ(GetPrivateProfileStringA("A", "", "", buffer, 16, path.c_str()), 0U);
}

TEST(PosixProfile, EndOfFileMarkEndsTheLineAlone)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("test.ini", "[A]\na=1\x1A"
                                                      "2\nc=3\n");
    char buffer[16];
    EXPECT_EQ(GetPrivateProfileStringA("A", "a", "", buffer, 16, path.c_str()), 1U);
    EXPECT_EQ(GetPrivateProfileStringA("A", "c", "", buffer, 16, path.c_str()), 1U);
}

TEST(PosixProfile, ListThatJustFitsIsWhole)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("test.ini", "[A]\na=1\nbb=2\n[Second]\n");
    char buffer[] = "########";
    EXPECT_EQ(GetPrivateProfileStringA("A", nullptr, "", buffer, 6, path.c_str()), 5U);
    EXPECT_EQ(std::string(buffer, 7), std::string("a\0bb\0\0#", 7));
}

TEST(PosixProfile, ListThatIsCutEndsWithTwoNuls)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("test.ini", "[A]\na=1\nbb=2\n[Second]\n");
    char buffer[] = "########";
    EXPECT_EQ(GetPrivateProfileStringA("A", nullptr, "", buffer, 5, path.c_str()), 3U);
    EXPECT_EQ(std::string(buffer, 6), std::string("a\0b\0\0#", 6));
}

} // namespace
