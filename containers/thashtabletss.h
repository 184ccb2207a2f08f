#pragma once

#include "containers/keyed_table.h"
#include "containers/tassociationtss.h"

/// Table from text to text.
template <typename TText>
class THashtableTss : public containers::KeyedTable<TAssociationTss<TText>>
{
public:
    using Node = TAssociationTss<TText>;

    explicit THashtableTss(int bucketCount) : containers::KeyedTable<Node>(bucketCount) {}

    /// 1 when the key is present, and then the entry is as good as just used.
    virtual int Contains(const TText& key)
    {
        if (this->IsDisabled())
        {
            return 0;
        }
        Node*& head = this->BucketOf(key);
        const TMutexLocker locker(*this);
        return head != nullptr ? head->Contains(key) : 0;
    }

    /// Hands out the stored text, which stays the table's.
    virtual int Find(const TText& key, TText*& value, bool touch)
    {
        if (this->IsDisabled())
        {
            return 0;
        }
        Node*& head = this->BucketOf(key);
        const TMutexLocker locker(*this);
        return head != nullptr ? head->Find(key, value, touch) : 0;
    }

    /// As Find; hands out a copy that the caller deletes. Raises std::bad_alloc, and then nothing
    /// was touched.
    virtual int Lookup(const TText& key, TText*& value, bool touch)
    {
        if (this->IsDisabled())
        {
            return 0;
        }
        Node*& head = this->BucketOf(key);
        const TMutexLocker locker(*this);
        Node* const found = head != nullptr ? head->FindFrom(key) : nullptr;
        if (found == nullptr)
        {
            return 0;
        }
        value = new TText(*found->GetValue());
        if (touch)
        {
            found->Touch();
        }
        return 1;
    }

    /// A node that owns `value`. When this raises, the caller keeps `value`.
    virtual Node* NewAssociation(const char* key, TText* value, typename Node::OnRemove onRemove)
    {
        return new Node(key, value, onRemove);
    }

    virtual Node* NewAssociation(const TText& key, TText* value, typename Node::OnRemove onRemove)
    {
        return new Node(key.SafeGetString(), value, onRemove);
    }
};
