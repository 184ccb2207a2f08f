#include "tests/services/hand_off_fixture.h"

#include "services/hand_off_error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
using testing_support::ReadWholeFile;

using HandOffIdentifiers = testing_support::HandOffFixture;

TEST_F(HandOffIdentifiers, LostCounterNeverGivesAnExistingIdentifier)
{
    ASSERT_TRUE(Add());
    ASSERT_TRUE(Add());
    std::filesystem::remove(store + "/identifiers.counter");
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 3U);
}

TEST_F(HandOffIdentifiers, LostCounterLooksAtEveryPartnerAndEveryExtension)
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

class DamagedCounter : public HandOffIdentifiers, public testing::WithParamInterface<const char*>
{
};

TEST_P(DamagedCounter, IsCountedAgain)
{
    ASSERT_TRUE(Add());
    ASSERT_TRUE(Add());
    WriteCounter(GetParam());
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 3U);
    EXPECT_EQ(ReadWholeFile(store + "/identifiers.counter"), "3\n");
}

INSTANTIATE_TEST_SUITE_P(Damages, DamagedCounter,
                         testing::Values("", "\n", "rubbish\n", "2", "2x\n", "-5\n", "02\n",
                                         "2\n2\n", "99999999999999999999\n"));

TEST_F(HandOffIdentifiers, CounterThatWasRestoredFromBeforeOverwritesNothing)
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

TEST_F(HandOffIdentifiers, UnfinishedReportOfACrashIsLeftAloneAndItsIdentifierNotUsed)
{
    std::filesystem::create_directories(store + "/STATUS/PARTNER1");
    folder.Write("store/STATUS/PARTNER1/5.psr.part", "half");
    WriteCounter("4\n");
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 6U);
    EXPECT_THAT(Filed(), ElementsAre("STATUS/PARTNER1/5.psr.part", "STATUS/PARTNER1/6.psr"));
}

TEST_F(HandOffIdentifiers, LeftoverOfAnInterruptedCountIsReplaced)
{
    ASSERT_TRUE(Add());
    folder.Write("store/identifiers.counter.new", "rubbish");
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 2U);
    EXPECT_FALSE(std::filesystem::exists(store + "/identifiers.counter.new"));
}

TEST_F(HandOffIdentifiers, LastIdentifierIsTheLargestSignedNumber)
{
    ASSERT_TRUE(Add());
    WriteCounter("2147483646\n");
    ASSERT_TRUE(Add());
    EXPECT_EQ(id, 2147483647U);
    EXPECT_FALSE(Add());
    EXPECT_EQ(client.GetLastRc().code, static_cast<std::uint32_t>(HandOffError::IdentifiersUsedUp));
    EXPECT_THAT(client.GetLastRc().text, HasSubstr("last identifier"));
}

TEST_F(HandOffIdentifiers, ManyClientsAtOnceGetIdentifiersOfTheirOwn)
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
