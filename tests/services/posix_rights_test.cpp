// Who may read and write the hand-off store and the spool: their owner, whatever lies there before
// and whatever the mask of the process allows.

#include "services/event_spool.h"
#include "tests/services/hand_off_fixture.h"
#include "tests/services/journal_fixture.h"
#include "tests/testing/file_mode.h"

#include <gmock/gmock.h>

namespace testing_support
{
namespace
{

namespace fs = std::filesystem;
using services::EventOutcome;
using testing::HasSubstr;

/// What others have rights on below the folder, itself included.
std::vector<std::string> OpenToOthers(const std::string& folder)
{
    std::vector<std::string> open;
    if ((ModeOf(folder) & 077U) != 0)
    {
        open.push_back(folder);
    }
    for (const auto& entry : fs::recursive_directory_iterator(folder))
    {
        if ((ModeOf(entry.path().string()) & 077U) != 0)
        {
            open.push_back(entry.path().string());
        }
    }
    return open;
}

class StoreRights : public HandOffFixture
{
};

TEST_F(StoreRights, NewStoresAreTheirOwnersWhateverTheMaskAllows)
{
    const ScopedMask mask(0);
    ASSERT_TRUE(Add());

    EXPECT_EQ(Filed(), std::vector<std::string>{"STATUS/PARTNER1/1.psr"});
    EXPECT_THAT(OpenToOthers(store), testing::IsEmpty());
}

TEST_F(StoreRights, StoreThatEveryUserMayWriteToIsClosedToThemBeforeAReportIsFiled)
{
    fs::create_directories(store + "/STATUS/PARTNER1");
    for (const char* const part : {"", "/STATUS", "/STATUS/PARTNER1"})
    {
        ASSERT_EQ(chmod((store + part).c_str(), 0777), 0);
    }
    ASSERT_TRUE(Add());

    for (const char* const part : {"", "/STATUS", "/STATUS/PARTNER1"})
    {
        EXPECT_EQ(ModeOf(store + part), 0775U) << part;
    }
    EXPECT_EQ(ModeOf(store + "/STATUS/PARTNER1/1.psr"), 0600U);
}

TEST_F(StoreRights, FolderSharedByEverybodyIsNoStore)
{
    fs::create_directory(store);
    ASSERT_EQ(chmod(store.c_str(), 01777), 0);

    EXPECT_THAT(PipeText(), HasSubstr("every user may write there (system error 1336)"));
    EXPECT_TRUE(fs::is_empty(store));
}

class StoreLinks : public HandOffFixture, public testing::WithParamInterface<const char*>
{
};

TEST_P(StoreLinks, LeadNoReportOutOfTheStore)
{
    const std::string outside = folder.Path("outside");
    fs::create_directories(outside + "/PARTNER1");
    const fs::path link = fs::path(store) / GetParam();
    fs::create_directories(link.parent_path());
    fs::create_directory_symlink(outside, link);

    EXPECT_FALSE(Add());
    EXPECT_THAT(client.GetLastRc().text,
                HasSubstr("is a link, which may lead out of the store: \"" + link.string()));
    for (const auto& entry : fs::recursive_directory_iterator(outside))
    {
        EXPECT_TRUE(entry.is_directory()) << entry.path();
    }
}

INSTANTIATE_TEST_SUITE_P(Parts, StoreLinks, testing::Values("STATUS", "STATUS/PARTNER1"),
                         [](const auto& run)
                         { return std::string(run.index == 0 ? "Service" : "Partner"); });

TEST_F(StoreRights, LinkInThePlaceOfAnUnfinishedReportIsNotFollowed)
{
    fs::create_directories(store + "/STATUS/PARTNER1");
    fs::create_symlink(folder.Path("victim"), store + "/STATUS/PARTNER1/1.psr.part");

    ASSERT_TRUE(Add()) << "under the next identifier";
    EXPECT_EQ(id, 2U);
    EXPECT_FALSE(fs::exists(folder.Path("victim")));
}

TEST_F(StoreRights, LinkInThePlaceOfTheFinishedReportIsNotFollowed)
{
    fs::create_directories(store + "/STATUS/PARTNER1");
    fs::create_symlink(folder.Path("victim"), store + "/STATUS/PARTNER1/1.psr");

    ASSERT_TRUE(Add()) << "under the next identifier";
    EXPECT_EQ(id, 2U);
    EXPECT_FALSE(fs::exists(folder.Path("victim")));
}

TEST_F(StoreRights, ExtensionTooLongForAFileIsAFailureThatLeavesNothing)
{
    // The longest name of a file is 255 bytes; the identifier and ".part" come to it.
    const std::string report = "r." + std::string(250, 'x');
    Announce("STATUS", "PARTNER1", folder.Write(report, "the report"));

    EXPECT_FALSE(Add());
    EXPECT_NE(std::string(client.GetLastRc().text), "");
    EXPECT_THAT(Filed(), testing::IsEmpty());
}

class SpoolRights : public JournalFixture
{
};

TEST_F(SpoolRights, NewSpoolsAreTheirOwnersWhateverTheMaskAllows)
{
    const ScopedMask mask(0);
    Client client("Driver=/no/such/driver.so");

    EXPECT_EQ(client.Write(L"kept"), EventOutcome::Spooled);
    EXPECT_THAT(OpenToOthers(spool), testing::IsEmpty());
    EXPECT_FALSE(fs::is_empty(spool));
}

TEST_F(SpoolRights, SpoolThatEveryUserMayWriteToIsClosedToThemAndTheEventKept)
{
    fs::create_directory(spool);
    ASSERT_EQ(chmod(spool.c_str(), 0777), 0);
    Client client("Driver=/no/such/driver.so");

    EXPECT_EQ(client.Write(L"kept"), EventOutcome::Spooled);
    EXPECT_EQ(ModeOf(spool), 0775U);
    EXPECT_EQ(ModeOf(OnlySpoolFile()), 0600U);
}

TEST_F(SpoolRights, EventsOfAFolderSharedByEverybodyReachNoDatabase)
{
    services::EventSpool planted(spool, database.ConnexionString());
    services::EventRecord event;
    event.key = "00000000-0000-0000-0000-000000000000";
    event.text = L"planted";
    ASSERT_TRUE(planted.Append(event));
    ASSERT_EQ(chmod(spool.c_str(), 01777), 0);

    const Client client(Connection());

    EXPECT_TRUE(client.connected);
    EXPECT_THAT(Texts(), testing::IsEmpty());
}

} // namespace
} // namespace testing_support
