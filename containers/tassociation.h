#pragma once

#include "containers/association_base.h"

template <typename TKey, typename TValue>
class THashtable;

/// Entry of a THashtable. A text key, a record owned by the node, and two ages: since it was made
/// and since it was last used.
template <typename TKey, typename TValue>
class TAssociation : public containers::AssociationBase<TAssociation<TKey, TValue>, TKey, TValue>
{
    using Base = containers::AssociationBase<TAssociation<TKey, TValue>, TKey, TValue>;

public:
    /// `lifetime` in milliseconds, 0: none of its own.
    TAssociation(const TKey& key, TValue* value, typename Base::OnRemove onRemove,
                 std::uint32_t lifetime)
        : Base(key, value, onRemove), m_created(this->m_lastAccess), m_lifetime(lifetime)
    {
    }

    virtual ~TAssociation() = default;
    virtual void ClearOnRemove() { this->m_onRemove = nullptr; }
    virtual void Touch() { this->m_lastAccess = containers::CurrentTick(); }
    virtual std::uint32_t GetCreated() const { return m_created; }
    virtual std::uint32_t GetLastAccess() const { return this->m_lastAccess; }
    virtual const TKey& GetKey() const { return this->m_key; }
    virtual const TKey& GetKey() { return this->m_key; }
    virtual TValue* GetValue() const { return this->m_value; }
    virtual TAssociation* GetNext() const { return this->m_next; }

    /// With a limit: whether the last access is that old. With 0: whether its own lifetime is over,
    /// which an entry without lifetime always is.
    virtual bool IsExpired(std::uint32_t maxAge) const
    {
        const std::uint32_t now = containers::CurrentTick();
        return maxAge != 0 ? containers::AgeOf(this->m_lastAccess, now) >= maxAge
                           : containers::AgeOf(m_created, now) >= m_lifetime;
    }

    virtual TAssociation* InsertAfter(TAssociation* node) { return this->LinkBehind(node); }

    /// Called on the head of a chain, as is Find.
    virtual int Contains(const TKey& key, bool touch)
    {
        TValue* value = nullptr;
        return Find(key, value, touch, nullptr);
    }

    virtual int Find(const TKey& key, TValue*& value, bool touch, std::uint32_t* lastAccess)
    {
        TAssociation* const found = LiveFrom(key);
        if (found == nullptr)
        {
            return 0;
        }
        value = found->m_value;
        found->Use(touch, lastAccess);
        return 1;
    }

    virtual int RemoveAfter(const TKey& key, bool keepSilent)
    {
        return this->RemoveSuccessor(key, keepSilent);
    }

    virtual int PurgeAfter(std::uint32_t maxAge) { return this->PurgeSuccessors(maxAge); }

private:
    friend Base;
    friend class THashtable<TKey, TValue>;
    friend class containers::KeyedTable<TAssociation>;

    /// The first entry of that key in the chain that this node heads. A head whose own lifetime is
    /// over hides the whole chain, on purpose: callers count on the cache being that impatient.
    TAssociation* LiveFrom(const TKey& key)
    {
        TAssociation* const found = this->FindFrom(key);
        return found != nullptr && m_lifetime != 0 && IsExpired(0) ? nullptr : found;
    }

    void Use(bool touch, std::uint32_t* lastAccess)
    {
        if (touch)
        {
            Touch();
        }
        if (lastAccess != nullptr)
        {
            *lastAccess = this->m_lastAccess;
        }
    }

    std::uint32_t m_created;
    std::uint32_t m_lifetime;
};
