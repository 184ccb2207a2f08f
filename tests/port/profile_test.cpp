#include "port/profile.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

// The plain Windows names, so that on Windows the real calls are judged by the same expectations.

namespace
{

using testing_support::TemporaryFolder;

/// One profile file and what the calls say of it.
class Profile : public testing::Test
{
protected:
    void Write(const std::string& bytes) { m_path = m_folder.Write("test.ini", bytes); }

    std::string Value(const char* section, const char* key, const char* defaultText = "default")
    {
        char buffer[256];
        std::memset(buffer, '#', sizeof buffer);
        const DWORD length = GetPrivateProfileStringA(section, key, defaultText, buffer,
                                                      sizeof buffer, m_path.c_str());
        EXPECT_EQ(buffer[length], '\0');
        return std::string(buffer, length);
    }

    /// NULs as '|'.
    std::string Section(const char* section)
    {
        char buffer[4096];
        std::memset(buffer, '#', sizeof buffer);
        const DWORD length =
            GetPrivateProfileSectionA(section, buffer, sizeof buffer, m_path.c_str());
        EXPECT_EQ(buffer[length], '\0');
        return Shown(buffer, length);
    }

    static std::string Shown(const char* buffer, std::size_t length)
    {
        std::string text(buffer, length);
        for (char& character : text)
        {
            character = character == '\0' ? '|' : character;
        }
        return text;
    }

    TemporaryFolder m_folder;
    std::string m_path;
};

TEST_F(Profile, NamesAreComparedWithoutCaseAndBlanks)
{
    Write("[ \tColumns ]\r\n \tAmount\t = \t MT_ORDRE \t\r\n");
    EXPECT_EQ(Value("Columns", "Amount"), "MT_ORDRE");
    EXPECT_EQ(Value("COLUMNS", "aMOUNT"), "MT_ORDRE");
    EXPECT_EQ(Value(" columns\t", " amount "), "MT_ORDRE");
}

TEST_F(Profile, TextBehindTheBracketIsIgnored)
{
    Write("[A] anything = else\nk=1\n");
    EXPECT_EQ(Value("A", "k"), "1");
    EXPECT_EQ(Section("A"), "k=1|");
}

TEST_F(Profile, BracketThatIsNotClosedOpensNoSection)
{
    Write("[A]\nk=1\n[C\nm=2\n");
    EXPECT_EQ(Value("C", "m"), "default");
    EXPECT_EQ(Value("A", "m"), "2");
}

TEST_F(Profile, OnePairOfEqualQuotesIsRemoved)
{
    Write("[A]\n1=\" pad \"\n2=\"a\" b \"c\"\n3=\"\"dbl\"\"\n4=\"open\n5=close'\n6=\"mixed'\n"
          "7='one'\n8=\"\n9=\"\"\n");
    EXPECT_EQ(Value("A", "1"), " pad ");
    EXPECT_EQ(Value("A", "2"), "a\" b \"c");
    EXPECT_EQ(Value("A", "3"), "\"dbl\"");
    EXPECT_EQ(Value("A", "4"), "\"open");
    EXPECT_EQ(Value("A", "5"), "close'");
    EXPECT_EQ(Value("A", "6"), "\"mixed'");
    EXPECT_EQ(Value("A", "7"), "one");
    EXPECT_EQ(Value("A", "8"), "\"");
    EXPECT_EQ(Value("A", "9"), "");
}

TEST_F(Profile, DefaultLosesTrailingBlanksAndOnePairOfQuotes)
{
    Write("[A]\nk=1\n");
    EXPECT_EQ(Value("A", "x", "text  "), "text");
    EXPECT_EQ(Value("A", "x", "  text"), "  text");
    EXPECT_EQ(Value("A", "x", "\" pad \""), " pad ");
    EXPECT_EQ(Value("A", "x", "'pad'  "), "pad");
    EXPECT_EQ(Value("A", "x", ""), "");
    EXPECT_EQ(Value("A", "x", nullptr), "");
    EXPECT_EQ(Value("B", "k"), "default");
}

TEST_F(Profile, OnlyALeadingSemicolonOpensAComment)
{
    Write("[A]\n;k=0\n \t;k=0\n#k=1\nk=2;3\n");
    EXPECT_EQ(Value("A", "k"), "2;3");
    EXPECT_EQ(Value("A", "#k"), "1");
}

TEST_F(Profile, FirstEqualSignSeparates)
{
    Write("[A]\nk=a=b=c\n");
    EXPECT_EQ(Value("A", "k"), "a=b=c");
}

TEST_F(Profile, EmptyValueIsFoundAndTheDefaultNotUsed)
{
    Write("[A]\nk=\nl=   \n");
    EXPECT_EQ(Value("A", "k"), "");
    EXPECT_EQ(Value("A", "l"), "");
}

TEST_F(Profile, LineWithoutEqualSignIsNoKey)
{
    Write("[A]\nname1=1\nname3\nname4=4\n");
    EXPECT_EQ(Value("A", "name3"), "default");
    EXPECT_EQ(Value("A", nullptr), std::string("name1\0name4\0", 12));
    EXPECT_EQ(Section("A"), "name1=1|name3|name4=4|");
}

TEST_F(Profile, FirstKeyAndFirstSectionOfANameCount)
{
    Write("[A]\nk=1\nK=2\n[B]\n[a]\nk=3\nm=4\n");
    EXPECT_EQ(Value("A", "k"), "1");
    EXPECT_EQ(Value("A", "m"), "default");
    EXPECT_EQ(Section("a"), "k=1|K=2|");
}

TEST_F(Profile, BytesPassUnchanged)
{
    Write("[A]\nk=C:\\n$%#\x80\xE9\xFF\n");
    EXPECT_EQ(Value("A", "k"), "C:\\n$%#\x80\xE9\xFF");
}

TEST_F(Profile, LinesEndWithCrLfLfOrALoneCr)
{
    Write("[A]\r\na=1\nb=2\rc=3\n\rd=4");
    EXPECT_EQ(Section("A"), "a=1|b=2|c=3|d=4|");
}

TEST_F(Profile, NulEndsTheLineAlone)
{
    const char bytes[] = "[A]\na=1\nb=1\0"
                         "2\nc=3\n";
    Write(std::string(bytes, sizeof bytes - 1));
    EXPECT_EQ(Section("A"), "a=1|b=1|c=3|");
    EXPECT_EQ(Value("A", "b"), "1");
}

TEST_F(Profile, Utf16WithItsMarkIsRead)
{
    std::string little = "\xFF\xFE";
    std::string big = "\xFE\xFF";
    for (const char character : std::string("[A]\r\nk=\xE9"))
    {
        little.append({character, '\0'});
        big.append({'\0', character});
    }
    little += "\xAC\x20"; // the euro sign
    Write(little);
    EXPECT_EQ(Value("A", "k"), "\xE9\x80");
    Write(big);
    EXPECT_EQ(Value("A", "k"), "\xE9");
}

TEST_F(Profile, MissingFileGivesTheDefaultAndError2)
{
    m_path = m_folder.Path("missing.ini");
    SetLastError(0);
    EXPECT_EQ(Value("A", "k"), "default");
    EXPECT_EQ(GetLastError(), 2U);
    char buffer[4] = {'#', '#', '#', '#'};
    EXPECT_EQ(GetPrivateProfileSectionA("A", buffer, 4, m_path.c_str()), 0U);
    EXPECT_EQ(Shown(buffer, 3), "||#");
}

TEST_F(Profile, FileNameWithoutAPathIsNotLookedUpInTheCurrentFolder)
{
    Write("[A]\nk=1\n");
    m_path = "signutils-test-nowhere.ini";
    EXPECT_EQ(Value("A", "k"), "default");
    EXPECT_EQ(GetLastError(), 2U);
}

TEST_F(Profile, ValueThatDoesNotFitIsCut)
{
    Write("[A]\nk=value\n");
    char buffer[8];
    const auto read = [&](const char* key, DWORD size)
    {
        std::memset(buffer, '#', sizeof buffer);
        return GetPrivateProfileStringA("A", key, "longer", buffer, size, m_path.c_str());
    };
    EXPECT_EQ(read("k", 6), 5U);
    EXPECT_EQ(Shown(buffer, 7), "value|#");
    EXPECT_EQ(read("k", 5), 4U);
    EXPECT_EQ(Shown(buffer, 6), "valu|#");
    EXPECT_EQ(read("k", 1), 0U);
    EXPECT_EQ(Shown(buffer, 2), "|#");
    EXPECT_EQ(read("k", 0), 0U);
    EXPECT_EQ(Shown(buffer, 1), "#");
    EXPECT_EQ(read("x", 4), 3U);
    EXPECT_EQ(Shown(buffer, 5), "lon|#");
}

TEST_F(Profile, ListsOfKeysAndSectionsEndWithTwoNuls)
{
    Write("[A]\na=1\nbb=2\n[Second]\n");
    char buffer[16];
    const auto read = [&](const char* section, DWORD size)
    {
        std::memset(buffer, '#', sizeof buffer);
        return GetPrivateProfileStringA(section, nullptr, "", buffer, size, m_path.c_str());
    };
    EXPECT_EQ(read("A", 16), 5U);
    EXPECT_EQ(Shown(buffer, 7), "a|bb||#");
    EXPECT_EQ(read("A", 5), 3U);
    EXPECT_EQ(read(nullptr, 16), 9U);
    EXPECT_EQ(Shown(buffer, 11), "A|Second||#");
    EXPECT_EQ(read(nullptr, 8), 6U);
}

TEST_F(Profile, SectionIsReadWithoutCommentsAndBlankLinesAndWithQuotes)
{
    Write("[A]\n; comment\n\n  name1 = val1 \n name2=\nname3\nname4= \"val4\"\n[B]\nx=1\n");
    EXPECT_EQ(Section("A"), "name1=val1|name2=|name3|name4=\"val4\"|");
}

TEST_F(Profile, SectionsLengthCountsTheNulsButNotTheLast)
{
    Write("[A]\nname1=val1\nname2=\nname3\nname4=val4\n");
    EXPECT_EQ(Section("A").size(), 35U);
}

TEST_F(Profile, SectionThatDoesNotFitIsCut)
{
    Write("[A]\na=1\nb=2\n"); // 8 characters with their NULs
    char buffer[16];
    const auto read = [&](DWORD size)
    {
        std::memset(buffer, '#', sizeof buffer);
        return GetPrivateProfileSectionA("A", buffer, size, m_path.c_str());
    };
    EXPECT_EQ(read(10), 8U);
    EXPECT_EQ(Shown(buffer, 10), "a=1|b=2||#");
    EXPECT_EQ(read(9), 7U) << "a full buffer counts as cut";
    EXPECT_EQ(Shown(buffer, 10), "a=1|b=2||#");
    EXPECT_EQ(read(8), 6U);
    EXPECT_EQ(Shown(buffer, 9), "a=1|b=||#");
    EXPECT_EQ(read(2), 0U);
    EXPECT_EQ(Shown(buffer, 3), "||#");
}

TEST_F(Profile, SectionOf4096CharactersReadInto4096Gives4094)
{
    Write("[A]\nk=" + std::string(4093, 'x') + "\n");
    char buffer[4096];
    EXPECT_EQ(GetPrivateProfileSectionA("A", buffer, sizeof buffer, m_path.c_str()), 4094U);
    EXPECT_EQ(buffer[4094], '\0');
    EXPECT_EQ(buffer[4095], '\0');
}

TEST_F(Profile, EmptyOrUnknownSectionGivesTwoNuls)
{
    Write("[A]\n; nothing\n[B]\nk=1\n");
    for (const char* section : {"A", "C"})
    {
        char buffer[4] = {'#', '#', '#', '#'};
        EXPECT_EQ(GetPrivateProfileSectionA(section, buffer, 4, m_path.c_str()), 0U);
        EXPECT_EQ(Shown(buffer, 3), "||#");
    }
}

} // namespace
