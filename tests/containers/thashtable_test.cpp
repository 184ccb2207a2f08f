#include "containers/record_cache.h"
#include "containers/thashtable.h"
#include "tests/containers/cache_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace
{

using namespace testing_support; // NOLINT: the fixture of these tests
using testing::ElementsAre;

TEST_F(CacheTable, StartsEmptyAndEnabled)
{
    EXPECT_EQ(m_table.GetCount(), 0);
    EXPECT_EQ(m_table.GetBucketCount(), 1);
    EXPECT_EQ(m_table.Contains("a", true), 0);
    EXPECT_EQ(m_table.Remove("a", false), 0);
    tagCacheRecordHash* value = nullptr;
    EXPECT_EQ(m_table.Find("a", value, true), 0);
    EXPECT_EQ(m_table.Lookup("a", value, true), 0);
    EXPECT_EQ(value, nullptr);
    Insert("a", 1);
    EXPECT_EQ(m_table.Contains("a", true), 1);
}

TEST_F(CacheTable, TableHasAtLeastOneBucket)
{
    Table table(0);
    Insert(table, "a", 1);
    EXPECT_EQ(table.GetBucketCount(), 1);
    EXPECT_EQ(table.Contains("a", false), 1);
    EXPECT_EQ(Table(-3).GetBucketCount(), 1);
}

TEST_F(CacheTable, KeysRespectCase)
{
    Insert("Key", 1);
    EXPECT_EQ(m_table.Contains("Key", false), 1);
    EXPECT_EQ(m_table.Contains("KEY", false), 0);
}

TEST_F(CacheTable, InsertAfterLinksBehindAndReturnsTheOldSuccessor)
{
    const auto make = [this](const char* key)
    {
        return std::unique_ptr<Node>(
            m_table.NewAssociation(key, new tagCacheRecordHash(), nullptr, 0));
    };
    const auto first = make("1");
    const auto second = make("2");
    const auto third = make("3");
    EXPECT_EQ(first->InsertAfter(third.get()), nullptr);
    EXPECT_EQ(first->InsertAfter(second.get()), third.get());
    EXPECT_EQ(first->GetNext(), second.get());
    EXPECT_EQ(second->GetNext(), third.get());
}

TEST_F(CacheTable, KeyPresentTwiceActsOnTheFirstInTheChain)
{
    Insert("head", 0);
    Insert("twice", 1);
    Insert("twice", 2); // directly behind the head: the first of the two
    EXPECT_EQ(MarkOf("twice"), 2);
    EXPECT_EQ(m_table.Remove("twice", false), 1);
    EXPECT_THAT(g_removed, ElementsAre("twice2"));
    EXPECT_EQ(MarkOf("twice"), 1);
    EXPECT_EQ(m_table.GetCount(), 2);
}

TEST_F(CacheTable, KeyAtGoesThroughBucketsAndChainsInOrder)
{
    Table table(3);
    for (const char* key : {"a", "b", "c", "d", "e", "f", "g"})
    {
        Insert(table, key, 1);
    }
    std::vector<std::string> expected;
    for (std::uint32_t bucket = 0; bucket < 3; ++bucket)
    {
        // Chain order: the head came first, the others last in, first out.
        std::vector<std::string> chain;
        for (const char* key : {"a", "b", "c", "d", "e", "f", "g"})
        {
            if (GetHashValue(key) % 3 == bucket)
            {
                chain.insert(chain.begin() + (chain.empty() ? 0 : 1), key);
            }
        }
        expected.insert(expected.end(), chain.begin(), chain.end());
    }
    EXPECT_EQ(Keys(table), expected);
}

TEST_F(CacheTable, KeyAtTheLastIndexIsTheLastEntryAndBeyondThereIsNone)
{
    Insert("head", 1);
    Insert("second", 2);
    TSimpleString key("untouched");
    EXPECT_EQ(m_table.GetKeyAt(m_table.GetCount() - 1, key), 1);
    EXPECT_STREQ(key.SafeGetString(), "second");
    key = "untouched";
    EXPECT_EQ(m_table.GetKeyAt(m_table.GetCount(), key), 0);
    EXPECT_EQ(m_table.GetKeyAt(-1, key), 0);
    EXPECT_STREQ(key.SafeGetString(), "untouched");
    EXPECT_EQ(Table(3).GetKeyAt(0, key), 0);
    EXPECT_STREQ(key.SafeGetString(), "untouched");
}

TEST_F(CacheTable, DisabledTableFindsNothingButStillRemoves)
{
    Insert("head", 1);
    Insert("b", 2, 1);
    Insert("c", 3);
    m_table.SetDisabled(1);
    tagCacheRecordHash* value = nullptr;
    TSimpleString key("untouched");
    EXPECT_EQ(m_table.Contains("head", true), 0);
    EXPECT_EQ(m_table.Find("head", value, true), 0);
    EXPECT_EQ(m_table.Lookup("head", value, true), 0);
    EXPECT_EQ(m_table.GetKeyAt(0, key), 0);
    EXPECT_EQ(value, nullptr);
    EXPECT_STREQ(key.SafeGetString(), "untouched");

    EXPECT_EQ(m_table.Remove("c", false), 1);
    EXPECT_EQ(m_table.GetCount(), 2);
    m_ticks.Pass(10);
    m_table.Purge(10);
    EXPECT_EQ(m_table.GetCount(), 0);
    Insert("d", 4);
    m_table.RemoveAll(false);
    EXPECT_EQ(m_table.GetCount(), 0);
    m_table.SetDisabled(0);
    Insert("e", 5);
    EXPECT_EQ(m_table.Contains("e", false), 1);
}

TEST_F(CacheTable, RemoveKeepsSilentOrCallsOnceBeforeTheValueIsReleased)
{
    Insert("head", 1);
    Insert("b", 2);
    Insert("c", 3);
    EXPECT_EQ(m_table.Remove("head", true), 1);
    EXPECT_EQ(m_table.Remove("b", true), 1);
    EXPECT_TRUE(g_removed.empty());
    EXPECT_EQ(m_table.Remove("c", false), 1);
    EXPECT_THAT(g_removed, ElementsAre("c3"));
    EXPECT_EQ(m_table.Remove("c", false), 0);
    EXPECT_EQ(m_table.GetCount(), 0);
}

TEST_F(CacheTable, RemoveOfAnAbsentKeyChangesNothing)
{
    Insert("head", 1);
    Insert("b", 2);
    EXPECT_EQ(m_table.Remove("x", false), 0);
    EXPECT_EQ(m_table.GetCount(), 2);
}

TEST_F(CacheTable, RemoveAllCallsForEachUnlessItKeepsSilent)
{
    Insert("head", 1);
    Insert("b", 2);
    m_table.RemoveAll(true);
    EXPECT_TRUE(g_removed.empty());
    EXPECT_EQ(m_table.GetCount(), 0);
    Insert("head", 1);
    Insert("b", 2);
    m_table.RemoveAll(false);
    EXPECT_THAT(g_removed, ElementsAre("head1", "b2"));
    EXPECT_EQ(m_table.Contains("head", false), 0);
}

TEST_F(CacheTable, RemoveMatchingIgnoresCaseAndRunsTheCallbacksUnderTheLock)
{
    Table table(3);
    for (const char* key : {"one.veu", "TWO.VEU", "three.psr", "one.veu", "four"})
    {
        Insert(table, key, 7);
    }
    g_lockedDuringRemoval = &table;
    table.RemoveMatching("*.veu");
    EXPECT_THAT(g_removed, testing::UnorderedElementsAre("one.veu7", "one.veu7", "TWO.VEU7"));
    EXPECT_EQ(table.GetCount(), 2);
    table.RemoveMatching(nullptr);
    EXPECT_EQ(table.GetCount(), 2);
    table.RemoveMatching("*");
    EXPECT_EQ(table.GetCount(), 0);
    EXPECT_TRUE(IsFreeForOthers(table));
}

TEST_F(CacheTable, FindHandsOutTheStoredRecordAndTheAccessAfterTheTouch)
{
    Insert("a", 9);
    m_ticks.Pass(5);
    tagCacheRecordHash* first = nullptr;
    tagCacheRecordHash* second = nullptr;
    std::uint32_t lastAccess = 0;
    EXPECT_EQ(m_table.Find("a", first, false, &lastAccess), 1);
    EXPECT_EQ(lastAccess, 1000U);
    EXPECT_EQ(m_table.Find("a", second, true, &lastAccess), 1);
    EXPECT_EQ(lastAccess, 1005U);
    EXPECT_EQ(first, second);
}

TEST_F(CacheTable, LookupHandsOutACopyOfTheWholeRecord)
{
    Insert("a", 9);
    m_ticks.Pass(5);
    tagCacheRecordHash* stored = nullptr;
    tagCacheRecordHash* copy = nullptr;
    std::uint32_t lastAccess = 0;
    ASSERT_EQ(m_table.Find("a", stored, false), 1);
    ASSERT_EQ(m_table.Lookup("a", copy, true, &lastAccess), 1);
    const std::unique_ptr<tagCacheRecordHash> owned(copy);
    EXPECT_NE(copy, stored);
    EXPECT_EQ(std::memcmp(copy, stored, sizeof(*copy)), 0);
    EXPECT_EQ(lastAccess, 1005U);
    m_table.RemoveAll(true);
    EXPECT_EQ(copy->content[63], 9);
}

TEST_F(CacheTable, DestructionCallsForEveryEntryAndClosesTheMutex)
{
    void* handle = nullptr;
    {
        Table table(61);
        handle = table.GetHandle();
        Insert(table, "a", 1);
        Insert(table, "b", 2);
    }
    EXPECT_THAT(g_removed, testing::UnorderedElementsAre("a1", "b2"));
    EXPECT_EQ(CloseHandle(handle), 0);
}

TEST_F(CacheTable, ProcessWideCacheIsThereWithThreeBuckets)
{
    EXPECT_EQ(GlobalRecordCache.GetBucketCount(), 3);
    EXPECT_EQ(GlobalRecordCache.GetCount(), 0);
    Insert(GlobalRecordCache, "a", 1);
    EXPECT_EQ(GlobalRecordCache.Contains("a", true), 1);
    GlobalRecordCache.RemoveAll(true);
}

TEST_F(CacheTable, ThreadsMayUseOneTableAtTheSameTime)
{
    Table table(3);
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index)
    {
        threads.emplace_back(
            [&table, index]
            {
                const std::string key = std::to_string(index);
                for (int round = 0; round < 200; ++round)
                {
                    table.Insert(table.NewAssociation(key.c_str(), new tagCacheRecordHash(),
                                                      nullptr, 100000));
                    tagCacheRecordHash* copy = nullptr;
                    EXPECT_EQ(table.Lookup(key.c_str(), copy, true), 1);
                    delete copy;
                    table.SetDisabled(0);
                    table.Purge(100000);
                    EXPECT_EQ(table.Remove(key.c_str(), false), 1);
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(table.GetCount(), 0);
}

} // namespace
