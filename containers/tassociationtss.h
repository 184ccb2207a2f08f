#pragma once

#include "containers/association_base.h"

template <typename TText>
class THashtableTss;

/// Entry of a THashtableTss: a text key and a text value, with the time of the last use.
template <typename TText>
class TAssociationTss : public containers::AssociationBase<TAssociationTss<TText>, TText, TText>
{
    using Base = containers::AssociationBase<TAssociationTss<TText>, TText, TText>;

public:
    TAssociationTss(const TText& key, TText* value, typename Base::OnRemove onRemove)
        : Base(key, value, onRemove)
    {
    }

    virtual ~TAssociationTss() = default;
    virtual void ClearOnRemove() { this->m_onRemove = nullptr; }
    virtual void Touch() { this->m_lastAccess = containers::CurrentTick(); }
    virtual std::uint32_t GetLastAccess() const { return this->m_lastAccess; }
    virtual const TText& GetKey() const { return this->m_key; }
    virtual TText* GetValue() const { return this->m_value; }
    virtual TAssociationTss* GetNext() const { return this->m_next; }

    virtual bool IsExpired(std::uint32_t maxAge) const
    {
        return containers::AgeOf(this->m_lastAccess, containers::CurrentTick()) >= maxAge;
    }

    virtual TAssociationTss* InsertAfter(TAssociationTss* node) { return this->LinkBehind(node); }

    /// Always touches. Called on the head of a chain, as is Find.
    virtual int Contains(const TText& key)
    {
        TText* value = nullptr;
        return Find(key, value, true);
    }

    virtual int Find(const TText& key, TText*& value, bool touch)
    {
        TAssociationTss* const found = this->FindFrom(key);
        if (found == nullptr)
        {
            return 0;
        }
        value = found->m_value;
        if (touch)
        {
            found->Touch();
        }
        return 1;
    }

    virtual int RemoveAfter(const TText& key, bool keepSilent)
    {
        return this->RemoveSuccessor(key, keepSilent);
    }

    virtual int PurgeAfter(std::uint32_t maxAge) { return this->PurgeSuccessors(maxAge); }

private:
    friend Base;
    friend class THashtableTss<TText>;
    friend class containers::KeyedTable<TAssociationTss>;
};
