#include "containers/thashtable.h"
#include "containers/thashtabletss.h"
#include "tests/containers/lock_probe.h"
#include "tests/containers/ticks.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>

// A found value that cannot be copied out: the exception passes, nothing else changes.

namespace
{

using testing_support::IsFreeForOthers;
using testing_support::Ticks;

bool g_noMemory = false;
bool g_noCopy = false;
int g_alive = 0;

/// A record whose allocation fails, or whose copy fails half-way.
struct Record
{
    Record() { ++g_alive; }
    Record(const Record& other) : part(std::make_unique<int>(*other.part))
    {
        if (other.failsToCopy)
        {
            throw std::bad_alloc();
        }
        ++g_alive;
    }
    Record& operator=(const Record&) = delete;
    ~Record() { --g_alive; }
    static void* operator new(std::size_t size)
    {
        if (g_noMemory)
        {
            throw std::bad_alloc();
        }
        return ::operator new(size);
    }
    static void operator delete(void* memory) { ::operator delete(memory); }

    std::unique_ptr<int> part = std::make_unique<int>(1);
    bool failsToCopy = false;
};

/// A text, key and value at once, as the text table needs it.
struct Text : TSimpleString
{
    using TSimpleString::TSimpleString;
    Text(const Text& other) : TSimpleString(other)
    {
        if (g_noCopy)
        {
            throw std::bad_alloc();
        }
    }
    Text& operator=(const Text&) = default;
    ~Text() = default;
    static void* operator new(std::size_t size)
    {
        if (g_noMemory)
        {
            throw std::bad_alloc();
        }
        return ::operator new(size);
    }
    static void operator delete(void* memory) { ::operator delete(memory); }
};

TEST(KeyedTableFailures, CacheLookupWithoutMemoryTouchesNothingAndReleasesTheLock)
{
    Ticks ticks;
    THashtable<Text, Record> table(1);
    auto* const record = new Record();
    table.Insert(table.NewAssociation("key", record, nullptr, 0));
    ticks.Pass(10);
    auto* const untouched = reinterpret_cast<Record*>(&table);
    Record* copy = untouched;
    for (const bool halfWay : {false, true})
    {
        g_noMemory = !halfWay;
        record->failsToCopy = halfWay;
        std::uint32_t lastAccess = 4711;
        EXPECT_THROW(table.Lookup("key", copy, true, &lastAccess), std::bad_alloc);
        g_noMemory = false;
        EXPECT_EQ(copy, untouched);
        EXPECT_EQ(lastAccess, 4711U);
    }
    EXPECT_EQ(g_alive, 1) << "no part of a copy is left";
    EXPECT_TRUE(IsFreeForOthers(table));
    EXPECT_EQ(table.GetCount(), 1);
    table.Purge(10);
    EXPECT_EQ(table.GetCount(), 0) << "the entry was not touched";
    EXPECT_EQ(g_alive, 0);
}

TEST(KeyedTableFailures, MatchingWithoutMemoryForAKeyKeepsTheEntriesAndReleasesTheLock)
{
    THashtable<Text, Record> table(3);
    for (const char* const key : {"a", "b", "c"})
    {
        table.Insert(table.NewAssociation(key, new Record(), nullptr, 0));
    }
    g_noCopy = true;
    EXPECT_THROW(table.RemoveMatching("*"), std::bad_alloc);
    g_noCopy = false;
    EXPECT_EQ(table.GetCount(), 3);
    EXPECT_TRUE(IsFreeForOthers(table));
    table.RemoveMatching("*");
    EXPECT_EQ(table.GetCount(), 0);
    EXPECT_EQ(g_alive, 0);
}

TEST(KeyedTableFailures, TextThatCannotBeCopiedOutLeavesNoPartOfTheCopy)
{
    Ticks ticks;
    THashtableTss<Text> table(1);
    table.Insert(table.NewAssociation("key", new Text("value"), nullptr));
    ticks.Pass(10);
    Text* copy = nullptr;
    g_noCopy = true;
    EXPECT_THROW(table.Lookup("key", copy, true), std::bad_alloc);
    g_noCopy = false;
    EXPECT_EQ(copy, nullptr);
    EXPECT_TRUE(IsFreeForOthers(table));
    table.Purge(10);
    EXPECT_EQ(table.GetCount(), 0) << "the entry was not touched";
}

TEST(KeyedTableFailures, TextLookupWithoutMemoryTouchesNothingAndReleasesTheLock)
{
    Ticks ticks;
    THashtableTss<Text> table(1);
    table.Insert(table.NewAssociation("key", new Text("value"), nullptr));
    ticks.Pass(10);
    Text* copy = nullptr;
    g_noMemory = true;
    EXPECT_THROW(table.Lookup("key", copy, true), std::bad_alloc);
    g_noMemory = false;
    EXPECT_EQ(copy, nullptr);
    EXPECT_TRUE(IsFreeForOthers(table));
    table.Purge(10);
    EXPECT_EQ(table.GetCount(), 0);
}

TEST(KeyedTableFailures, NodeThatCannotBeMadeLeavesItsRecordToTheCaller)
{
    THashtable<Text, Record> table(1);
    const Text key("key");
    {
        const auto record = std::make_unique<Record>();
        g_noCopy = true;
        EXPECT_THROW(table.NewAssociation(key, record.get(), nullptr, 0), std::bad_alloc);
        EXPECT_THROW(table.NewAssociation("key", record.get(), nullptr, 0), std::bad_alloc);
        g_noCopy = false;
        EXPECT_EQ(g_alive, 1);
        EXPECT_EQ(*record->part, 1);
    }
    EXPECT_EQ(g_alive, 0) << "it was released once";
    EXPECT_EQ(table.GetCount(), 0);
}

TEST(KeyedTableFailures, NodeThatCannotBeMadeLeavesItsTextToTheCaller)
{
    THashtableTss<Text> table(1);
    const Text key("key");
    const auto value = std::make_unique<Text>("value");
    g_noCopy = true;
    EXPECT_THROW(table.NewAssociation(key, value.get(), nullptr), std::bad_alloc);
    EXPECT_THROW(table.NewAssociation("key", value.get(), nullptr), std::bad_alloc);
    g_noCopy = false;
    EXPECT_STREQ(value->SafeGetString(), "value");
    EXPECT_EQ(table.GetCount(), 0);
}

} // namespace
