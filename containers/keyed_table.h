#pragma once

#include "containers/tmutex.h"
#include "support/hash.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace containers
{

/// What both keyed tables have in common: a fixed number of buckets, a chain of nodes in each, one
/// lock around every operation. Nodes belong to the table. The order of the virtual functions is
/// that of the tables.
template <typename Node>
class KeyedTable : public TMutex
{
public:
    using Key = typename Node::Key;

    KeyedTable(const KeyedTable&) = delete;
    KeyedTable& operator=(const KeyedTable&) = delete;

    virtual ~KeyedTable()
    {
        {
            const TMutexLocker locker(*this);
            DestroyAll(false);
            delete[] m_buckets;
        }
    }

    /// While it is not 0, look-ups report not found; removals still work. Takes no lock.
    virtual void SetDisabled(unsigned char disabled)
    {
        m_disabled.store(disabled, std::memory_order_relaxed);
    }

    /// Removes the first entry of that key; with `keepSilent` its callback is not called. 1 when
    /// there was one, else 0.
    virtual int Remove(const Key& key, bool keepSilent)
    {
        Node*& head = BucketOf(key);
        const TMutexLocker locker(*this);
        if (head == nullptr)
        {
            return 0;
        }
        if (head->m_key == key)
        {
            DestroyHead(head, keepSilent);
            return 1;
        }
        const int removed = head->RemoveAfter(key, keepSilent);
        m_count -= removed;
        return removed;
    }

    /// Removes every entry that is expired at that age, in milliseconds.
    virtual void Purge(std::uint32_t maxAge)
    {
        const TMutexLocker locker(*this);
        for (int bucket = 0; bucket < m_bucketCount; ++bucket)
        {
            Node*& head = m_buckets[bucket];
            while (head != nullptr && head->IsExpired(maxAge))
            {
                DestroyHead(head, false);
            }
            if (head != nullptr)
            {
                m_count -= head->PurgeAfter(maxAge);
            }
        }
    }

    /// Destroys every entry; with `keepSilent` no callback is called.
    virtual void RemoveAll(bool keepSilent)
    {
        const TMutexLocker locker(*this);
        DestroyAll(keepSilent);
    }

    /// Links a node of NewAssociation into its bucket: as head of an empty one, else behind the
    /// head. The table owns it from then on. An entry of the same key stays.
    void Insert(Node* node)
    {
        Node*& head = BucketOf(node->m_key);
        const TMutexLocker locker(*this);
        if (head == nullptr)
        {
            head = node;
        }
        else
        {
            head->InsertAfter(node);
        }
        ++m_count;
    }

    int GetCount()
    {
        const TMutexLocker locker(*this);
        return m_count;
    }

    int GetBucketCount() const noexcept { return m_bucketCount; }

protected:
    /// The number of buckets is fixed for the table's life; there is at least one.
    explicit KeyedTable(int bucketCount)
        : m_bucketCount(bucketCount > 0 ? bucketCount : 1),
          m_buckets(new Node* [static_cast<std::size_t>(m_bucketCount)] {})
    {
    }

    bool IsDisabled() const { return m_disabled.load(std::memory_order_relaxed) != 0; }

    /// The chain that a key belongs to. Needs no lock: the array of heads never changes its place.
    Node*& BucketOf(const Key& key)
    {
        return m_buckets[GetHashValue(key) % static_cast<std::uint32_t>(m_bucketCount)];
    }

    /// The first node of the iteration, bucket by bucket, or the one after a node of a bucket. The
    /// caller holds the lock.
    Node* FirstFrom(int& bucket) const
    {
        while (bucket < m_bucketCount && m_buckets[bucket] == nullptr)
        {
            ++bucket;
        }
        return bucket < m_bucketCount ? m_buckets[bucket] : nullptr;
    }

    Node* NextOf(const Node* node, int& bucket) const
    {
        return node->m_next != nullptr ? node->m_next : FirstFrom(++bucket);
    }

    int CountUnderLock() const noexcept { return m_count; }

private:
    void DestroyHead(Node*& head, bool keepSilent)
    {
        Node* const gone = head;
        head = gone->m_next;
        --m_count;
        if (keepSilent)
        {
            gone->ClearOnRemove();
        }
        delete gone;
    }

    void DestroyAll(bool keepSilent)
    {
        for (int bucket = 0; bucket < m_bucketCount; ++bucket)
        {
            while (m_buckets[bucket] != nullptr)
            {
                DestroyHead(m_buckets[bucket], keepSilent);
            }
        }
    }

    int m_bucketCount;
    Node** m_buckets;
    int m_count = 0;
    std::atomic<unsigned char> m_disabled{0};
};

} // namespace containers
