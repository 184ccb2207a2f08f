#include "amounts/format_conversion.h"
#include "amounts/tdelimitedfile.h"
#include "amounts/text_line_reader.h"
#include "port/com.h"
#include "port/files.h"
#include "tests/amounts/scripted_engine.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

// What a conversion and an analysis ask of port/: its functions of these names are found here
// first, as a program's own always are on POSIX.

using amounts_tests::ComApartment;
using amounts_tests::Script;
using amounts_tests::ScriptedEngine;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing_support::TemporaryFolder;

namespace
{

using Names = std::vector<std::string>;

int g_failingText = 0; // the how-manieth BSTR from now on fails; 0: none
Names g_deleted;
Names g_openAtDeletion;

template <typename Function>
Function* Next(const char* symbol)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

// The work files that this process has open.
Names OpenWorkFiles()
{
    Names names;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
    {
        std::error_code gone; // the iterator's own
        const std::string file = std::filesystem::read_symlink(entry.path(), gone).filename();
        if (!gone && file.find(".veu") != std::string::npos)
        {
            names.push_back(file);
        }
    }
    return names;
}

} // namespace

BSTR SysAllocStringLen(const OLECHAR* text, UINT length)
{
    static auto* const next = Next<BSTR(const OLECHAR*, UINT)>("_Z17SysAllocStringLenPKwj");
    if (g_failingText > 0 && --g_failingText == 0)
    {
        return nullptr;
    }
    return next(text, length);
}

BOOL DeleteFileA(LPCSTR name)
{
    static auto* const next = Next<BOOL(LPCSTR)>("_Z11DeleteFileAPKc");
    g_deleted.emplace_back(name);
    for (const std::string& open : OpenWorkFiles())
    {
        g_openAtDeletion.push_back(open);
    }
    return next(name);
}

namespace
{

struct FailingTextCase
{
    const char* text;
    int position;
    Names calls;
};

void PrintTo(const FailingTextCase& failingText, std::ostream* stream)
{
    *stream << failingText.text;
}

const Names kUntilDescription = {"CreateRun",   "FMTConnect QRV", "CreateWork",
                                 "ReleaseWork", "Close 7",        "ReleaseRun"};
const Names kUntilExecution = {
    "CreateRun",  "FMTConnect QRV", "CreateWork",  "FMTGetWorkDescr 7 ISO20022 pain.001 Work",
    "GetOptions", "FMTGetNbTrt",    "ReleaseWork", "Close 7",
    "ReleaseRun"};

const FailingTextCase kFailingTexts[] = {
    {"ClientName", 1, {}},
    {"Everything", 2, {}},
    {"FirstFormat", 3, kUntilDescription},
    {"SecondFormat", 4, kUntilDescription},
    {"Parameters", 5, kUntilExecution},
    {"SecondText", 6, kUntilExecution},
};

class FailingText : public testing::TestWithParam<FailingTextCase>
{
};

TEST_P(FailingText, IsTextedAndCleanedUp)
{
    const ComApartment apartment;
    const ScriptedEngine engine({});
    char errorText[256] = "before";
    g_failingText = GetParam().position;
    EXPECT_EQ(amounts::ExecWorkFmt({"order.xml", "ISO20022", "pain.001", nullptr}, errorText), 0);
    EXPECT_EQ(g_failingText, 0) << "the text was asked for";
    EXPECT_STREQ(errorText, "Unknown exception raised");
    EXPECT_THAT(engine.Calls(), ElementsAreArray(GetParam().calls));
}

INSTANTIATE_TEST_SUITE_P(Texts, FailingText, testing::ValuesIn(kFailingTexts),
                         [](const auto& test) { return std::string(test.param.text); });

// Opens, but reading it from its start fails.
TEST(PosixDelimitedFile, IsNotIntactAfterAReadThatFailed)
{
    TDelimitedFile file("/proc/self/mem", 0);
    EXPECT_FALSE(file.HasRow());
    EXPECT_FALSE(file.IsIntact());
}

TEST(PosixDelimitedFile, ReaderForgetsAFailureWhenItIsOpenedAgain)
{
    const TemporaryFolder folder;
    amounts::TextLineReader reader;
    std::string_view line;
    ASSERT_TRUE(reader.Open("/proc/self/mem"));
    EXPECT_FALSE(reader.ReadLine(line));
    EXPECT_TRUE(reader.HasFailed());
    ASSERT_TRUE(reader.Open(folder.Write("order.xml.veu.bp", "A").c_str()));
    EXPECT_FALSE(reader.HasFailed());
    EXPECT_FALSE(reader.ReadLine(line));
    EXPECT_EQ(line, "A");
    EXPECT_FALSE(reader.HasFailed());
}

TEST(PosixDelimitedFile, IsGivenBackToTheSystemByClosingIt)
{
    const TemporaryFolder folder;
    TDelimitedFile file(folder.Write("order.xml.veu.bp", "A\r\n\"1\"\r\n").c_str(), 1);
    EXPECT_THAT(OpenWorkFiles(), ElementsAreArray({"order.xml.veu.bp"}));
    file.Close();
    EXPECT_THAT(OpenWorkFiles(), IsEmpty());
}

// Who writes on while the file is read does not change what was read.
TEST(PosixDelimitedFile, EndsWhereItsEndWasMet)
{
    const TemporaryFolder folder;
    const std::string path = folder.Write("order.xml.veu.bp", "A\r\n\"1\"\r\n");
    TDelimitedFile file(path.c_str(), 1);
    EXPECT_FALSE(file.HasMoreRows());
    std::ofstream(path, std::ios::app) << "\"2\"\r\n";
    amounts::DelimitedRow row;
    file.ReadRow(row);
    EXPECT_TRUE(row.IsEmpty());
    EXPECT_TRUE(file.IsIntact());
}

class Deletion : public testing::Test
{
protected:
    Deletion()
    {
        g_deleted.clear();
        g_openAtDeletion.clear();
    }

    // Runs the analysis on an engine that leaves these of the work files.
    int Analyse(const Names& extensions, bool converts = true)
    {
        const ComApartment apartment;
        Script script;
        script.success = converts ? 1 : 0;
        script.onExecute = [&](const std::wstring&)
        {
            for (const std::string& extension : extensions)
            {
                m_folder.Write("order.xml.veu" + extension, "A\r\nB\r\nC\r\nD\r\n\"1\";\"1\"\r\n"
                                                            "\"2\";\"1\"\r\n");
            }
        };
        const ScriptedEngine engine(script);
        amounts::FileTotals totals;
        return amounts::GetMaxAmountFile({m_order.c_str(), "ISO20022", "pain.001", nullptr}, totals,
                                         nullptr, nullptr);
    }

    TemporaryFolder m_folder;
    std::string m_order = m_folder.Path("order.xml");
    Names m_all = {m_order + ".veu.bp",  m_order + ".veu.cp",  m_order + ".veu.cp2",
                   m_order + ".veu.tot", m_order + ".veu.err", m_order + ".veu"};
};

TEST_F(Deletion, GoesThroughAllWorkFilesInTheirOrder)
{
    EXPECT_EQ(Analyse({"", ".bp", ".cp", ".cp2", ".tot", ".err"}), 1);
    EXPECT_EQ(g_deleted, m_all);
    EXPECT_TRUE(std::filesystem::is_empty(m_folder.Path()));
}

TEST_F(Deletion, FindsEveryReaderClosed)
{
    EXPECT_EQ(Analyse({".bp", ".cp", ".err"}), 1);
    EXPECT_THAT(g_openAtDeletion, IsEmpty());
}

TEST_F(Deletion, IsTriedForMissingFilesTooAndItsFailureIgnored)
{
    testing::internal::CaptureStderr();
    EXPECT_EQ(Analyse({}), 1);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(g_deleted, m_all);
}

TEST_F(Deletion, DoesNotHappenWhenTheConversionFails)
{
    EXPECT_EQ(Analyse({"", ".bp"}, false), 0);
    EXPECT_THAT(g_deleted, IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(m_order + ".veu.bp"));
}

} // namespace
