#include "containers/thashtabletss.h"
#include "tests/containers/lock_probe.h"
#include "tests/containers/ticks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{

using testing::ElementsAre;
using testing_support::IsFreeForOthers;
using testing_support::Ticks;
using Table = THashtableTss<TSimpleString>;
using Node = TAssociationTss<TSimpleString>;

std::vector<std::string> g_removed;

void Note(const TSimpleString& key, TSimpleString* value)
{
    g_removed.push_back(std::string(key.SafeGetString()) + "=" + value->SafeGetString());
}

/// One bucket, so that all keys share a chain: head first, each later one directly behind it.
class TextTable : public testing::Test
{
protected:
    TextTable() { g_removed.clear(); }
    ~TextTable() override { m_table.RemoveAll(true); }

    void Insert(const char* key, const char* value)
    {
        m_table.Insert(m_table.NewAssociation(key, new TSimpleString(value), Note));
    }

    std::string ValueOf(const char* key)
    {
        TSimpleString* value = nullptr;
        return m_table.Find(key, value, false) == 1 ? value->SafeGetString() : "(absent)";
    }

    Ticks m_ticks;
    Table m_table{1};
};

TEST_F(TextTable, FindsWhatWasPutIn)
{
    Insert("a", "1");
    Insert("b", "2");
    EXPECT_EQ(ValueOf("a"), "1");
    EXPECT_EQ(ValueOf("b"), "2");
    EXPECT_EQ(ValueOf("A"), "(absent)") << "keys respect case";
    EXPECT_EQ(m_table.GetCount(), 2);
}

TEST_F(TextTable, EmptyTableFindsNothing)
{
    TSimpleString* value = nullptr;
    EXPECT_EQ(m_table.Contains("a"), 0);
    EXPECT_EQ(m_table.Find("a", value, true), 0);
    EXPECT_EQ(m_table.Lookup("a", value, true), 0);
    EXPECT_EQ(m_table.Remove("a", false), 0);
    EXPECT_EQ(value, nullptr);
}

TEST_F(TextTable, NodeIsMadeFromATextOrFromAnotherKeyObject)
{
    const TSimpleString key("key");
    for (const bool fromObject : {false, true})
    {
        auto* const value = new TSimpleString("value");
        const std::unique_ptr<Node> node(fromObject ? m_table.NewAssociation(key, value, Note)
                                                    : m_table.NewAssociation("key", value, Note));
        EXPECT_STREQ(node->GetKey().SafeGetString(), "key");
        EXPECT_EQ(node->GetValue(), value);
        EXPECT_EQ(node->GetLastAccess(), 1000U);
        EXPECT_EQ(node->GetNext(), nullptr);
        m_ticks.Set(1003);
        node->Touch();
        EXPECT_EQ(node->GetLastAccess(), 1003U);
        m_ticks.Set(1000);
        node->ClearOnRemove();
    }
    EXPECT_TRUE(g_removed.empty());
}

TEST_F(TextTable, InsertAfterLinksBehindAndReturnsTheOldSuccessor)
{
    const std::unique_ptr<Node> first(m_table.NewAssociation("1", new TSimpleString(), nullptr));
    const std::unique_ptr<Node> second(m_table.NewAssociation("2", new TSimpleString(), nullptr));
    const std::unique_ptr<Node> third(m_table.NewAssociation("3", new TSimpleString(), nullptr));
    EXPECT_EQ(first->InsertAfter(third.get()), nullptr);
    EXPECT_EQ(first->InsertAfter(second.get()), third.get());
    EXPECT_EQ(second->GetNext(), third.get());
}

TEST_F(TextTable, KeyPresentTwiceActsOnTheFirstInTheChain)
{
    Insert("head", "0");
    Insert("twice", "behind");
    Insert("twice", "first");
    EXPECT_EQ(ValueOf("twice"), "first");
    EXPECT_EQ(m_table.Remove("twice", false), 1);
    EXPECT_THAT(g_removed, ElementsAre("twice=first"));
    EXPECT_EQ(ValueOf("twice"), "behind");
}

TEST_F(TextTable, ContainsAlwaysTouches)
{
    Insert("a", "1");
    m_ticks.Pass(100);
    EXPECT_EQ(m_table.Contains("a"), 1);
    m_table.Purge(100);
    EXPECT_EQ(m_table.GetCount(), 1);
}

TEST_F(TextTable, FindTouchesOnlyWhenAskedTo)
{
    Insert("head", "0");
    Insert("touched", "1");
    m_ticks.Pass(100);
    TSimpleString* value = nullptr;
    EXPECT_EQ(m_table.Find("touched", value, true), 1);
    EXPECT_EQ(m_table.Find("head", value, false), 1);
    m_table.Purge(100);
    EXPECT_THAT(g_removed, ElementsAre("head=0"));
    EXPECT_EQ(ValueOf("touched"), "1");
}

TEST_F(TextTable, LookupHandsOutACopyThatTheCallerOwns)
{
    Insert("a", "1");
    m_ticks.Pass(50);
    TSimpleString* copy = nullptr;
    ASSERT_EQ(m_table.Lookup("a", copy, true), 1);
    const std::unique_ptr<TSimpleString> owned(copy);
    m_ticks.Pass(50);
    m_table.Purge(51);
    EXPECT_EQ(m_table.GetCount(), 1) << "the look-up touched it";
    m_table.RemoveAll(true);
    EXPECT_STREQ(owned->SafeGetString(), "1");
}

TEST_F(TextTable, LookupWithoutTouchLeavesTheAge)
{
    Insert("a", "1");
    m_ticks.Pass(50);
    TSimpleString* copy = nullptr;
    ASSERT_EQ(m_table.Lookup("a", copy, false), 1);
    const std::unique_ptr<TSimpleString> owned(copy);
    m_table.Purge(50);
    EXPECT_EQ(m_table.GetCount(), 0);
}

TEST_F(TextTable, DisabledTableFindsNothingButStillRemoves)
{
    Insert("head", "0");
    Insert("b", "1");
    m_table.SetDisabled(1);
    TSimpleString* value = nullptr;
    EXPECT_EQ(m_table.Contains("head"), 0);
    EXPECT_EQ(m_table.Find("head", value, true), 0);
    EXPECT_EQ(m_table.Lookup("head", value, true), 0);
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(m_table.Remove("b", true), 1);
    m_ticks.Pass(1);
    m_table.Purge(1);
    EXPECT_EQ(m_table.GetCount(), 0);
    Insert("c", "2");
    m_table.RemoveAll(true);
    EXPECT_EQ(m_table.GetCount(), 0);
}

TEST_F(TextTable, PurgeGoesByTheLastAccessAtAnyLimit)
{
    Insert("head", "0");
    m_ticks.Pass(1);
    Insert("b", "1");
    m_table.Purge(1);
    EXPECT_THAT(g_removed, ElementsAre("head=0"));
    m_table.Purge(0);
    EXPECT_THAT(g_removed, ElementsAre("head=0", "b=1"));
    EXPECT_EQ(m_table.GetCount(), 0);
}

TEST_F(TextTable, PurgeAcrossAWrapCountsOneMillisecondLess)
{
    m_ticks.Set(0xFFFFFFF0);
    Insert("a", "1");
    m_ticks.Set(0x10);
    m_table.Purge(32);
    EXPECT_EQ(m_table.GetCount(), 1);
    m_table.Purge(31);
    EXPECT_EQ(m_table.GetCount(), 0);
}

TEST_F(TextTable, RemoveKeepsSilentOrCallsOnce)
{
    Insert("head", "0");
    Insert("b", "1");
    EXPECT_EQ(m_table.Remove("b", true), 1);
    EXPECT_TRUE(g_removed.empty());
    EXPECT_EQ(m_table.Remove("head", false), 1);
    EXPECT_THAT(g_removed, ElementsAre("head=0"));
    EXPECT_EQ(m_table.GetCount(), 0);
}

TEST_F(TextTable, RemoveOfAnAbsentKeyChangesNothing)
{
    Insert("head", "0");
    Insert("b", "1");
    EXPECT_EQ(m_table.Remove("x", false), 0);
    EXPECT_EQ(m_table.GetCount(), 2);
    EXPECT_TRUE(g_removed.empty());
}

TEST_F(TextTable, EveryOperationLeavesTheMutexFree)
{
    Insert("a", "1");
    TSimpleString* value = nullptr;
    m_table.Contains("a");
    m_table.Find("a", value, true);
    m_table.Purge(1000);
    m_table.Remove("a", false);
    m_table.RemoveAll(false);
    EXPECT_TRUE(IsFreeForOthers(m_table));
}

TEST_F(TextTable, SixtyOneBucketsHoldManyKeys)
{
    Table table(61);
    for (int index = 0; index < 1000; ++index)
    {
        table.Insert(table.NewAssociation(std::to_string(index).c_str(),
                                          new TSimpleString(std::to_string(-index).c_str()),
                                          nullptr));
    }
    for (int index = 0; index < 1000; ++index)
    {
        TSimpleString* value = nullptr;
        ASSERT_EQ(table.Find(std::to_string(index).c_str(), value, false), 1);
        ASSERT_STREQ(value->SafeGetString(), std::to_string(-index).c_str());
    }
    EXPECT_EQ(table.GetCount(), 1000);
}

} // namespace
