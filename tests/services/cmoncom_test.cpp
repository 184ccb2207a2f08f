#include "services/cmoncom.h"

#include "port/kernel.h"
#include "services/hand_off_error.h"
#include "services/tpipeexception.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace
{

using services::HandOffError;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::ReadWholeFile;
using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;

template <std::size_t Size>
void Fill(char (&field)[Size], const std::string& text)
{
    std::memset(field, 0, Size);
    std::memcpy(field, text.data(), std::min(text.size(), Size));
}

class HandOff : public testing::Test
{
protected:
    HandOff() { Announce("STATUS", "PARTNER1", folder.Write("report.psr", "the report")); }

    void Announce(const std::string& service, const std::string& partner, const std::string& path)
    {
        Fill(record.service, service);
        Fill(record.partner, partner);
        Fill(record.filePath, path);
        Fill(record.secondFilePath, path);
    }
    bool Add() { return client.AddFile(nullptr, store.c_str(), &record, id); }

    /// The text of the TPipeException that AddFile raises; it must raise one.
    std::string PipeText()
    {
        try
        {
            ADD_FAILURE() << "nothing raised, result " << Add();
        }
        catch (const TPipeException& raised)
        {
            return raised.GetMessageText();
        }
        return std::string();
    }

    /// Everything in the store below service and partner.
    std::vector<std::string> Filed() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(store))
        {
            if (entry.path().parent_path() != store && !entry.is_directory())
            {
                names.push_back(std::filesystem::relative(entry.path(), store).generic_string());
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    void WriteCounter(const std::string& bytes) const
    {
        folder.Write("store/identifiers.counter", bytes);
    }

    TemporaryFolder folder;
    std::string store = folder.Path("store");
    tagADDFILE record = {};
    unsigned long id = 0;
    cmoncom client{1};
};

TEST_F(HandOff, FilesTheReportUnderServicePartnerAndIdentifier)
{
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 1U);
    EXPECT_EQ(ReadWholeFile(store + "/STATUS/PARTNER1/1.psr"), "the report");
    EXPECT_THAT(Filed(), ElementsAre("STATUS/PARTNER1/1.psr"));
}

TEST_F(HandOff, LeavesTheAnnouncedFileToItsOwner)
{
    ASSERT_TRUE(Add());
    EXPECT_EQ(ReadWholeFile(folder.Path("report.psr")), "the report");
}

TEST_F(HandOff, SuccessLeavesTheErrorRecordZero)
{
    ASSERT_TRUE(Add());
    const tag_Rc zero = {};
    EXPECT_EQ(std::memcmp(&client.GetLastRc(), &zero, sizeof(zero)), 0);
}

TEST_F(HandOff, IdentifiersRiseAcrossClientsServicesAndPartners)
{
    ASSERT_TRUE(Add());
    Announce("OTHER", "P2", folder.Path("report.psr"));
    cmoncom second(1);
    ASSERT_TRUE(second.AddFile(nullptr, store.c_str(), &record, id));
    EXPECT_EQ(id, 2U);
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 3U);
    EXPECT_THAT(Filed(), ElementsAre("OTHER/P2/2.psr", "OTHER/P2/3.psr", "STATUS/PARTNER1/1.psr"));
}

TEST_F(HandOff, NamesOfEightCharactersAreWhole)
{
    Announce("SERVICE8", "PARTNER8", folder.Path("report.psr"));
    ASSERT_TRUE(Add());
    EXPECT_THAT(Filed(), ElementsAre("SERVICE8/PARTNER8/1.psr"));
}

TEST_F(HandOff, ReportsOfAnyContentAreCopiedWhole)
{
    std::string bytes;
    for (int index = 0; index < 200000; ++index)
    {
        bytes += static_cast<char>(index * 7 % 256);
    }
    Announce("STATUS", "P", folder.Write("large.hac", bytes));
    ASSERT_TRUE(Add());
    EXPECT_EQ(ReadWholeFile(store + "/STATUS/P/1.hac"), bytes);
    Announce("STATUS", "P", folder.Write("empty.hac", ""));
    ASSERT_TRUE(Add());
    EXPECT_EQ(ReadWholeFile(store + "/STATUS/P/2.hac"), "");
}

TEST_F(HandOff, WithoutTargetTheConfiguredStoreIsUsed)
{
    const std::string configured = folder.Path("configured");
    const ScopedEnvironment variable("SIGNUTILS_HANDOFF", configured.c_str());
    ASSERT_TRUE(client.AddFile(nullptr, nullptr, &record, id));
    ASSERT_TRUE(client.AddFile(nullptr, "", &record, id));
    EXPECT_EQ(ReadWholeFile(configured + "/STATUS/PARTNER1/1.psr"), "the report");
    EXPECT_EQ(ReadWholeFile(configured + "/STATUS/PARTNER1/2.psr"), "the report");
}

TEST_F(HandOff, StoreIsCreatedForItsOwnerAlone)
{
    store = folder.Path("deep/er/store");
    ASSERT_TRUE(Add());
    const auto others = std::filesystem::perms::group_all | std::filesystem::perms::others_all;
    for (const char* const part : {"", "/STATUS", "/STATUS/PARTNER1", "/STATUS/PARTNER1/1.psr"})
    {
        EXPECT_EQ(std::filesystem::status(store + part).permissions() & others,
                  std::filesystem::perms::none)
            << part;
    }
}

struct NameCase
{
    const char* name;
    const char* service;
    const char* partner;
    const char* file;
    const char* named; ///< what the text blames
};

class HandOffNames : public HandOff, public testing::WithParamInterface<NameCase>
{
};

TEST_P(HandOffNames, RefusedNamesFileNothing)
{
    Announce(GetParam().service, GetParam().partner, folder.Write(GetParam().file, "x"));
    id = 77;
    EXPECT_FALSE(Add());
    EXPECT_EQ(client.GetLastRc().code, static_cast<std::uint32_t>(HandOffError::NameRefused));
    EXPECT_EQ(client.GetLastRc().systemCode, 0U);
    EXPECT_THAT(client.GetLastRc().text, HasSubstr(GetParam().named));
    EXPECT_EQ(id, 77U);
    EXPECT_FALSE(std::filesystem::exists(store));
}

INSTANTIATE_TEST_SUITE_P(
    Names, HandOffNames,
    testing::Values(NameCase{"EmptyService", "", "P", "a.psr", "no service"},
                    NameCase{"EmptyPartner", "S", "", "a.psr", "no partner"},
                    NameCase{"NoExtension", "S", "P", "a", "no extension"},
                    NameCase{"ParentService", "..", "P", "a.psr", "service"},
                    NameCase{"ParentPartner", "S", "..", "a.psr", "partner"},
                    NameCase{"SeparatorInService", "../x", "P", "a.psr", "service"},
                    NameCase{"SeparatorInPartner", "S", "..\\x", "a.psr", "partner"},
                    NameCase{"RootedPartner", "S", "/etc", "a.psr", "partner"},
                    NameCase{"DriveInPartner", "S", "C:", "a.psr", "partner"},
                    NameCase{"DeviceAsService", "NUL", "P", "a.psr", "service"},
                    NameCase{"ControlInPartner", "S", "P\nQ", "a.psr", "\"P?Q\""}),
    [](const auto& run) { return run.param.name; });

TEST_F(HandOff, WithoutARecordNothingIsFiled)
{
    EXPECT_FALSE(client.AddFile(nullptr, store.c_str(), nullptr, id));
    EXPECT_EQ(client.GetLastRc().code, static_cast<std::uint32_t>(HandOffError::RecordMissing));
    EXPECT_STREQ(client.GetLastRc().text, "No report was announced");
    EXPECT_FALSE(std::filesystem::exists(store));
}

TEST_F(HandOff, MissingFileIsAFailureOfThisFile)
{
    Announce("STATUS", "P", folder.Path("gone.psr"));
    EXPECT_FALSE(Add());
    EXPECT_EQ(client.GetLastRc().code, static_cast<std::uint32_t>(HandOffError::FileUnreadable));
    EXPECT_EQ(client.GetLastRc().systemCode, ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(std::string(client.GetLastRc().text), "The report to hand on cannot be read: \"" +
                                                        folder.Path("gone.psr") +
                                                        "\": file not found (system error 2)");
    EXPECT_THAT(Filed(), IsEmpty());
}

TEST_F(HandOff, FolderInThePlaceOfTheFileIsAFailure)
{
    std::filesystem::create_directory(folder.Path("folder.psr"));
    Announce("STATUS", "P", folder.Path("folder.psr"));
    EXPECT_FALSE(Add());
    EXPECT_EQ(client.GetLastRc().code, static_cast<std::uint32_t>(HandOffError::FileUnreadable));
    EXPECT_THAT(Filed(), IsEmpty());
}

TEST_F(HandOff, FileInThePlaceOfThePartnersFolderIsAFailure)
{
    ASSERT_TRUE(Add());
    std::filesystem::remove_all(store + "/STATUS/PARTNER1");
    folder.Write("store/STATUS/PARTNER1", "in the way");
    EXPECT_FALSE(Add());
    EXPECT_EQ(client.GetLastRc().code, static_cast<std::uint32_t>(HandOffError::StoreNotWritable));
    EXPECT_NE(client.GetLastRc().systemCode, 0U);
    EXPECT_THAT(client.GetLastRc().text, HasSubstr("PARTNER1"));
}

TEST_F(HandOff, FailureAfterASuccessAndSuccessAfterAFailureEachTellTheirOwn)
{
    ASSERT_TRUE(Add());
    Announce("STATUS", "", folder.Path("report.psr"));
    ASSERT_FALSE(Add());
    EXPECT_NE(client.GetLastRc().code, 0U);
    Announce("STATUS", "P", folder.Path("report.psr"));
    ASSERT_TRUE(Add());
    EXPECT_EQ(client.GetLastRc().code, 0U);
    EXPECT_STREQ(client.GetLastRc().text, "");
}

TEST_F(HandOff, LongPathsInTextsAreCut)
{
    std::string path = folder.Path("n");
    path.append(255 - path.size(), 'n');
    Announce("STATUS", "P", path + ".psr");
    EXPECT_FALSE(Add());
    EXPECT_EQ(std::strlen(client.GetLastRc().text), 254U);
}

TEST_F(HandOff, FileInThePlaceOfTheStoreRaises)
{
    store = folder.Write("store-file", "not a folder");
    EXPECT_THAT(PipeText(), HasSubstr("The file hand-off store cannot be used: \"" + store + "\""));
}

TEST_F(HandOff, StoreBelowAFileRaises)
{
    store = folder.Write("store-file", "") + "/below";
    EXPECT_THAT(PipeText(), HasSubstr(store));
}

TEST_F(HandOff, LockThatCannotBeOpenedRaises)
{
    std::filesystem::create_directories(store + "/identifiers.lock");
    EXPECT_THAT(PipeText(), HasSubstr("cannot be locked"));
}

TEST_F(HandOff, CounterThatCannotBeWrittenRaises)
{
    std::filesystem::create_directories(store + "/identifiers.counter/in-the-way");
    EXPECT_THAT(PipeText(), HasSubstr("cannot be written"));
}

TEST_F(HandOff, LostCounterNeverGivesAnExistingIdentifier)
{
    ASSERT_TRUE(Add());
    ASSERT_TRUE(Add());
    std::filesystem::remove(store + "/identifiers.counter");
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 3U);
}

TEST_F(HandOff, LostCounterLooksAtEveryPartnerAndEveryExtension)
{
    std::filesystem::create_directories(store + "/A/B");
    std::filesystem::create_directories(store + "/C/D");
    folder.Write("store/A/B/17.hac", "");
    folder.Write("store/C/D/12.psr", "");
    folder.Write("store/C/D/readme.txt", "");
    folder.Write("store/C/D/99999999999999999999.psr", "");
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 18U);
}

class HandOffCounter : public HandOff, public testing::WithParamInterface<const char*>
{
};

TEST_P(HandOffCounter, DamagedCounterIsCountedAgain)
{
    ASSERT_TRUE(Add());
    ASSERT_TRUE(Add());
    WriteCounter(GetParam());
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 3U);
    EXPECT_EQ(ReadWholeFile(store + "/identifiers.counter"), "3\n");
}

INSTANTIATE_TEST_SUITE_P(Damages, HandOffCounter,
                         testing::Values("", "\n", "rubbish\n", "2", "2x\n", "-5\n", "02\n",
                                         "2\n2\n", "99999999999999999999\n"));

TEST_F(HandOff, CounterThatWasRestoredFromBeforeOverwritesNothing)
{
    ASSERT_TRUE(Add());
    ASSERT_TRUE(Add());
    ASSERT_TRUE(Add());
    WriteCounter("0\n");
    Announce("STATUS", "PARTNER1", folder.Write("new.psr", "the new report"));
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 4U);
    EXPECT_EQ(ReadWholeFile(store + "/STATUS/PARTNER1/1.psr"), "the report");
    EXPECT_EQ(ReadWholeFile(store + "/STATUS/PARTNER1/4.psr"), "the new report");
}

TEST_F(HandOff, UnfinishedReportOfACrashIsLeftAloneAndItsIdentifierNotUsed)
{
    std::filesystem::create_directories(store + "/STATUS/PARTNER1");
    folder.Write("store/STATUS/PARTNER1/5.psr.part", "half");
    WriteCounter("4\n");
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 6U);
    EXPECT_THAT(Filed(), ElementsAre("STATUS/PARTNER1/5.psr.part", "STATUS/PARTNER1/6.psr"));
}

TEST_F(HandOff, LeftoverOfAnInterruptedCountIsReplaced)
{
    ASSERT_TRUE(Add());
    folder.Write("store/identifiers.counter.new", "rubbish");
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 2U);
    EXPECT_FALSE(std::filesystem::exists(store + "/identifiers.counter.new"));
}

TEST_F(HandOff, LastIdentifierIsTheLargestSignedNumber)
{
    ASSERT_TRUE(Add());
    WriteCounter("2147483646\n");
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 2147483647U);
    EXPECT_FALSE(Add());
    EXPECT_EQ(client.GetLastRc().code, static_cast<std::uint32_t>(HandOffError::IdentifiersUsedUp));
    EXPECT_THAT(client.GetLastRc().text, HasSubstr("last identifier"));
}

TEST_F(HandOff, ManyClientsAtOnceGetIdentifiersOfTheirOwn)
{
    constexpr int kThreads = 4;
    constexpr int kFiles = 15;
    std::mutex mutex;
    std::set<unsigned long> given;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
    {
        threads.emplace_back(
            [&]
            {
                unsigned long before = 0;
                for (int file = 0; file < kFiles; ++file)
                {
                    cmoncom own(1);
                    tagADDFILE announced = record;
                    unsigned long got = 0;
                    EXPECT_TRUE(own.AddFile(nullptr, store.c_str(), &announced, got));
                    EXPECT_GT(got, before);
                    before = got;
                    const std::lock_guard hold(mutex);
                    given.insert(got);
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(given.size(), static_cast<std::size_t>(kThreads * kFiles));
    EXPECT_EQ(*given.rbegin(), static_cast<unsigned long>(kThreads * kFiles));
    EXPECT_EQ(Filed().size(), static_cast<std::size_t>(kThreads * kFiles));
    for (const std::string& name : Filed())
    {
        EXPECT_EQ(ReadWholeFile(store + "/" + name), "the report") << name;
    }
}

} // namespace
