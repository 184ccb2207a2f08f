#pragma once

#include "containers/record_cache.h"
#include "containers/thashtable.h"
#include "tests/containers/lock_probe.h"
#include "tests/containers/ticks.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace testing_support
{

using Table = THashtable<TSimpleString, tagCacheRecordHash>;
using Node = TAssociation<TSimpleString, tagCacheRecordHash>;

inline std::vector<std::string> g_removed;
inline const TMutex* g_lockedDuringRemoval = nullptr;

/// Notes key and first byte of the value, which proves that the value is still there.
inline void Note(const TSimpleString& key, tagCacheRecordHash* value)
{
    g_removed.push_back(std::string(key.SafeGetString()) + std::to_string(value->content[0]));
    if (g_lockedDuringRemoval != nullptr)
    {
        EXPECT_FALSE(IsFreeForOthers(*g_lockedDuringRemoval));
    }
}

/// One bucket unless told otherwise, so that all keys share a chain: the first one inserted is its
/// head, each later one comes directly behind the head.
class CacheTable : public testing::Test
{
protected:
    CacheTable() { g_removed.clear(); }
    ~CacheTable() override
    {
        g_lockedDuringRemoval = nullptr;
        m_table.RemoveAll(true);
    }

    void Insert(Table& table, const char* key, unsigned char mark, std::uint32_t lifetime = 0)
    {
        auto record = std::make_unique<tagCacheRecordHash>();
        record->content[0] = mark;
        record->content[63] = mark;
        table.Insert(table.NewAssociation(TSimpleString(key), record.get(), Note, lifetime));
        record.release();
    }
    void Insert(const char* key, unsigned char mark, std::uint32_t lifetime = 0)
    {
        Insert(m_table, key, mark, lifetime);
    }

    std::vector<std::string> Keys(Table& table)
    {
        std::vector<std::string> keys;
        TSimpleString key;
        for (int index = 0; table.GetKeyAt(index, key) == 1; ++index)
        {
            keys.emplace_back(key.SafeGetString());
        }
        return keys;
    }

    int MarkOf(const char* key)
    {
        tagCacheRecordHash* value = nullptr;
        return m_table.Find(key, value, false) == 1 ? value->content[0] : -1;
    }

    Ticks m_ticks;
    Table m_table{1};
};

} // namespace testing_support
