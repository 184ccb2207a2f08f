#include "tests/services/hand_off_fixture.h"
#include "tests/testing/platform.h"

#include "port/kernel.h"
#include "services/hand_off_error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <string>

namespace
{

using services::HandOffError;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing_support::ReadWholeFile;
using testing_support::ScopedEnvironment;

using HandOff = testing_support::HandOffFixture;

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
    for (const char* const part : {"", "/STATUS", "/STATUS/PARTNER1", "/STATUS/PARTNER1/1.psr"})
    {
        EXPECT_TRUE(testing_support::IsForOwnerOnly(store + part)) << part;
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

} // namespace
