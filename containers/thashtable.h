#pragma once

#include "containers/keyed_table.h"
#include "containers/tassociation.h"
#include "support/filter.h"

/// Cache of plain records by text key. Records are handed in and out whole.
template <typename TKey, typename TValue>
class THashtable : public containers::KeyedTable<TAssociation<TKey, TValue>>
{
public:
    using Node = TAssociation<TKey, TValue>;

    explicit THashtable(int bucketCount) : containers::KeyedTable<Node>(bucketCount) {}

    /// Removes, callbacks running, every entry whose key passes the pattern.
    virtual void RemoveMatching(const char* pattern)
    {
        const TMutexLocker locker(*this);
        int bucket = 0;
        for (Node* node = this->FirstFrom(bucket); node != nullptr;)
        {
            const TKey key = node->GetKey();
            node = this->NextOf(node, bucket);
            if (GetFilterResult(pattern, key) == 1)
            {
                this->Remove(key, false);
            }
        }
    }

    /// 1 when the key is present, unless its chain is hidden by an expired head; `touch` makes the
    /// entry as good as just used.
    virtual int Contains(const TKey& key, bool touch)
    {
        if (this->IsDisabled())
        {
            return 0;
        }
        Node*& head = this->BucketOf(key);
        const TMutexLocker locker(*this);
        return head != nullptr ? head->Contains(key, touch) : 0;
    }

    /// The key of the index-th entry in the order of the buckets. 0, with `out` as it was, when
    /// there is none.
    virtual int GetKeyAt(int index, TKey& out)
    {
        if (this->IsDisabled())
        {
            return 0;
        }
        const TMutexLocker locker(*this);
        if (index < 0 || index > this->CountUnderLock() - 1)
        {
            return 0;
        }
        int bucket = 0;
        Node* node = this->FirstFrom(bucket);
        for (int left = index; left > 0; --left)
        {
            node = this->NextOf(node, bucket);
        }
        out = node->GetKey();
        return 1;
    }

    /// As Contains; hands out the stored record, which stays the table's. `lastAccess`, when given,
    /// receives the entry's, read after the touch.
    virtual int Find(const TKey& key, TValue*& value, bool touch,
                     std::uint32_t* lastAccess = nullptr)
    {
        if (this->IsDisabled())
        {
            return 0;
        }
        Node*& head = this->BucketOf(key);
        const TMutexLocker locker(*this);
        return head != nullptr ? head->Find(key, value, touch, lastAccess) : 0;
    }

    /// As Find; hands out a copy that the caller deletes. Raises std::bad_alloc, and then nothing
    /// was touched.
    virtual int Lookup(const TKey& key, TValue*& value, bool touch,
                       std::uint32_t* lastAccess = nullptr)
    {
        if (this->IsDisabled())
        {
            return 0;
        }
        Node*& head = this->BucketOf(key);
        const TMutexLocker locker(*this);
        Node* const found = head != nullptr ? head->LiveFrom(key) : nullptr;
        if (found == nullptr)
        {
            return 0;
        }
        value = new TValue(*found->GetValue());
        found->Use(touch, lastAccess);
        return 1;
    }

    /// A node that owns `value`; both stamps are now. When this raises, the caller keeps `value`.
    virtual Node* NewAssociation(const TKey& key, TValue* value, typename Node::OnRemove onRemove,
                                 std::uint32_t lifetime)
    {
        return new Node(key, value, onRemove, lifetime);
    }

    virtual Node* NewAssociation(const char* key, TValue* value, typename Node::OnRemove onRemove,
                                 std::uint32_t lifetime)
    {
        return new Node(key, value, onRemove, lifetime);
    }
};
