#pragma once

#include "containers/tick.h"

#include <cstdint>

namespace containers
{

template <typename Node>
class KeyedTable;

/// What the entry nodes of both keyed tables have in common: key, owned value, successor, last
/// access, and the search of a chain. `Node` is the class that derives from it.
template <typename Node, typename TKey, typename TValue>
class AssociationBase
{
public:
    using Key = TKey;
    using Value = TValue;
    /// Called with key and value just before the value is released. It runs under the table's lock
    /// and must neither raise nor change the table.
    using OnRemove = void (*)(const TKey& key, TValue* value);

    AssociationBase(const AssociationBase&) = delete;
    AssociationBase& operator=(const AssociationBase&) = delete;

protected:
    /// Owns `value` once it is made; when the key cannot be copied the caller keeps it.
    AssociationBase(const TKey& key, TValue* value, OnRemove onRemove)
        : m_key(key), m_value(value), m_onRemove(onRemove), m_lastAccess(CurrentTick())
    {
    }

    ~AssociationBase()
    {
        if (m_onRemove != nullptr)
        {
            m_onRemove(m_key, m_value);
        }
        delete m_value;
    }

    /// Links the node directly behind this one; returns the old successor.
    Node* LinkBehind(Node* node)
    {
        Node* const successor = m_next;
        node->m_next = successor;
        m_next = node;
        return successor;
    }

    /// The first node from this one on whose key equals `key`, null when there is none.
    Node* FindFrom(const TKey& key)
    {
        Node* node = static_cast<Node*>(this);
        while (node != nullptr && !(node->m_key == key))
        {
            node = node->m_next;
        }
        return node;
    }

    /// Destroys the first successor whose key equals `key`; 1 when there was one, else 0.
    int RemoveSuccessor(const TKey& key, bool keepSilent)
    {
        for (AssociationBase* before = this; before->m_next != nullptr; before = before->m_next)
        {
            if (before->m_next->m_key == key)
            {
                before->DestroySuccessor(keepSilent);
                return 1;
            }
        }
        return 0;
    }

    /// Destroys every expired successor; returns how many.
    int PurgeSuccessors(std::uint32_t maxAge)
    {
        int removed = 0;
        AssociationBase* before = this;
        while (before->m_next != nullptr)
        {
            if (before->m_next->IsExpired(maxAge))
            {
                before->DestroySuccessor(false);
                ++removed;
            }
            else
            {
                before = before->m_next;
            }
        }
        return removed;
    }

    TKey m_key;
    TValue* m_value;
    Node* m_next = nullptr;
    OnRemove m_onRemove;
    std::uint32_t m_lastAccess;

private:
    friend class KeyedTable<Node>;

    void DestroySuccessor(bool keepSilent)
    {
        Node* const gone = m_next;
        m_next = gone->m_next;
        if (keepSilent)
        {
            gone->m_onRemove = nullptr;
        }
        delete gone;
    }
};

} // namespace containers
