#include "containers/thashtable.h"
#include "tests/containers/cache_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace
{

using namespace testing_support; // NOLINT: the fixture of these tests
using testing::ElementsAre;

TEST_F(CacheTable, NodeIsMadeWithBothStampsAtNow)
{
    m_ticks.Set(77);
    const std::unique_ptr<Node> node(
        m_table.NewAssociation("key", new tagCacheRecordHash(), nullptr, 5));
    EXPECT_EQ(node->GetCreated(), 77U);
    EXPECT_EQ(node->GetLastAccess(), 77U);
    EXPECT_EQ(node->GetNext(), nullptr);
    EXPECT_STREQ(node->GetKey().SafeGetString(), "key");
    EXPECT_STREQ(std::as_const(*node).GetKey().SafeGetString(), "key");
    EXPECT_NE(node->GetValue(), nullptr);
}

TEST_F(CacheTable, TouchChangesTheLastAccessAlone)
{
    const std::unique_ptr<Node> node(
        m_table.NewAssociation("key", new tagCacheRecordHash(), nullptr, 5));
    m_ticks.Pass(9);
    node->Touch();
    EXPECT_EQ(node->GetCreated(), 1000U);
    EXPECT_EQ(node->GetLastAccess(), 1009U);
}

TEST_F(CacheTable, PurgeRemovesEntriesWhoseAgeIsAtLeastTheLimit)
{
    Insert("head", 1);
    m_ticks.Pass(1);
    Insert("young", 2);
    Insert("used", 3);
    m_ticks.Pass(98);
    m_table.Purge(100);
    EXPECT_EQ(m_table.GetCount(), 3);
    EXPECT_EQ(m_table.Contains("used", true), 1);
    m_ticks.Pass(1);
    m_table.Purge(100);
    EXPECT_THAT(g_removed, ElementsAre("head1"));
    m_ticks.Pass(1);
    m_table.Purge(100);
    EXPECT_THAT(g_removed, ElementsAre("head1", "young2"));
    EXPECT_THAT(Keys(m_table), ElementsAre("used"));
    EXPECT_EQ(m_table.GetCount(), 1);
}

TEST_F(CacheTable, PurgeRemovesExpiredHeadsOneAfterTheOtherAndSuccessorsOfALiveHead)
{
    Insert("1", 1);
    Insert("3", 3);
    Insert("2", 2); // the chain is 1, 2, 3
    m_ticks.Pass(100);
    EXPECT_EQ(m_table.Contains("3", true), 1);
    Insert("4", 4); // behind the head: 1, 4, 2, 3
    m_ticks.Pass(50);
    m_table.Purge(100);
    EXPECT_THAT(g_removed, ElementsAre("11", "22"));
    EXPECT_THAT(Keys(m_table), ElementsAre("4", "3"));
}

TEST_F(CacheTable, PurgeAcrossAWrapCountsOneMillisecondLess)
{
    m_ticks.Set(0xFFFFFFF0);
    Insert("a", 1);
    m_ticks.Set(0x10);
    m_table.Purge(32);
    EXPECT_EQ(m_table.GetCount(), 1) << "the age is 31";
    m_table.Purge(31);
    EXPECT_EQ(m_table.GetCount(), 0);
}

TEST_F(CacheTable, PurgeWithoutALimitGoesByTheEntriesOwnLifetime)
{
    Insert("none", 1);
    Insert("short", 2, 50);
    Insert("long", 3, 51);
    m_ticks.Pass(50);
    m_table.Contains("short", true); // being used does not lengthen a lifetime
    m_table.Purge(0);
    EXPECT_THAT(Keys(m_table), ElementsAre("long"));
}

TEST_F(CacheTable, PurgeWithoutALimitRemovesEntriesThatHaveNoLifetime)
{
    Insert("head", 1, 1000);
    Insert("none", 2);
    m_table.Purge(0);
    EXPECT_THAT(g_removed, ElementsAre("none2"));
    EXPECT_EQ(m_table.GetCount(), 1);
}

TEST_F(CacheTable, LiveKeyIsHiddenByAHeadWhoseLifetimeRanOut)
{
    Insert("head", 1, 100);
    Insert("live", 2);
    m_ticks.Pass(99);
    EXPECT_EQ(m_table.Contains("live", false), 1);
    m_ticks.Pass(1);
    tagCacheRecordHash* value = nullptr;
    std::uint32_t lastAccess = 4711;
    EXPECT_EQ(m_table.Contains("live", true), 0);
    EXPECT_EQ(m_table.Contains("head", true), 0);
    EXPECT_EQ(m_table.Find("live", value, true, &lastAccess), 0);
    EXPECT_EQ(m_table.Lookup("live", value, true, &lastAccess), 0);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(lastAccess, 4711U);
    // Nothing was touched: at an age of 100 both go.
    m_table.Purge(100);
    EXPECT_EQ(m_table.GetCount(), 0);
}

TEST_F(CacheTable, ExpiredEntryBehindALiveHeadIsStillFound)
{
    Insert("head", 1);
    Insert("expired", 2, 10);
    m_ticks.Pass(50);
    EXPECT_EQ(m_table.Contains("expired", false), 1);
}

} // namespace
